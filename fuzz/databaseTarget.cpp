// The bytes of a database file: opens it, reads every table, checks it and changes it.
#include "fuzz/sampleDatabase.h"
#include "fuzz/target.h"
#include "jet/database.h"
#include "platform/files.h"
#include "tests/support/jet3File.h"

#include <cstdlib>

namespace vellums::fuzz {
namespace {

void run(jet::Database& database, const std::u16string& sql)
{
    try {
        database.run(sql);
    } catch (const jet::Error&) { // refused
    }
}

void useDatabase(const std::u16string& path)
{
    jet::Database database(path);
    const bool sound = database.check().empty();
    const auto tables = database.tables();
    for (std::size_t i = 0; i < tables.size() && i < 20; ++i)
        run(database, u"SELECT * FROM [" + tables[i].name + u"]");
    run(database, u"SELECT * FROM [Umsätze] WHERE Notiz LIKE '%é%' ORDER BY [Größe]");
    run(database, u"SELECT ID, VLHEAD FROM [Notes] WHERE VLTEXT LIKE '%b%' ORDER BY VLHEAD");
    run(database,
        u"INSERT INTO [Notes] (VLHEAD, VLTEXT, VLDATE) VALUES ('new', '" + std::u16string(5000, u'n') +
            u"', '2001-2-3')");
    run(database, u"UPDATE [Notes] SET VLTEXT='changed' WHERE ID<3");
    run(database, u"DELETE FROM [Notes] WHERE ID=2");
    run(database, u"SELECT * INTO [Copy] FROM [Notes]");
    run(database, u"DROP TABLE [Notes]");
    if (sound && !database.check().empty())
        std::abort(); // a sound file became unsound
}

} // namespace

std::vector<std::string> seeds()
{
    std::vector<std::string> all;
    for (const char16_t* const name : {u"seed.mdb", u"seed.accdb"}) {
        const std::u16string path = workFile(name);
        platform::removeFile(path);
        makeSampleDatabase(path);
        all.push_back(readWorkFile(path));
    }
    const jet::Bytes old = tests::jet3File();
    all.emplace_back(reinterpret_cast<const char*>(old.data()), old.size());
    return all;
}

} // namespace vellums::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace vellums;
    const std::u16string path = fuzz::workFile(u"input.mdb");
    platform::removeFile(path + u"-journal");
    fuzz::writeWorkFile(path, data, size);
    try {
        fuzz::useDatabase(path);
    } catch (const jet::Error&) { // refused
    }
    return 0;
}
