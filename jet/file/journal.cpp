#include "jet/file/journal.h"

#include "jet/file/pageFile.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace vellums::jet {
namespace {

constexpr std::string_view kMagic = "VELJRNL1";
constexpr std::size_t kHeaderBytes = 40;
constexpr std::size_t kRecordBytes = 24;
constexpr std::size_t kChecksumOffset = 32;

// A 64-bit sum over little-endian words, each mixed by a multiplication and a rotation, so that order
// and place of every bit count.
std::uint64_t checksum(ByteView bytes, std::uint64_t seed)
{
    constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15;
    std::uint64_t sum = seed ^ (bytes.size() * kFactor);
    std::size_t i = 0;
    for (; i + 8 <= bytes.size(); i += 8)
        sum = std::rotl((sum ^ load<std::uint64_t>(bytes, i)) * kFactor, 29);
    for (; i < bytes.size(); ++i)
        sum = std::rotl((sum ^ static_cast<std::uint64_t>(bytes[i])) * kFactor, 29);
    return sum ^ (sum >> 32);
}

struct Record {
    std::uint32_t page;
    bool isNew;
    std::uint64_t after;
    std::uint64_t before;
};

struct Journal {
    std::uint32_t pagesBefore = 0;
    std::uint64_t number = 0;
    std::uint64_t page0 = 0;
    std::vector<Record> records;
    Bytes images;
};

// Nothing when the journal is idle or was not written to its end.
std::optional<Journal> readComplete(const DiskFile& file)
{
    const Bytes header = file.read(0, kHeaderBytes);
    if (header.size() < kHeaderBytes || std::memcmp(header.data(), kMagic.data(), kMagic.size()) != 0)
        return std::nullopt;
    const std::size_t count = load<std::uint32_t>(header, 8);
    if (count > kMaxPages)
        return std::nullopt;
    const Bytes table = file.read(kHeaderBytes, count * kRecordBytes);
    if (table.size() < count * kRecordBytes)
        return std::nullopt;
    const std::uint64_t headerSum = checksum(slice(header, 8, 24), 0);
    if (checksum(table, headerSum) != load<std::uint64_t>(header, kChecksumOffset))
        return std::nullopt;

    Journal journal;
    journal.pagesBefore = load<std::uint32_t>(header, 12);
    journal.number = load<std::uint64_t>(header, 16);
    journal.page0 = load<std::uint64_t>(header, 24);
    std::size_t imageCount = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const ByteView at = slice(table, i * kRecordBytes, kRecordBytes);
        journal.records.push_back({load<std::uint32_t>(at, 0), load<std::uint32_t>(at, 4) != 0,
            load<std::uint64_t>(at, 8), load<std::uint64_t>(at, 16)});
        if (!journal.records.back().isNew)
            ++imageCount;
    }
    journal.images = file.read(kHeaderBytes + table.size(), imageCount * kPageSize);
    if (journal.images.size() < imageCount * kPageSize)
        return std::nullopt;
    std::size_t image = 0;
    for (const Record& record : journal.records) {
        if (record.isNew)
            continue;
        if (checksum(slice(journal.images, image, kPageSize), journal.number ^ record.page) != record.before)
            return std::nullopt;
        image += kPageSize;
    }
    return journal;
}

bool isFinished(const Journal& journal, const DiskFile& database)
{
    return std::all_of(journal.records.begin(), journal.records.end(), [&](const Record& record) {
        const Bytes page = database.read(std::uint64_t{record.page} * kPageSize, kPageSize);
        return page.size() == kPageSize && checksum(page, journal.number ^ record.page) == record.after;
    });
}

// A journal that was left beside a file which was replaced meanwhile must not touch the new one.
bool belongsTo(const Journal& journal, const DiskFile& database)
{
    return checksum(database.read(0, kPageSize), 0) == journal.page0 &&
        database.size() >= std::uint64_t{journal.pagesBefore} * kPageSize;
}

} // namespace

std::u16string journalPath(const std::u16string& databasePath)
{
    return databasePath + u"-journal";
}

Bytes makeJournal(
    const std::vector<JournalPage>& pages, std::uint32_t pagesBefore, std::uint64_t number, ByteView page0)
{
    Bytes table;
    Bytes images;
    for (const JournalPage& page : pages) {
        append<std::uint32_t>(table, page.page);
        append<std::uint32_t>(table, page.before.empty() ? 1 : 0);
        append<std::uint64_t>(table, checksum(page.after, number ^ page.page));
        append<std::uint64_t>(table, page.before.empty() ? 0 : checksum(page.before, number ^ page.page));
        append(images, page.before);
    }
    Bytes journal;
    journal.reserve(kHeaderBytes + table.size() + images.size());
    append(journal, std::as_bytes(std::span(kMagic)));
    append<std::uint32_t>(journal, static_cast<std::uint32_t>(pages.size()));
    append<std::uint32_t>(journal, pagesBefore);
    append<std::uint64_t>(journal, number);
    append<std::uint64_t>(journal, checksum(page0, 0));
    append<std::uint64_t>(journal, checksum(table, checksum(slice(journal, 8, 24), 0)));
    append(journal, table);
    append(journal, images);
    return journal;
}

bool isHot(const DiskFile& journal)
{
    const Bytes magic = journal.read(0, kMagic.size());
    return magic.size() == kMagic.size() && std::memcmp(magic.data(), kMagic.data(), kMagic.size()) == 0;
}

void markIdle(DiskFile& journal)
{
    const std::array<std::byte, kMagic.size()> zeros{};
    journal.writeAt(0, zeros);
}

void rollBack(DiskFile& database, DiskFile& journal)
{
    const std::optional<Journal> statement = readComplete(journal);
    if (statement && belongsTo(*statement, database) && !isFinished(*statement, database)) {
        std::size_t image = 0;
        for (const Record& record : statement->records) {
            if (record.isNew)
                continue;
            database.writeAt(
                std::uint64_t{record.page} * kPageSize, slice(statement->images, image, kPageSize));
            image += kPageSize;
        }
        database.resize(std::uint64_t{statement->pagesBefore} * kPageSize);
        database.sync();
    }
    markIdle(journal);
}

} // namespace vellums::jet
