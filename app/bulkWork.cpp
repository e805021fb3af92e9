#include "app/bulkWork.h"

namespace vellums {
namespace {

// "... could be made: <reason> ... go on without one?"
std::u16string withoutCopyQuestion(const Notebook& notebook, const std::u16string& reason)
{
    return notebook.say(u"No safety copy of the database could be made: " + reason +
            u"\r\n\r\nDo you want to go on without one?",
        u"无法备份数据库: " + reason + u"\r\n\r\n是否在没有备份的情况下继续?");
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
