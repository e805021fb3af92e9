#include "app/start/startUp.h"

#include "app/start/commandLine.h"
#include "app/start/language.h"
#include "app/start/settings.h"
#include "platform/files.h"
#include "platform/profile.h"
#include "store/connectionString.h"
#include "store/databases/schema.h"
#include "tests/support/client.h"
#include "tests/support/shownLines.h"
#include "tests/support/temporaryFolder.h"
#include "text/unicode.h"

#include <gmock/gmock.h>

#include <filesystem>

#include <algorithm>

namespace vellums {
namespace {

using testing::IsEmpty;
using Texts = std::vector<std::u16string>;

class StartUp : public testing::Test {
protected:
    // A start of the program that lies in the folder "app".
    Notebook start()
    {
        Notebook notebook(told_);
        notebook.provider = &provider_;
        startUp(notebook, appDir_, u"Vellums");
        return notebook;
    }
    void makeDatabase(std::u16string_view name, const std::u16string& table = u"Notes")
    {
        provider_.createDatabase(folder_.file(name), table);
    }
    void set(std::u16string_view key, const std::u16string& value)
    {
        ASSERT_TRUE(setPrefValue(folder_.file(u"app/Vellums.ini"), kOptionsSection, key, value));
    }
    static std::u16string connectionTo(const std::u16string& file)
    {
        return u"Provider=Microsoft.ACE.OLEDB.12.0; Data Source=" + file;
    }
    static std::u16string fileOfNotebook(const Notebook& notebook)
    {
        return getConnPart(notebook, notebook.dbConn, ConnPart::FullPath);
    }

