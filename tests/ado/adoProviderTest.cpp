#include "store/ado/adoProvider.h"

#include "app/start/engines.h"
#include "app/start/settings.h"
#include "app/start/startUp.h"
#include "platform/files.h"
#include "store/databases/accessFile.h"
#include "store/databases/schema.h"
#include "store/records/records.h"
#include "tests/ado/adoFixture.h"
#include "text/unicode.h"

namespace vellums::tests::ado {
namespace {

using testing::Contains;
using testing::ElementsAre;

class AdoProviders : public WithAccess {
protected:
    static std::int32_t numberOf(const std::function<void()>& work)
    {
        try {
            work();
            return 0;
        } catch (const ProviderError& e) {
            return e.number;
        }
    }
    std::u16string path(std::u16string_view name) const { return folder.file(name); }

    TemporaryFolder folder;
};

TEST_F(AdoProviders, CreateDatabasesInTheDocumentedOrder)
{
    const std::u16string file = path(u"new.mdb");
    const std::string source = text::toUtf8(file);
    const std::string text = "'Provider=Microsoft.ACE.OLEDB.12.0;Data Source=" + source + "'";
    EXPECT_THAT(callsOf([&] { provider.createDatabase(file, u"笔记"); }),
        ElementsAre("Catalog.Create/1(" + text + ")", "Catalog.ActiveConnection/4(" + text + ")",
            "Table.Name/4('笔记')", "Table.ParentCatalog/8(object)", "Table.Columns/2()",
            "Column.Name/4('ID')", "Column.Type/4(3)", "Column.ParentCatalog/8(object)",
            "Column.Properties/2()", "Properties.Item/3('Autoincrement')", "Property.Value/4(True)",
            "Columns.Append/1(object)", "Index.Name/4('VLIDX')", "Index.Unique/4(True)", "Index.Columns/2()",
            "IndexColumns.Append/1('ID')", "Table.Indexes/2()", "Indexes.Append/1(object)",
            "Columns.Append/1('VLHEAD', 202)", "Columns.Item/3('VLHEAD')", "Column.Attributes/4(3)",
            "Columns.Append/1('VLTEXT', 203)", "Columns.Item/3('VLTEXT')", "Column.Attributes/4(3)",
            "Columns.Append/1('VLTYPE', 202)", "Columns.Item/3('VLTYPE')", "Column.Attributes/4(3)",
            "Columns.Append/1('VLDATE', 7)", "Columns.Append/1('VLLINK', 202)", "Columns.Item/3('VLLINK')",
            "Column.Attributes/4(3)", "Columns.Append/1('VLMD5', 202, 32)", "Columns.Item/3('VLMD5')",
            "Column.Attributes/4(3)", "Catalog.Tables/2()", "Tables.Append/1(object)",
            "Catalog.ActiveConnection/2()", "Connection.State/2()", "Connection.Close/1()"));
    EXPECT_EQ(callsOf([&] { AdoProvider(u"103").createDatabase(path(u"jet.mdb"), u"T"); }).at(0),
        "Catalog.Create/1('Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + text::toUtf8(path(u"jet.mdb")) +
            ";Jet OLEDB:Engine Type=5;')");
}

TEST_F(AdoProviders, CreateWholeDatabasesOrNone)
{
    const std::u16string there = folder.write(u"there.mdb", "somebody's");
    EXPECT_EQ(numberOf([&] { provider.createDatabase(there, u"T"); }), -2147217897);
    EXPECT_EQ(bytesOf(there), "somebody's");
    EXPECT_NE(numberOf([&] { provider.createDatabase(path(u"new.mdb"), std::u16string(65, u'x')); }), 0);
    EXPECT_FALSE(platform::fileExists(path(u"new.mdb")));
    installed.remove(u"ADOX.Index");
    EXPECT_EQ(numberOf([&] { provider.createDatabase(path(u"new.mdb"), u"T"); }), 429);
    EXPECT_FALSE(platform::fileExists(path(u"new.mdb")));
}

struct CompactCase {
    const char* why;
    const char16_t* name;
    const char16_t* providerId; // that made the file
    const char16_t* gone;       // a class that is not installed
    std::vector<const char*> calls;
    std::int32_t number;
};

const CompactCase kCompactions[] = {
    {"Jet's engine", u"a.mdb", u"103", u"", {"DBEngine.36.CompactDatabase/1(S, D)"}, 0},
    {"its letter case does not count", u"f.MDB", u"103", u"", {"DBEngine.36.CompactDatabase/1(S, D)"}, 0},
    {"that of ACE", u"b.accdb", u"104", u"", {"DBEngine.120.CompactDatabase/1(S, D, missing, 128)"}, 0},
    {"ACE's under the older name", u"c.mdb", u"104", u"",
        {"DBEngine.36.CompactDatabase/1(S, D)", "DBEngine.120.CompactDatabase/1(S, D)"}, 0},
    {"no engine of Jet", u"d.mdb", u"103", u"DAO.DBEngine.36", {"DBEngine.120.CompactDatabase/1(S, D)"}, 0},
    {"no engine of ACE", u"e.accdb", u"104", u"DAO.DBEngine.120", {}, 429},
};

TEST_F(AdoProviders, CompactWithTheEngineOfTheExtension)
{
    AdoProvider(u"103").createDatabase(path(u"g.mdb"), u"T");
    const std::u16string inTheWay = folder.write(u"there.cdb", "somebody's");
    EXPECT_EQ(numberOf([&] { provider.compact(path(u"g.mdb"), inTheWay); }), 3204);
    EXPECT_EQ(bytesOf(inTheWay), "somebody's");
    for (const CompactCase& c : kCompactions) {
        SCOPED_TRACE(c.why);
        if (*c.gone != 0)
            installed.remove(c.gone);
        const std::u16string source = path(c.name);
        const std::u16string destination = path(u"temp.cdb");
        AdoProvider(c.providerId).createDatabase(source, u"T");
        std::vector<std::string> calls;
        for (std::string call :
            callsOf([&] { EXPECT_EQ(numberOf([&] { provider.compact(source, destination); }), c.number); })) {
            call.replace(call.find("'" + text::toUtf8(source) + "'"), source.size() + 2, "S");
            call.replace(call.find("'" + text::toUtf8(destination) + "'"), destination.size() + 2, "D");
            calls.push_back(call);
        }
        EXPECT_EQ(calls, std::vector<std::string>(c.calls.begin(), c.calls.end()));
        EXPECT_EQ(looksLikeAccessFile(destination), c.number == 0);
        platform::removeFile(destination);
    }
    EXPECT_NE(numberOf([&] { provider.compact(folder.write(u"x.xdb", "x"), path(u"temp.cdb")); }), 0);
}

class Starts : public AdoProviders {
protected:
    // A start of the program in the folder, with the engine that the settings file wishes for.
    Notebook start(const char16_t* wish)
    {
        setPrefValue(path(u"Vellums.ini"), kOptionsSection, u"engine", wish);
        Notebook notebook(told);
        startUp(notebook, folder.path(), u"Vellums", [&](Notebook& started) { engines.serve(started); });
        return notebook;
    }
    static bool isAdo(const Notebook& notebook)
    {
        return dynamic_cast<const AdoProvider*>(notebook.provider) != nullptr;
    }

