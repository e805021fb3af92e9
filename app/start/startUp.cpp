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

// A path that is not absolute is looked for in the data folder, then beside the program.
bool useStoredDatabase(Notebook& notebook)
{
    const std::u16string stored = readSetting(notebook.settingsFile, kDbConnSetting);
    if (stored.empty())
        return false;
    notebook.dbConn = stored;
    const bool isRelative = namesRelativeFile(stored);
    const std::u16string parent = readSetting(notebook.settingsFile, kDbParentSetting);
    for (const std::u16string_view folder :
        {text::withoutSeparator(parent), std::u16string_view(notebook.appDir)}) {
        if (folder.empty() && isRelative) // the current folder never matters
            continue;
        notebook.dbParent = folder;
        const std::u16string path = getConnPart(notebook, stored, ConnPart::FullPath);
        if (path.empty() || !platform::fileExists(path))
            continue;
        if (folder.empty())
            notebook.dbParent = text::folderOf(path);
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

void useProgramFolder(Notebook& notebook, const std::u16string& appDir, const std::u16string& exeName)
{
    notebook.appDir = text::withoutSeparator(appDir);
    notebook.exeName = exeName;
    notebook.settingsFile = platform::inFolder(notebook.appDir, exeName + u".ini");
    notebook.logFile = platform::inFolder(notebook.appDir, exeName + u".log");
    notebook.handOverFile = platform::inFolder(notebook.appDir, u"snippet.tmp");
    notebook.safetyCopies = readSetting(notebook.settingsFile, kBackupSetting);
}

bool startUp(Notebook& notebook, const std::u16string& appDir, const std::u16string& exeName,
    const std::function<void(Notebook&)>& chooseProvider)
{
    useProgramFolder(notebook, appDir, exeName);
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
