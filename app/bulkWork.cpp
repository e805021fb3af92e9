#include "app/bulkWork.h"

namespace vellums {
namespace {

std::u16string withoutCopyQuestion(const Notebook& notebook, const std::u16string& reason)
{
    return withoutCopyText(notebook, reason) + u"\r\n\r\n" +
        notebook.say(u"Do you want to go on without one?", u"是否在没有备份的情况下继续?");
}

} // namespace

BulkWork::BulkWork(const Notebook& notebook, Progress& progress, Dialogs& dialogs, std::u16string_view what)
    : notebook_(notebook)
    , dialogs_(dialogs)
    , work_(progress, what)
{
}

BulkUser BulkWork::user()
{
    BulkUser user;
    user.goOnWithoutCopy = [this](const std::u16string& reason) {
        // No is the default: Enter, pressed without reading, must not cost the only copy.
        return dialogs_.askNoYes(withoutCopyQuestion(notebook_, reason)) == Answer::Yes;
    };
    user.goesOn = [this](std::size_t done, std::size_t total) { return work_.step(done, total); };
    return user;
}

} // namespace vellums