    Engines engines{{[](const std::u16string& id) { return AdoProvider::usable(id); },
        [](const std::u16string& id) { return std::make_unique<AdoProvider>(id); }}};
    tests::ShownLines told;
    const std::vector<std::u16string>& shown = told.lines;
};

TEST_F(Starts, UseTheInstalledProviderThatCanBeCreated)
{
    const auto calls = callsOf([&] {
        const Notebook notebook = start(u"auto");
        EXPECT_TRUE(isAdo(notebook));
        EXPECT_EQ(notebook.providerId, u"104");
        EXPECT_TRUE(isSnippetTable(notebook, notebook.dbConn, u"Memo"));
    });
    EXPECT_THAT(calls, Contains("Tables.Append/1(object)")) << "the first database is made by ADOX";
    EXPECT_FALSE(isAdo(start(u"embedded")));
    EXPECT_TRUE(isAdo(start(u"something else")));
    installed.remove(u"Microsoft.ACE.OLEDB.12.0"); // the registry still names it
    const Notebook notebook = start(u"auto");
    EXPECT_FALSE(isAdo(notebook));
    EXPECT_EQ(notebook.providerId, u"104");
    EXPECT_EQ(notebook.connect()->execute(u"INSERT INTO [Memo] (VLDATE) VALUES (1)"), 1);
    EXPECT_TRUE(shown.empty());
}

TEST_F(Starts, WithoutAdoUseTheEmbeddedEngine)
{
    installed.remove(u"ADODB.Connection"); // the system's own can be created, but an id cannot be asked of it
    installed.remove(u"Microsoft.ACE.OLEDB.12.0");
    EXPECT_FALSE(AdoProvider::usable(u"104"));
    EXPECT_FALSE(AdoProvider::usable(u"103"));
    EXPECT_FALSE(isAdo(start(u"auto")));
    // A provider that is wished for is used; its errors are lines, and the next start may wish otherwise.
    const Notebook forced = start(u"ADO");
    EXPECT_TRUE(isAdo(forced));
    EXPECT_EQ(forced.dbTable, u"-");
    EXPECT_FALSE(addRecord(forced, {u"x", u"", u""}));
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_TRUE(shown[0].starts_with(u"addRecord - "));
    EXPECT_EQ(shown[0].back(), ')');
    EXPECT_EQ(start(u"embedded").dbTable, u"Memo");
}

TEST(WithoutCom, TheEmbeddedEngineServes)
{
    EXPECT_FALSE(AdoProvider::usable(u"104")) << "this thread has not initialised COM";
}

} // namespace
} // namespace vellums::tests::ado
