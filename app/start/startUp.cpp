// The order matters. The settings file comes first, as it says which engine serves; the engine next, since
// only then can a database be opened; then the language, in which a failure is told; then the database, and
// at last the table, for which the database is asked where the settings name none.
//
// A stored database is looked for in the stored data folder and then beside the program, which is where it is
// after the whole folder was carried to another machine under another path. The folder in which it was found
// becomes the data folder. Only where it is in neither does the first database beside the program serve.
#include "app/start/startUp.h"

#include "app/start/language.h"
#include "app/start/settings.h"
#include "platform/files.h"
#include "store/connectionString.h"
#include "store/databases/accessFile.h"
#include "store/databases/modCreateDB.h"
#include "store/databases/schema.h"
#include "text/path.h"

namespace vellums {
namespace {

// The folder of a path, its separator included.
std::u16string folderOf(const std::u16string& path)
{
    return path.substr(0, text::lastSeparator(path) + 1);
}

// The separator at the end goes, but not that of a drive's root.
std::u16string withoutEnd(std::u16string folder)
{
    constexpr std::size_t kRootLength = 3;
    if (folder.size() > kRootLength && text::lastSeparator(folder) == folder.size() - 1)
        folder.pop_back();
    return folder;
}

// A path that is not absolute is looked for in the data folder, then beside the program.
bool useStoredDatabase(Notebook& notebook)
{
    const std::u16string stored = readSetting(notebook.settingsFile, kDbConnSetting);
    if (stored.empty())
        return false;
    notebook.dbConn = stored;
    const bool isRelative = namesRelativeFile(stored);
    const std::u16string folders[] = {
        withoutEnd(readSetting(notebook.settingsFile, kDbParentSetting)), notebook.appDir};
    for (const std::u16string& folder : folders) {
        if (folder.empty() && isRelative) // the current folder never matters
            continue;
        notebook.dbParent = folder;
        const std::u16string path = getConnPart(notebook, stored, ConnPart::FullPath);
        if (path.empty() || !platform::fileExists(path))
            continue;
        if (folder.empty())
            notebook.dbParent = withoutEnd(folderOf(path));
        return true;
    }
    return false;
}

// The first database beside the program; where there is none, a new one. True: it was made.
bool useDatabaseOfProgramFolder(Notebook& notebook)
{
    notebook.dbParent = notebook.appDir;
    for (const std::u16string& name : platform::databaseNames(notebook.appDir)) {
        if (looksLikeAccessFile(platform::inFolder(notebook.appDir, name))) {
            notebook.dbConn = connectionStringFor(notebook, name);
            return false;
        }
    }
    notebook.dbConn = connectionStringFor(notebook, u"Vellums.mdb");
    return !dbCreateNew(notebook, u"").empty();
}

} // namespace

bool startUp(Notebook& notebook, const std::u16string& appDir, const std::u16string& exeName,
    const std::function<void(Notebook&)>& chooseProvider)
{
    notebook.appDir = withoutEnd(appDir);
    notebook.exeName = exeName;
    notebook.settingsFile = platform::inFolder(notebook.appDir, exeName + u".ini");
    notebook.logFile = platform::inFolder(notebook.appDir, exeName + u".log");
    notebook.safetyCopies = readSetting(notebook.settingsFile, kBackupSetting);
    notebook.handOverFile = platform::inFolder(notebook.appDir, u"snippet.tmp");
    if (chooseProvider)
        chooseProvider(notebook);
    notebook.chinese = systemLanguage(notebook.settingsFile).chinese;
    const bool created = !useStoredDatabase(notebook) && useDatabaseOfProgramFolder(notebook);
    notebook.dbTable = readSetting(notebook.settingsFile, kDbTableSetting);
    if (notebook.dbTable.empty())
        notebook.dbTable = getFirstTable(notebook, notebook.dbConn);
    return created;
}

} // namespace vellums
