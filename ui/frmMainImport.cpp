// Importing files and folders, removing duplicates and compacting, from the window.
#include "ui/frmMain.h"

#include "io/fileImport.h"
#include "maint/delDupRec.h"
#include "platform/files.h"
#include "store/compaction.h"
#include "store/connectionString.h"

namespace vellums::ui {

// Folders are imported with all that lies below them, files each for itself; what does not exist is
// passed over.
void frmMain::importPaths(const std::vector<std::u16string>& paths)
{
    if (!commands_->leaveRecord())
        return;
    importing_ = true;
    const std::u16string reportBefore = ucStatusLeft_.Caption();
    {
        io::ImportEvents events;
        events.stop = [this] { return closing_; };
        io::FileImport import(notebook_, &dialogs_, events);
        const HCURSOR before = SetCursor(LoadCursorW(nullptr, IDC_WAIT));
        for (const std::u16string& path : paths) {
            if (platform::folderExists(path))
                import.importFolder(path);
            else if (platform::fileExists(path))
                import.importFile(path);
        }
        SetCursor(before);
    }
    importing_ = false;
    if (closing_)
        PostMessageW(hwnd_, WM_CLOSE, 0, 0);
    else
        refreshKeeping(ucStatusLeft_.Caption() == reportBefore ? u"" : ucStatusLeft_.Caption());
}

// The list follows what was done; the line that tells how it ended stays the last one.
void frmMain::refreshKeeping(const std::u16string& report)
{
    commands_->refresh();
    if (!report.empty())
        ucStatusLeft_.setCaption(report);
}

void frmMain::importFolder()
{
    const std::u16string folder =
        dialogs_.chooseFolder(notebook_.say(u"Import files from here:", u"选择文件导入路径:"));
    if (folder.empty() || !platform::folderExists(folder))
        return;
    const std::u16string question =
        notebook_.say(u"Import from the following location recursively?", u"是否自动导入选定路径下所有内容?");
    if (dialogs_.askYesNo(question + u"\r\n\r\n" + folder, QuestionIcon::Question) == Answer::Yes)
        importPaths({folder});
}

void frmMain::removeDuplicates()
{
    if (commands_->leaveRecord())
        maint::delDupRec(notebook_, [this] { commands_->refresh(); });
}

// Unsaved text is no obstacle: the file that is replaced holds none of it.
void frmMain::compactData()
{
    const std::u16string file = connPart(notebook_, notebook_.dbConn, ConnPart::FullPath);
    const HCURSOR before = SetCursor(LoadCursorW(nullptr, IDC_WAIT));
    const Compaction result = compactDatabase(notebook_, file);
    SetCursor(before);
    dialogs_.tell(result.report, result.done);
}

} // namespace vellums::ui
