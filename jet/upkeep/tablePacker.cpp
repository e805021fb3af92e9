// Nothing that a row or a key says has to be understood, only where it points. Rows are copied as bytes; of
// their long values only the pointers are new. A row that had moved comes home. Keys keep their bytes, and
// get the new places of the rows they lead to, so any sort order will do.
//
// Only ids of tables that move are numbers with a meaning: in the rows of the two system tables that hold
// them, and in keys over that column, where they stand in a form that sorts.
#include "jet/upkeep/tablePacker.h"

#include "jet/file/maps/freePages.h"
#include "jet/index/bTree.h"
#include "jet/table/longValue.h"
#include "jet/table/pageSpace.h"
#include "jet/table/rowCodec.h"

#include <algorithm>
#include <cassert>

namespace vellums::jet {
namespace {

constexpr std::size_t kDistinctKeys = 4; // offset in an index's counters
constexpr std::byte kPresent{0x7F};      // before a number in an ascending key

// The bytes of a row that hold a column.
MutableBytes placeIn(Bytes& row, ByteView column)
{
    return MutableBytes(row).subspan(static_cast<std::size_t>(column.data() - row.data()), column.size());
}

// A number as an ascending key has it: the highest byte first, and its sign so that negative ones come first.
std::uint32_t keyNumber(ByteView key)
{
    std::uint32_t number = 0;
    for (std::size_t i = 1; i <= 4; ++i)
        number = number << 8 | std::to_integer<std::uint32_t>(key[i]);
    return number ^ 0x80000000;
}

void setKeyNumber(MutableBytes key, std::uint32_t number)
{
    number ^= 0x80000000;
    for (std::size_t i = 4; i >= 1; --i, number >>= 8)
        key[i] = static_cast<std::byte>(number);
}

} // namespace

TablePacker::TablePacker(PageFile& from, const Table& table, PageFile& to, TableDefinition fresh,
    std::optional<std::size_t> idColumn, const MovedIds& moved)
    : from_(from)
    , table_(table)
    , to_(to)
    , fresh_(std::move(fresh))
    , idColumn_(idColumn)
    , moved_(moved)
{
}

void TablePacker::run()
{
    table_.forEachRow([this](const Row& row) {
        copyRow(row);
        to_.makeRoom();
        return true;
    });
    std::sort(places_.begin(), places_.end(), [](Place a, Place b) { return a.before < b.before; });
    for (std::size_t i = 0; i < fresh_.physicalIndexes.size(); ++i)
        buildIndex(i);
    store<std::uint32_t>(fresh_.joined, kRowCountOffset, static_cast<std::uint32_t>(places_.size()));
    storePlaces(fresh_);
    writeDefinitionBytes(to_, fresh_);
    to_.makeRoom();
}

void TablePacker::copyRow(const Row& row)
{
    Bytes bytes(row.bytes().begin(), row.bytes().end());
    for (std::size_t i = 0; i < fresh_.columns.size(); ++i) {
        const Column& column = fresh_.columns[i];
        if (!isLongValue(column.type) && idColumn_ != i)
            continue;
        const std::optional<ByteView> stored = columnBytes(kJet4, bytes, column);
        if (!stored)
            continue;
        const MutableBytes place = placeIn(bytes, *stored);
        if (idColumn_ == i) {
            renumber(place);
        } else if (!isInline(place)) {
            const Bytes reference = copyLongValue(from_, place, to_, column);
            std::copy(reference.begin(), reference.end(), place.begin());
        }
    }
    const RowRef now = placeNext(to_, {fresh_.page, fresh_.ownedMap, fresh_.freeMap}, bytes, lastPage_);
    places_.push_back({pointerTo(row.home()), pointerTo(now)});
}

void TablePacker::renumber(MutableBytes number) const
{
    if (const auto found = moved_.find(load<std::int32_t>(number, 0)); found != moved_.end())
        store<std::int32_t>(number, 0, found->second);
}

RowRef TablePacker::placeOf(RowRef before) const
{
    const std::uint32_t pointer = pointerTo(before);
    const auto found = std::lower_bound(places_.begin(), places_.end(), pointer,
        [](Place place, std::uint32_t wanted) { return place.before < wanted; });
    if (found == places_.end() || found->before != pointer)
        throwDamaged(u"an index of '" + table_.name() + u"' leads to a row that is not there");
    return rowRefOf(found->now);
}

void TablePacker::buildIndex(std::size_t index)
{
    const PhysicalIndex& old = table_.definition().physicalIndexes[index];
    const bool ofIds = idColumn_ && !old.columns.empty() && old.columns[0].ascending &&
        old.columns[0].number == fresh_.columns[*idColumn_].number;
    std::vector<IndexEntry> entries;
    BTree(from_, {old.root, old.usageMap, table_.definition().page}).forEach([&](ByteView key, RowRef row) {
        IndexEntry entry{Bytes(key.begin(), key.end()), placeOf(row)};
        if (ofIds && key.size() >= 5 && key[0] == kPresent)
            if (const auto found = moved_.find(static_cast<std::int32_t>(keyNumber(key)));
                found != moved_.end())
                setKeyNumber(entry.key, static_cast<std::uint32_t>(found->second));
        entries.push_back(std::move(entry));
        return true;
    });
    std::sort(entries.begin(), entries.end());
    std::uint32_t distinct = 0;
    for (std::size_t i = 0; i < entries.size(); ++i)
        distinct += i == 0 || entries[i].key != entries[i - 1].key;
    store<std::uint32_t>(fresh_.joined, fresh_.counterOffsets[index] + kDistinctKeys, distinct);
    FreePages free(to_);
    const PhysicalIndex& now = fresh_.physicalIndexes[index];
    BTree(to_, {now.root, now.usageMap, fresh_.page}).rebuild(std::move(entries), free);
    to_.makeRoom();
}

} // namespace vellums::jet
