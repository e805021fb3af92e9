// Writing goes through one buffer, flushed when it is large and when a segment is sealed, so a segment costs
// one sync whatever its size. A running sum goes over everything but the images, which the sums of their
// sectors cover; a segment whose sum does not fit was cut off by a crash. Reading goes from the first segment
// on, piece by piece, and ends at the first that is not whole: nothing behind it was ever followed by a
// write of the database. Each record is seen as long as the callback runs, so memory stays small.
#include "jet/file/journal.h"

#include <algorithm>
#include <cassert>
#include <string_view>

namespace vellums::jet {
namespace {

constexpr std::string_view kMagic = "VELJRNL2";
constexpr std::string_view kDone = "VELJDONE";
constexpr std::size_t kHeaderBytes = 40;
constexpr std::size_t kFirstSegment = 512;
constexpr std::uint32_t kSegmentLetters = 0x4D474553; // SEGM
constexpr std::size_t kSegmentHead = 32;
constexpr std::size_t kSumsBytes = 8 * kSectors;
constexpr std::size_t kRecordBytes = 8 + kSumsBytes;
constexpr std::size_t kBuffer = 256 * 1024;

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

SectorSums sumsOf(const JournalHeader& header, PageNo page, ByteView bytes)
{
    SectorSums sums;
    for (std::size_t i = 0; i < kSectors; ++i)
        sums[i] = sectorSum(header, page, i, bytes.subspan(i * kSectorSize, kSectorSize));
    return sums;
}

SectorSums loadSums(ByteView bytes)
{
    SectorSums sums;
    for (std::size_t i = 0; i < kSectors; ++i)
        sums[i] = load<std::uint64_t>(bytes, 8 * i);
    return sums;
}

void appendSums(Bytes& bytes, const SectorSums& sums)
{
    for (const std::uint64_t sum : sums)
        append<std::uint64_t>(bytes, sum);
}

// Reads a file from some place on.
class Stream {
public:
    Stream(const DiskFile& file, std::uint64_t place)
        : file_(file)
        , place_(place)
    {
    }

