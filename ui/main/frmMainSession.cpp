// How the window begins and ends: what the program was started with, hand-over, closing, the session's end.
#include "ui/main/frmMain.h"

namespace vellums::ui {
namespace {

// Up while it exists.
class Flag {
public:
    explicit Flag(bool& flag)
        : flag_(flag)
    {
        flag_ = true;
    }
    Flag(const Flag&) = delete;
    Flag& operator=(const Flag&) = delete;
    ~Flag() { flag_ = false; }

private:
    bool& flag_;
};

} // namespace

bool frmMain::hasUnsavedText() const
{
    return commands_.isMade() && commands_.seen().records.current().hasUnsavedChanges();
}

// A first instance treats its own command line as it would treat a hand-over.
void frmMain::carryOutStart(const Turn& turn, const Start& start)
{
    Commands& commands = commands_(turn);
    commands.records.offerUnsavedTexts();
    if (start.add) {
        chkSort_.setCaption(start.addText);
        commands.records.capture();
    } else if (!start.paths.empty()) {
        commands.imports.importPaths(start.paths);
    }
}

void frmMain::handOver()
{
    gate_.runOrWait(Waiting::HandOver, [this](const Turn& turn) { commands_(turn).records.capture(); });
}

// While a command runs a close waits, and long work is asked to stop. A second close while the question of
// the first stands asks nothing.
void frmMain::close()
{
    if (closing_)
        return;
    work_.askToStop();
    gate_.runOrWait(Waiting::Close, [this](const Turn& turn) {
        const Flag asked(closing_);
        if (!commands_(turn).records.mayClose())
            return;
        gate_.shut();
        DestroyWindow(hwnd_);
    });
}

// Where another command's question stands the session cannot end yet; the user is told by the system, and
// may end it all the same: then the text is kept for the next start.
bool frmMain::sessionMayEnd()
{
    if (!gate_.isBusy() && !hasUnsavedText())
        return true;
    work_.askToStop();
    shutdownBlock_.emplace(
        hwnd_, notebook_.say(u"The text shown has not been saved.", u"当前文本尚未保存。"));
    endAgreed_ = false;
    gate_.run([this](const Turn& turn) {
        const Flag asked(closing_);
        endAgreed_ = commands_(turn).records.mayClose();
    });
    if (endAgreed_)
        shutdownBlock_.reset();
    return endAgreed_;
}

void frmMain::sessionEnds(bool ends)
{
    if (ends && hasUnsavedText() && !endAgreed_)
        if (!keepUnsavedText(notebook_, commands_.seen().records.current().unsavedText()))
            MessageBeep(MB_ICONERROR); // nobody would see a text any more
    shutdownBlock_.reset();
    endAgreed_ = false;
}

} // namespace vellums::ui
