// The password of a database file, from the connection string to the engine.
#include "store/connectionString.h"

#include "store/embedded/embeddedProvider.h"
#include "tests/support/lockedFile.h"
#include "tests/support/temporaryFolder.h"

#include <gtest/gtest.h>

namespace vellums {
namespace {

TEST(DatabasePassword, StandsInTheConnectionString)
{
    const struct {
        std::u16string string;
        std::u16string file;
        std::u16string password;
    } cases[] = {
        {u"Data Source=a.mdb", u"a.mdb", u""},
        {u"Data Source=a.mdb;Jet OLEDB:Database Password=secret", u"a.mdb", u"secret"},
        {u"Provider=X; Data Source=C:\\a;b=c.accdb; jet oledb:database password = s p ;Mode=Read",
            u"C:\\a;b=c.accdb", u"s p"},
        {u"Jet OLEDB:Database Password=first;Data Source=a.mdb", u"a.mdb", u"first"},
        {u"Data Source=a.accdb;Jet OLEDB:Database Password=x.mdb", u"a.accdb", u"x.mdb"},
        {u"Data Source=a.mdb;Jet OLEDB:Database Password=\"a;\"\"b' \";Mode=Read", u"a.mdb", u"a;\"b' "},
        {u"Data Source=a.mdb;Jet OLEDB:Database Password='it''s;'", u"a.mdb", u"it's;"},
        {u"Data Source=a.mdb;Jet OLEDB:Database Password=\"open", u"a.mdb", u"open"},
        {u"Data Source=a.mdb;Jet OLEDB:Database Password=", u"a.mdb", u""},
        {u"Data Source=a.mdb;Jet OLEDB:Database Password=a=b", u"a.mdb", u"a=b"},
        {u"Data Source=a.mdb;;Other;Jet OLEDB:Database Password=p", u"a.mdb", u"p"},
        {u"Data Source=a.mdb;Jet OLEDB:Database Password", u"a.mdb", u""},
        {u"Data Source=S;Password=ferret", u"S", u""}, // of a server
    };
    for (const auto& c : cases) {
        EXPECT_EQ(fileOf(c.string), c.file) << std::string(c.string.begin(), c.string.end());
        EXPECT_EQ(databasePassword(c.string), c.password) << std::string(c.string.begin(), c.string.end());
    }
}

TEST(DatabasePassword, OpensTheFile)
{
    const tests::TemporaryFolder folder;
    const std::u16string path = folder.file(u"locked.mdb");
    const EmbeddedProvider provider;
    provider.createDatabase(path, u"Notes");
    tests::lockFile(path, u"a;b");
    const std::u16string source = u"Data Source=" + path + u";Jet OLEDB:Database Password=";
    EXPECT_EQ(provider.open(source + u"'a;b'")->execute(u"DELETE FROM Notes"), 0);
    for (const char16_t* const wrong : {u"", u"a", u"'A;b'"}) {
        try {
            provider.open(source + wrong);
            ADD_FAILURE();
        } catch (const ProviderError& e) {
            EXPECT_EQ(e.number, jet::kAuthFailed);
        }
    }
}

} // namespace
} // namespace vellums