    tests::TemporaryFolder folder_;
    const Provider& provider_ = tests::client();
    std::u16string appDir_ = folder_.makeFolder(u"app");
    tests::ShownLines told_;
    const Texts& shown_ = told_.lines;
};

TEST_F(StartUp, FixesThePathsOfTheProgram)
{
    const Notebook notebook = start();
    EXPECT_EQ(notebook.appDir, appDir_);
    EXPECT_EQ(notebook.settingsFile, folder_.file(u"app/Vellums.ini"));
    EXPECT_EQ(notebook.logFile, folder_.file(u"app/Vellums.log"));
    EXPECT_EQ(notebook.handOverFile, folder_.file(u"app/snippet.tmp"));
    appDir_ += platform::separator();
    EXPECT_EQ(start().handOverFile, folder_.file(u"app/snippet.tmp"));
}

TEST_F(StartUp, MakesADatabaseAtTheFirstStart)
{
    for (const bool chinese : {false, true}) {
        if (chinese)
            set(u"uiChinese", u"1");
        platform::removeFile(folder_.file(u"app/Vellums.mdb"));
        const Notebook first = start();
        EXPECT_EQ(first.dbTable, first.chinese ? u"笔记" : u"Memo");
        EXPECT_TRUE(isSnippetTable(first, first.dbConn, first.dbTable));
        EXPECT_EQ(fileOf(first.dbConn), u"Vellums.mdb");
        EXPECT_EQ(first.dbParent, appDir_);
        first.connect()->execute(u"INSERT INTO [" + first.dbTable + u"] (VLHEAD, VLDATE) VALUES ('kept', 1)");
        const Notebook again = start();
        EXPECT_EQ(again.connect()->execute(u"UPDATE [" + again.dbTable + u"] SET VLTEXT='x'"), 1);
        EXPECT_TRUE(again.chinese || !chinese);
    }
    EXPECT_THAT(shown_, IsEmpty());
}

TEST_F(StartUp, TakesTheFirstDatabaseOfItsFolder)
{
    folder_.write(u"app/Thumbs.db", "no Access file");
    folder_.write(u"app/a.accdb", "");
    makeDatabase(u"app/notes.accdb", u"First");
    using namespace std::literals; // a settings file of garbage names none
    folder_.write(u"app/Vellums.ini",
        "[Options\r\ndbConn\0===[[\xFF\xFE\r\n[Options]\r\nuiChinese=yes\r\ndbTable"s +
            std::string(3000, '\x80') + "\r\n=\r\nobTitle=2\r\n");
    const Notebook notebook = start();
    EXPECT_FALSE(notebook.chinese);
    EXPECT_EQ(notebook.dbConn, connectionTo(u"notes.accdb"));
    EXPECT_EQ(notebook.dbTable, u"First");
    EXPECT_FALSE(platform::fileExists(folder_.file(u"app/Vellums.mdb")));
}

TEST_F(StartUp, TellsWhenNoDatabaseCanBeMade)
{
    folder_.makeFolder(u"app/Vellums.mdb");
    const Notebook notebook = start();
    EXPECT_EQ(notebook.dbTable, u"-");
    ASSERT_EQ(shown_.size(), 1u);
    EXPECT_THAT(text::toUtf8(shown_[0]), testing::StartsWith("dbCreateNew: "));
}

struct StoredCase {
    const char* why;
    std::u16string conn;   // "@" stands for the test's folder
    std::u16string parent; // of the settings file; "": none
    std::u16string file;   // what is opened
    std::u16string folder; // the data folder then
};

const StoredCase kStored[] = {
    {"a full path has its folder as data folder", u"@data/a.mdb", u"", u"@data/a.mdb", u"@data"},
    {"unless the settings name another", u"@data/a.mdb", u"@other/", u"@data/a.mdb", u"@other"},
    {"a bare name lies in the data folder", u"a.mdb", u"@data", u"@data/a.mdb", u"@data"},
    {"whose separator at the end does not count", u"a.mdb", u"@data/", u"@data/a.mdb", u"@data"},
    {"or beside the program", u"b.mdb", u"@data", u"@app/b.mdb", u"@app"},
    {"also without a data folder", u"b.mdb", u"", u"@app/b.mdb", u"@app"},
    {"a file that is gone does not count", u"@data/gone.mdb", u"", u"@app/b.mdb", u"@app"},
    {"nor one in another data folder", u"@data/gone.mdb", u"@data", u"@app/b.mdb", u"@app"},
    {"nor a folder of that name", u"@data/folder.mdb", u"", u"@app/b.mdb", u"@app"},
    {"nor a server", u"(LOCAL);Initial Catalog=x", u"", u"@app/b.mdb", u"@app"},
};

TEST_F(StartUp, FindsTheStoredDatabase)
{
    makeDatabase(u"app/b.mdb");
    folder_.makeFolder(u"data/folder.mdb");
    folder_.makeFolder(u"other");
    makeDatabase(u"data/a.mdb");
    const auto placed = [&](const std::u16string& text) {
        if (text.empty() || text[0] != u'@')
            return text;
        return folder_.file(text.substr(1));
    };
    for (const StoredCase& c : kStored) {
        SCOPED_TRACE(c.why);
        set(u"dbConn", connectionTo(placed(c.conn)));
        platform::deleteProfile(folder_.file(u"app/Vellums.ini"), kOptionsSection, u"dbParent");
        if (!c.parent.empty())
            set(u"dbParent", placed(c.parent));
        const std::string settings = tests::bytesOf(folder_.file(u"app/Vellums.ini"));
        const Notebook notebook = start();
        EXPECT_EQ(fileOfNotebook(notebook), placed(c.file));
        EXPECT_EQ(notebook.dbParent, placed(c.folder));
        EXPECT_EQ(notebook.dbTable, u"Notes");
        EXPECT_EQ(tests::bytesOf(folder_.file(u"app/Vellums.ini")), settings);
    }
    // Nor does what lies in the current folder, whatever it is.
    const auto current = std::filesystem::current_path();
    std::filesystem::current_path(folder_.file(u"data"));
    set(u"dbConn", connectionTo(u"a.mdb"));
    platform::deleteProfile(folder_.file(u"app/Vellums.ini"), kOptionsSection, u"dbParent");
    EXPECT_EQ(fileOfNotebook(start()), folder_.file(u"app/b.mdb"));
    std::filesystem::current_path(current);
    set(u"dbTable", u"Té 2"); // a name that every code page of the tests holds
    EXPECT_EQ(start().dbTable, u"Té 2");
}

TEST(CommandLine, IsReadAsItIsTyped)
{
    const struct {
        std::u16string line;
        Texts paths;
        bool add;
        std::u16string text;
    } cases[] = {
        {u"", {}, false, u""},
        {u"   ", {}, false, u""},
        {u"D:\\a.txt \"D:\\my notes\\b.txt\"", {u"D:\\a.txt", u"D:\\my notes\\b.txt"}, false, u""},
        {u"  a   b  ", {u"a", u"b"}, false, u""},
        {u"/IMPORT a \"b c\"", {u"a", u"b c"}, false, u""},
        {u"/import", {}, false, u""},
        {u"/importx", {u"x"}, false, u""},
        {u"a /add", {u"a", u"/add"}, false, u""},
        {u"D:\\\"my notes\"\\b.txt", {u"D:\\my notes\\b.txt"}, false, u""},
        {u"\"open", {u"open"}, false, u""},
        {u"/add", {}, true, u""},
        {u" /Add  some  text ", {}, true, u"some  text"},
        {u"/add \"some text\"", {}, true, u"some text"},
        {u"/add 'some text'", {}, true, u"some text"},
        {u"/add \"'some text'\"", {}, true, u"some text"},
        {u"/add \"\"some text\"\"", {}, true, u"\"some text\""},
        {u"/add \"half", {}, true, u"half"},
        {u"/add \"", {}, true, u""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(text::toUtf8(c.line));
        const Start start = parseCommandLine(c.line);
        EXPECT_EQ(start.paths, c.paths);
        EXPECT_EQ(start.add, c.add);
        EXPECT_EQ(start.addText, c.text);
    }
}

TEST(LanguageOfTheInterface, CanOnlyBeSwitchedToChinese)
{
    const struct {
        std::u16string install, standard;
        bool setting, chinese, chineseDefault;
    } cases[] = {
        {u"0409", u"0409", false, false, false},
        {u"0409", u"0804", false, false, true},
        {u"0804", u"0409", false, true, false},
        {u"0804", u"0804", false, true, true},
        {u"0409", u"0409", true, true, false},
        {u"0404", u"0404", false, false, false},
        {u"", u"", false, false, false},
    };
    for (const auto& c : cases) {
        const Language language = decideLanguage(c.install, c.standard, c.setting);
        EXPECT_EQ(language.chinese, c.chinese) << text::toUtf8(c.install) << c.setting;
        EXPECT_EQ(language.chineseDefault, c.chineseDefault);
    }
}

TEST(Settings, TakeWhatCannotBeUsedAsMissing)
{
    const tests::TemporaryFolder folder;
    const std::u16string file = folder.file(u"Vellums.ini");
    EXPECT_EQ(readSetting(file, kFontSizeSetting), 3u) << "there is no file yet";
    EXPECT_TRUE(readSetting(file, kBackupSetting));
    EXPECT_FALSE(readSetting(file, kChineseSetting));
    for (const char16_t* value : {u"24", u"-1", u"7x", u" 7", u"99999999999", u"", u"true"}) {
        setPrefValue(file, kOptionsSection, kFontSizeSetting.key, value);
        setPrefValue(file, kOptionsSection, kChineseSetting.key, value);
        setPrefValue(file, kOptionsSection, kBackupSetting.key, value);
        SCOPED_TRACE(text::toUtf8(value));
        EXPECT_TRUE(readSetting(file, kFontSizeSetting) == 3 || std::u16string_view(value) == u" 7");
        EXPECT_FALSE(readSetting(file, kChineseSetting));
        EXPECT_TRUE(readSetting(file, kBackupSetting));
    }
    EXPECT_TRUE(writeSetting(file, kFontSizeSetting, 23) && writeSetting(file, kChineseSetting, true) &&
        writeSetting(file, kBackupSetting, false));
    EXPECT_EQ(readSetting(file, kFontSizeSetting), 23u);
    EXPECT_TRUE(readSetting(file, kChineseSetting));
    EXPECT_FALSE(readSetting(file, kBackupSetting));
}

TEST(Settings, KeepValuesUpTo255Characters)
{
    const tests::TemporaryFolder folder;
    const std::u16string file = folder.file(u"Vellums.ini");
    EXPECT_EQ(getPrefValue(file, kOptionsSection, u"fontSize", u"3"), u"3") << "there is no file yet";
    EXPECT_FALSE(platform::fileExists(file));
    EXPECT_TRUE(setPrefValue(file, kOptionsSection, u"fontName", u" Courier New "));
    EXPECT_EQ(getPrefValue(file, u"OPTIONS", u"FONTNAME", u""), u" Courier New ");
    EXPECT_EQ(getPrefValue(file, u"Other", u"fontName", u"none"), u"none");
    for (const std::size_t length : {254u, 255u, 256u, 1000u}) {
        EXPECT_TRUE(setPrefValue(file, kOptionsSection, u"long", std::u16string(length, u'x')));
        EXPECT_EQ(
            getPrefValue(file, kOptionsSection, u"long", u"").size(), std::min<std::size_t>(length, 255));
    }
    EXPECT_EQ(getPrefValue(file, kOptionsSection, u"none", std::u16string(300, u'd')).size(), 255u);
    EXPECT_FALSE(setPrefValue(folder.file(u"missing/Vellums.ini"), kOptionsSection, u"a", u"b"));
}

} // namespace
} // namespace vellums
