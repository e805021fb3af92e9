// SQL text, run against a small database that is as before afterwards.
#include "fuzz/sampleDatabase.h"
#include "fuzz/target.h"
#include "jet/database.h"
#include "platform/files.h"
#include "text/unicode.h"

namespace vellums::fuzz {
namespace {

std::u16string madeDatabase()
{
    const std::u16string path = workFile(u"sql.mdb");
    platform::removeFile(path);
    makeSampleDatabase(path);
    return path;
}

} // namespace

std::vector<std::string> seeds()
{
    return {
        "SELECT TOP 32767 ID,VLHEAD FROM [Notes] WHERE ([VLHEAD] LIKE '%a[b-d!x]_%' OR [VLTEXT] LIKE "
        "'%[!b]%') "
        "ORDER BY VLTYPE DESC,  VLHEAD ASC, VLDATE DESC, ID DESC",
        "INSERT INTO [Notes] (VLHEAD, VLTEXT, VLTYPE, VLDATE) VALUES ('it''s', \"t\", '', '2001-2-3 4:5:6')",
        "INSERT INTO [Notes] (VLHEAD, VLDATE) SELECT VLHEAD, VLDATE FROM [Notes] WHERE ID BETWEEN 1 AND 3",
        "UPDATE [Notes] SET VLTEXT=Mid(VLTEXT, 2, 5) & UCase(Trim(VLHEAD)) WHERE ID IN (1, 2) AND NOT "
        "(VLDATE IS "
        "NULL)",
        "DELETE FROM [Notes] WHERE VLDATE < #2/3/2001# AND ID MOD 2 = 1 OR Len(VLTEXT) >= 12",
        "SELECT COUNT(*), MAX(ID) AS m, MIN(VLDATE) FROM Notes GROUP BY VLMD5 HAVING COUNT(*) > 1",
        "SELECT * FROM V WHERE A + B * C / D - 1 <> &HFF AND G = True AND H >= 'x'",
        "CREATE TABLE T (ID COUNTER PRIMARY KEY, A TEXT(20) NOT NULL, B MEMO)",
        "ALTER TABLE V ADD COLUMN K VARCHAR(32)",
        "DROP TABLE V",
        "SELECT @@IDENTITY",
    };
}

} // namespace vellums::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace vellums;
    static const std::u16string path = fuzz::madeDatabase();
    jet::Database database(path);
    database.beginBatch(); // given up at the end
    try {
        database.run(text::fromUtf8({reinterpret_cast<const char*>(data), size}));
    } catch (const jet::Error&) { // refused
    }
    return 0;
}
