// How long does a full list of headings take through the ADO client, beside the embedded client?
//
//   adoHeadings [FOLDER]
//
// Fills a database in FOLDER (the present one by default) with 40,000 notes and lists 32,767 headings
// through both clients in turns. ADO's objects are doubles of the tests that answer from the embedded
// engine, so what they spend is shown apart: the engine's work, and filling the arrays of GetRows.
#include "benchmarks/turns.h"
#include "platform/files.h"
#include "platform/win32/comObject.h"
#include "store/ado/adoProvider.h"
#include "store/embedded/embeddedProvider.h"
#include "store/records/headingQuery.h"
#include "tests/ado/registration.h"
#include "text/decimal.h"
#include "text/unicode.h"

#include <cstdio>

namespace {

using namespace vellums;
using benchmarks::median;
using benchmarks::millisecondsOf;

constexpr int kRuns = 15;
constexpr int kNotes = 40000;

// Opens, lists as the window does, closes; gives the milliseconds.
double list(const Provider& provider, const std::u16string& connectionString, const std::u16string& sql)
{
    std::vector<std::pair<std::int32_t, std::u16string>> headings;
    const double took = millisecondsOf([&] {
        const auto connection = provider.open(connectionString);
        const auto rows = connection->query(sql);
        while (rows->next())
            headings.emplace_back(
                std::get<std::int32_t>(rows->value(0)), std::get<std::u16string>(rows->value(1)));
    });
    if (headings.size() != static_cast<std::size_t>(kMaxListed))
        std::printf("wrong number of headings: %zu\n", headings.size());
    return took;
}

void fill(const EmbeddedProvider& provider, const std::u16string& path)
{
    using text::decimal;
    provider.createDatabase(path, u"Notes");
    const auto connection = provider.open(u"Data Source=" + path);
    connection->beginBatch();
    for (int i = 0; i < kNotes; ++i)
        connection->execute(
            u"INSERT INTO [Notes] (VLHEAD, VLTEXT, VLTYPE, VLDATE) VALUES ('Heading of the note " +
            decimal(i) + u" 标题', 'A short body, number " + decimal(i) + u".', '', " +
            decimal(30000 + i * 7 % 9973) + u")");
    connection->endBatch();
}

void measure(const std::u16string& path)
{
    const EmbeddedProvider embedded;
    const AdoProvider ado(u"104");
    const std::u16string connectionString = u"Provider=Microsoft.ACE.OLEDB.12.0; Data Source=" + path;
    const std::u16string sql =
        headingStatement({u"Notes", {u"VLHEAD", u"VLTEXT", u"VLLINK"}, u"", false, false});
    std::vector<double> own;
    std::vector<double> through;
    std::vector<double> inside;
    tests::ado::World& world = tests::ado::world();
    world.timing = true;
    for (int i = 0; i < kRuns; ++i) {
        own.push_back(list(embedded, connectionString, sql));
        world.answeringMs = 0;
        through.push_back(list(ado, connectionString, sql));
        inside.push_back(world.answeringMs);
    }
    const double engine = median(own);
    const double whole = median(through);
    const double doubles = median(inside);
    std::printf("%-52s %8.1f ms\n", "embedded client", engine);
    std::printf("%-52s %8.1f ms\n", "ADO client, whole", whole);
    std::printf("%-52s %8.1f ms\n", "  of it in the doubles (engine and arrays)", doubles);
    std::printf("%-52s %8.1f ms\n", "  of it in the client (calls, values, release)", whole - doubles);
    std::printf("%-52s %8.2f\n", "ADO client, whole / embedded client", whole / engine);
    std::printf("%-52s %8.2f\n", "the client's own work / embedded client", (whole - doubles) / engine);
}

} // namespace

int main(int count, char** arguments)
{
    const platform::ComApartment apartment;
    const tests::ado::InstalledAccess installed;
    const std::u16string path =
        platform::absolutePath(text::fromUtf8(count > 1 ? arguments[1] : ".")) + u"\\adoHeadings.mdb";
    try {
        platform::removeFile(path);
        fill(EmbeddedProvider(), path);
        std::printf("%d of %d headings, medians of %d runs in turns\n", kMaxListed, kNotes, kRuns);
        measure(path);
    } catch (const ProviderError& e) {
        std::fprintf(stderr, "%s\n", text::toUtf8(e.description).c_str());
        return 1;
    }
    platform::removeFile(path);
    return 0;
}
