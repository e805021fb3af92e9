#include "io/importCommands.h"

#include "app/bulkWork.h"
#include "io/fileImport.h"
#include "platform/files.h"

namespace vellums {

ImportCommands::ImportCommands(
    Notebook& notebook, Progress& progress, Dialogs& dialogs, RecordCommands& records)
    : notebook_(notebook)
    , progress_(progress)
    , dialogs_(dialogs)
    , records_(records)
{
}

void ImportCommands::importFolder()
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

void ImportCommands::importPaths(const std::vector<std::u16string>& paths)
{
    if (!records_.leaveRecord())
        return;
    {
        BulkWork work(notebook_, progress_, dialogs_, notebook_.say(u"Importing", u"正在导入"));
        std::size_t added = 0;
        bool goesOn = true;
        ImportEvents events;
        events.added = [&](const AddedRecord&, const std::u16string&) { ++added; };
        // A Stop holds for all paths that are left, not only for the one under way.
        events.stop = [&] { return !(goesOn = goesOn && work.step(added, 0)); };
        events.duplicates = work.user();
        FileImport import(notebook_, &dialogs_, events);
        for (const std::u16string& path : paths) {
            if (!goesOn)
                break;
            if (platform::folderExists(path))
                import.importFolder(path);
            else if (platform::fileExists(path))
                import.importFile(path);
        }
        import.tellCount();
    }
    records_.refresh();
}

} // namespace vellums
