#include "fuzz/sampleDatabase.h"

#include "jet/database.h"
#include "store/embedded/embeddedProvider.h"

namespace vellums::fuzz {

void makeSampleDatabase(const std::u16string& path)
{
    EmbeddedProvider().createDatabase(path, u"Notes");
    jet::Database database(path);
    for (const std::size_t length : {0u, 3u, 300u, 5000u, 12000u})
        database.run(u"INSERT INTO [Notes] (VLHEAD, VLTEXT, VLDATE) VALUES ('title " +
            std::u16string(length / 100, u'文') + u"', '" + std::u16string(length, u'b') +
            u"', '2001-2-3 4:5:6')");
    database.run(u"DELETE FROM [Notes] WHERE ID=3");
    database.run(u"CREATE TABLE V (A BYTE, B SHORT, C SINGLE, D DOUBLE, E CURRENCY, F DATETIME, G YESNO, H "
                 u"TEXT(20), I BINARY(4), J MEMO)");
    database.run(
        u"INSERT INTO V VALUES (200, -3, 0.1, 1e100, -1234.5, '2024-3-5 9:7:3', True, 'ab', NULL, '')");
}

} // namespace vellums::fuzz