    // The next bytes, until the next call; fewer than asked for at the end of the file.
    ByteView take(std::size_t length)
    {
        if (buffer_.size() - at_ < length) {
            place_ += at_;
            at_ = 0;
            buffer_ = file_.read(place_, kBuffer);
        }
        const ByteView part = ByteView(buffer_).subspan(at_, std::min(length, buffer_.size() - at_));
        at_ += part.size();
        return part;
    }
    std::uint64_t place() const { return place_ + at_; }

private:
    const DiskFile& file_;
    std::uint64_t place_; // of the buffer
    Bytes buffer_;
    std::size_t at_ = 0;
};

// Reads one record and goes on with the sum of its segment. Nullopt: it was not written to its end. What
// `fixed` points to is gone with the next take(), so it is used up before; the image lasts until then too.
std::optional<JournalRecord> readRecord(Stream& stream, const JournalHeader& header, std::uint64_t& sum)
{
    const ByteView fixed = stream.take(kRecordBytes);
    if (fixed.size() < kRecordBytes)
        return std::nullopt;
    JournalRecord record;
    record.page = load<std::uint32_t>(fixed, 0);
    record.after = loadSums(fixed.subspan(8));
    sum = checksum(fixed, sum);
    if (record.page >= kMaxPages || load<std::uint32_t>(fixed, 4) > 1)
        return std::nullopt;
    if (load<std::uint32_t>(fixed, 4) == 0)
        return record;
    const ByteView more = stream.take(kSumsBytes + kPageSize);
    if (more.size() < kSumsBytes + kPageSize)
        return std::nullopt;
    record.before = loadSums(more);
    sum = checksum(more.first(kSumsBytes), sum);
    record.image = more.subspan(kSumsBytes);
    if (sumsOf(header, record.page, record.image) != record.before)
        return std::nullopt;
    return record;
}

bool beginsWith(const DiskFile& journal, std::string_view letters)
{
    const Bytes start = journal.read(0, letters.size());
    return start.size() == letters.size() && std::memcmp(start.data(), letters.data(), letters.size()) == 0;
}

Bytes encoded(const JournalHeader& header)
{
    Bytes bytes;
    append(bytes, std::as_bytes(std::span(kMagic)));
    append<std::uint64_t>(bytes, header.number);
    append<std::uint32_t>(bytes, header.pagesBefore);
    append<std::uint32_t>(bytes, 0);
    append<std::uint64_t>(bytes, header.identity);
    append<std::uint64_t>(bytes, checksum(slice(bytes, 8, 24), 0));
    bytes.resize(kFirstSegment); // a sector of its own, so that marking it endangers no segment
    return bytes;
}

} // namespace

std::u16string journalPath(const std::u16string& databasePath)
{
    return databasePath + u"-journal";
}

std::uint64_t identityOf(ByteView page0)
{
    constexpr std::size_t kCommitMarks = 0xE00; // pairs of bytes that other programs count in
    return checksum(page0.first(std::min(kCommitMarks, page0.size())), 0);
}

// The number of the statement is part of every sum, and so is the place: neither a journal of another
// statement nor the same bytes in another sector can explain what the file holds.
std::uint64_t sectorSum(const JournalHeader& header, PageNo page, std::size_t sector, ByteView bytes)
{
    constexpr std::uint64_t kSpread = 0xD6E8FEB86659FD93;
    return checksum(bytes, header.number ^ (std::uint64_t{page} * kSectors + sector) * kSpread);
}

JournalWriter::JournalWriter(DiskFile& file, const JournalHeader& header)
    : file_(file)
    , header_(header)
    , buffer_(encoded(header))
{
}

void JournalWriter::begin(std::size_t records, PageNo pagesAfter, bool last)
{
    const std::size_t start = buffer_.size();
    append<std::uint32_t>(buffer_, kSegmentLetters);
    append<std::uint32_t>(buffer_, static_cast<std::uint32_t>(records));
    append<std::uint32_t>(buffer_, last ? 1 : 0);
    append<std::uint32_t>(buffer_, pagesAfter);
    append<std::uint64_t>(buffer_, header_.number);
    append<std::uint64_t>(buffer_, sealed_);
    sum_ = checksum(ByteView(buffer_).subspan(start), header_.number);
}

std::uint64_t JournalWriter::add(PageNo page, ByteView after, ByteView image)
{
    assert(after.size() == kPageSize && (image.empty() || image.size() == kPageSize));
    std::size_t start = buffer_.size();
    append<std::uint32_t>(buffer_, page);
    append<std::uint32_t>(buffer_, image.empty() ? 0 : 1);
    appendSums(buffer_, sumsOf(header_, page, after));
    sum_ = checksum(ByteView(buffer_).subspan(start), sum_);
    if (image.empty())
        return 0;
    start = buffer_.size();
    appendSums(buffer_, sumsOf(header_, page, image));
    sum_ = checksum(ByteView(buffer_).subspan(start), sum_);
    const std::uint64_t place = end();
    append(buffer_, image);
    if (buffer_.size() >= kBuffer)
        flush();
    return place;
}

void JournalWriter::seal()
{
    append<std::uint64_t>(buffer_, sum_);
    flush();
    file_.sync();
    ++sealed_;
}

void JournalWriter::flush()
{
    file_.writeAt(place_, buffer_);
    place_ += buffer_.size();
    buffer_.clear();
}

void JournalWriter::readImage(std::uint64_t place, MutableBytes page) const
{
    if (file_.readAt(place, page) < page.size())
        throw platform::FileError{platform::FileFault::Failed, 0};
}

std::optional<JournalReader> JournalReader::open(const DiskFile& file)
{
    const Bytes bytes = file.read(0, kHeaderBytes);
    if (bytes.size() < kHeaderBytes || std::memcmp(bytes.data(), kMagic.data(), kMagic.size()) != 0 ||
        checksum(slice(bytes, 8, 24), 0) != load<std::uint64_t>(bytes, 32))
        return std::nullopt;
    return JournalReader(file,
        {load<std::uint64_t>(bytes, 8), load<std::uint32_t>(bytes, 16), load<std::uint64_t>(bytes, 24)});
}

JournalReader::JournalReader(const DiskFile& file, const JournalHeader& header)
    : file_(&file)
    , header_(header)
{
    // A segment behind the last one, or one whose number does not continue the count, is a rest of a longer
    // journal that this one was written over.
    std::uint64_t place = kFirstSegment;
    while (segments_.empty() || !segments_.back().last) {
        const auto segment = readSegment(place, segments_.size(), place, [](const JournalRecord&) {});
        if (!segment)
            return;
        segments_.push_back(*segment);
    }
}

std::optional<JournalReader::Segment> JournalReader::readSegment(
    std::uint64_t place, std::size_t number, std::uint64_t& end, const Callback& callback) const
{
    Stream stream(*file_, place);
    const ByteView head = stream.take(kSegmentHead);
    if (head.size() < kSegmentHead || load<std::uint32_t>(head, 0) != kSegmentLetters ||
        load<std::uint64_t>(head, 16) != header_.number || load<std::uint64_t>(head, 24) != number)
        return std::nullopt;
    const Segment segment{place, load<std::uint32_t>(head, 12), load<std::uint32_t>(head, 8) == 1};
    const auto records = load<std::uint32_t>(head, 4);
    std::uint64_t sum = checksum(head, header_.number);
    for (std::uint32_t i = 0; i < records; ++i) {
        const std::optional<JournalRecord> record = readRecord(stream, header_, sum);
        if (!record)
            return std::nullopt;
        callback(*record);
    }
    const ByteView tail = stream.take(8);
    if (tail.size() < 8 || load<std::uint64_t>(tail, 0) != sum)
        return std::nullopt;
    end = stream.place();
    return segment;
}

void JournalReader::forEachRecord(std::size_t segment, const Callback& callback) const
{
    assert(segment < segments_.size());
    std::uint64_t end = 0;
    if (!readSegment(segments_[segment].place, segment, end, callback)) // it was good a moment ago
        throw platform::FileError{platform::FileFault::Failed, 0};
}

bool isHot(const DiskFile& journal)
{
    const Bytes magic = journal.read(0, kMagic.size());
    return magic.size() == kMagic.size() &&
        std::any_of(magic.begin(), magic.end(), [](std::byte b) { return b != std::byte{0}; });
}

bool isOurs(const DiskFile& journal)
{
    return beginsWith(journal, kMagic);
}

bool isDone(const DiskFile& journal)
{
    return beginsWith(journal, kDone);
}

void markDone(DiskFile& journal)
{
    journal.writeAt(0, std::as_bytes(std::span(kDone)));
}

void markIdle(DiskFile& journal)
{
    const std::array<std::byte, kMagic.size()> zeros{};
    journal.writeAt(0, zeros);
}

} // namespace vellums::jet
