// A definition may go over several pages, each of which names the next; it is joined without their heads and
// read from front to back: counts, index counters, columns, names, indexes, maps of long values. What the
// reader does not know stays in the joined bytes, so that a change (a number patched, a column appended)
// is made there and written back over the same pages, and everything else stays as another program left it.
#include "jet/table/tableDefinition.h"

#include "jet/file/codePageText.h"
#include "jet/file/maps/freePages.h"

#include <algorithm>
#include <cassert>

namespace vellums::jet {
namespace {

constexpr std::size_t kLongValueBytes = 10;
constexpr std::size_t kContinuation = kPageSize - 8; // bytes of the definition on each further page
constexpr std::size_t kUsageMapInIndex = 34;
constexpr std::size_t kRootInIndex = 38;
constexpr std::size_t kMaxColumns = 255;
constexpr std::size_t kMaxIndexes = 1000; // far above the 32 of the format, which Access itself passes
constexpr std::size_t kIndexSlots = 10;
constexpr std::uint32_t kRecordMagic = 1625;
constexpr std::uint32_t kPhysicalMagic = 0x0783;
constexpr std::uint8_t kKnownIndexFlags = 0x8B;
constexpr std::uint16_t kNoColumn = 0xFFFF;

// Reads the joined definition from front to back; no step leaves it.
class Reader {
public:
    Reader(ByteView bytes, const Header& header)
        : bytes_(bytes)
        , header_(header)
    {
    }
    std::size_t offset() const { return offset_; }
    ByteView take(std::size_t length)
    {
        const ByteView part = slice(bytes_, offset_, length);
        offset_ += length;
        return part;
    }
    std::u16string takeName()
    {
        if (header_.format->codePageTexts)
            return codePageText(take(load<std::uint8_t>(take(1), 0)), header_.codePage);
        const std::size_t length = load<std::uint16_t>(take(2), 0);
        const ByteView text = take(length);
        std::u16string name(length / 2, u'\0');
        std::memcpy(name.data(), text.data(), name.size() * 2);
        return name;
    }

private:
    ByteView bytes_;
    const Header& header_;
    std::size_t offset_ = 0;
};

Bytes joinPages(const PageFile& file, PageNo first, std::vector<PageNo>& pages)
{
    Bytes joined;
    for (PageNo page = first; page != 0;) {
        const PageView view = file.read(page);
        const ByteView bytes = view;
        if (load<std::uint16_t>(bytes, 0) != 0x0102)
            throwDamaged(u"a page of a table definition is of another kind");
        if (std::find(pages.begin(), pages.end(), page) != pages.end())
            throwDamaged(u"the pages of a table definition form a circle");
        append(joined, pages.empty() ? bytes : bytes.subspan(8));
        pages.push_back(page);
        page = load<std::uint32_t>(bytes, 4);
    }
    const std::size_t length = load<std::uint32_t>(joined, 8);
    if (length < file.format().definition.headBytes + 2 || length > joined.size())
        throwDamaged(u"a table definition has a wrong length");
    joined.resize(length);
    return joined;
}

// The record of a column, as Jet 4 and ACE have it:
//
//   offset  size  holds
//        0     1  type
//        5     2  number
//        7     2  slot
//        9     2  position
//       11     4  sort order; of decimals precision and scale, a byte each
//       15     1  flags, and more at 16
//       21     2  offset in the fixed area
//       23     2  length
//
// The sort order of columns that are no texts means nothing, and that of some texts is 0: the file's.
Column readColumn(ByteView record, const Header& header)
{
    const Format::Column& places = header.format->column;
    Column column;
    column.type = static_cast<ColumnType>(load<std::uint8_t>(record, 0));
    column.valueType = column.type == ColumnType::ExtendedDate ? ColumnType::Date : column.type;
    column.number = load<std::uint16_t>(record, places.number);
    column.slot = load<std::uint16_t>(record, places.slot);
    column.position = load<std::uint16_t>(record, places.position);
    column.precision = load<std::uint8_t>(record, places.sortOrder);
    column.scale = load<std::uint8_t>(record, places.sortOrder + 1);
    column.sortOrder = {load<std::uint16_t>(record, places.sortOrder), 0};
    if (places.sortVersion != 0)
        column.sortOrder.version = load<std::uint8_t>(record, places.sortVersion);
    if (column.sortOrder.lcid == 0)
        column.sortOrder = header.sortOrder;
    column.flags = load<std::uint8_t>(record, places.flags);
    if (places.moreFlags != 0)
        column.moreFlags = load<std::uint8_t>(record, places.moreFlags);
    column.offset = load<std::uint16_t>(record, places.offset);
    column.length = load<std::uint16_t>(record, places.length);
    return column;
}

// What is not understood is kept and makes the index one that the engine does not write; reading the table
// does not depend on it.
PhysicalIndex readPhysicalIndex(ByteView record, const TableDefinition& definition)
{
    PhysicalIndex index;
    bool ended = false;
    for (std::size_t i = 0; i < kIndexSlots; ++i) {
        const auto number = load<std::uint16_t>(record, 4 + 3 * i);
        if (number == kNoColumn) {
            ended = true;
            continue;
        }
        if (ended || definition.columnByNumber(number) == nullptr)
            index.understood = false;
        index.columns.push_back({number, load<std::uint8_t>(record, 6 + 3 * i) == 1});
    }
    index.usageMap = rowRefOf(load<std::uint32_t>(record, kUsageMapInIndex));
    index.root = load<std::uint32_t>(record, kRootInIndex);
    index.flags = load<std::uint8_t>(record, 46);
    index.unique = (index.flags & 0x01) != 0;
    index.required = (index.flags & 0x08) != 0;
    if (load<std::uint32_t>(record, 0) != kPhysicalMagic || (index.flags & ~kKnownIndexFlags) != 0 ||
        index.columns.empty())
        index.understood = false;
    return index;
}

LogicalIndex readLogicalIndex(ByteView record)
{
    LogicalIndex index;
    index.number = load<std::uint32_t>(record, 4);
    index.physical = load<std::uint32_t>(record, 8);
    index.partner = load<std::int32_t>(record, 13);
    index.kind = load<std::uint8_t>(record, 23);
    return index;
}

void readLongValueMaps(Reader& reader, TableDefinition& definition)
{
    for (;;) {
        const auto number = load<std::uint16_t>(reader.take(2), 0);
        if (number == kNoColumn)
            break;
        const std::size_t offset = reader.offset();
        const ByteView pointers = reader.take(kLongValueBytes - 2);
        const auto column = std::find_if(definition.columns.begin(), definition.columns.end(),
            [number](const Column& c) { return c.number == number; });
        if (column == definition.columns.end())
            continue;
        column->ownedMap = rowRefOf(load<std::uint32_t>(pointers, 0));
        column->freeMap = rowRefOf(load<std::uint32_t>(pointers, 4));
        column->mapsOffset = offset;
    }
    if (reader.offset() != definition.joined.size())
        throwDamaged(u"a table definition does not end where its length says");
}

// How many there are of the parts that follow the head.
struct PartCounts {
    std::size_t columns;
    std::size_t logicalIndexes;
    std::size_t physicalIndexes;
};

PartCounts readHead(Reader& reader, TableDefinition& definition)
{
    const Format::Definition& places = definition.format->definition;
    const ByteView head = reader.take(places.headBytes);
    definition.rowCount = load<std::uint32_t>(head, places.rowCount);
    definition.lastAutoNumber = load<std::uint32_t>(head, places.autoNumber);
    definition.tableType = load<std::uint8_t>(head, places.tableType);
    definition.columnSlots = load<std::uint16_t>(head, places.columnSlots);
    definition.variableSlots = load<std::uint16_t>(head, places.variableSlots);
    definition.ownedMap = rowRefOf(load<std::uint32_t>(head, places.ownedMap));
    definition.freeMap = rowRefOf(load<std::uint32_t>(head, places.freeMap));
    const PartCounts counts = {load<std::uint16_t>(head, places.columns),
        load<std::uint32_t>(head, places.logicalIndexes), load<std::uint32_t>(head, places.physicalIndexes)};
    if (counts.columns > kMaxColumns || counts.logicalIndexes > kMaxIndexes ||
        counts.physicalIndexes > kMaxIndexes || definition.columnSlots > kMaxColumns ||
        definition.variableSlots > definition.columnSlots)
        throwDamaged(u"a table definition has impossible counts");
    return counts;
}

void readColumns(Reader& reader, TableDefinition& definition, std::size_t count, const Header& header)
{
    for (std::size_t i = 0; i < count; ++i) {
        definition.columns.push_back(readColumn(reader.take(header.format->definition.columnBytes), header));
        const Column& column = definition.columns.back();
        if (column.number >= definition.columnSlots ||
            (!column.isFixed() && column.type != ColumnType::Boolean &&
                column.slot >= definition.variableSlots))
            throwDamaged(u"a column of a table definition has an impossible number");
    }
    for (Column& column : definition.columns)
        column.name = reader.takeName();
}

// Where indexes are not kept their records and names are passed over.
void readIndexes(Reader& reader, TableDefinition& definition, const PartCounts& counts)
{
    const std::size_t physicalBytes = definition.format->definition.physicalBytes;
    const std::size_t logicalBytes = definition.format->definition.logicalBytes;
    if (!definition.format->keepsIndexes) {
        reader.take(physicalBytes * counts.physicalIndexes + logicalBytes * counts.logicalIndexes);
        for (std::size_t i = 0; i < counts.logicalIndexes; ++i)
            reader.takeName();
        return;
    }
    for (std::size_t i = 0; i < counts.physicalIndexes; ++i) {
        const std::size_t offset = reader.offset();
        definition.physicalIndexes.push_back(readPhysicalIndex(reader.take(physicalBytes), definition));
        definition.physicalIndexes.back().offset = offset;
    }
    for (std::size_t i = 0; i < counts.logicalIndexes; ++i) {
        definition.logicalIndexes.push_back(readLogicalIndex(reader.take(logicalBytes)));
        const LogicalIndex& logical = definition.logicalIndexes.back();
        if (logical.physical >= counts.physicalIndexes)
            throwDamaged(u"an index of a table definition does not exist");
        if (logical.kind == 1)
            definition.physicalIndexes[logical.physical].unique = true;
        if (logical.kind == 1)
            definition.physicalIndexes[logical.physical].required = true;
    }
    for (LogicalIndex& index : definition.logicalIndexes)
        index.name = reader.takeName();
}

} // namespace

std::size_t fixedSize(const Column& column)
{
    if (column.type == ColumnType::Boolean)
        return 0;
    const std::size_t size = valueSize(column.type);
    return size == 0 ? column.length : size;
}

const Column* TableDefinition::columnByNumber(std::uint16_t number) const
{
    const auto found = std::find_if(
        columns.begin(), columns.end(), [number](const Column& column) { return column.number == number; });
    return found == columns.end() ? nullptr : &*found;
}

std::size_t TableDefinition::fixedLength() const
{
    std::size_t length = 0;
    for (const Column& column : columns)
        if (column.isFixed() && column.type != ColumnType::Boolean)
            length = std::max(length, column.offset + fixedSize(column));
    return length;
}

void appendColumnRecord(Bytes& bytes, const Column& column)
{
    append<std::uint8_t>(bytes, static_cast<std::uint8_t>(column.type));
    append<std::uint32_t>(bytes, kRecordMagic);
    append<std::uint16_t>(bytes, column.number);
    append<std::uint16_t>(bytes, column.slot);
    append<std::uint16_t>(bytes, column.position);
    if (column.type == ColumnType::Decimal) {
        append<std::uint8_t>(bytes, column.precision);
        append<std::uint8_t>(bytes, column.scale);
        append<std::uint16_t>(bytes, 0);
    } else {
        append<std::uint16_t>(bytes, column.sortOrder.lcid);
        append<std::uint8_t>(bytes, 0);
        append<std::uint8_t>(bytes, column.sortOrder.version);
    }
    append<std::uint8_t>(bytes, column.flags);
    append<std::uint8_t>(bytes, column.moreFlags);
    append<std::uint32_t>(bytes, 0);
    append<std::uint16_t>(bytes, column.offset);
    append<std::uint16_t>(bytes, column.length);
}

void appendName(Bytes& bytes, std::u16string_view name)
{
    append<std::uint16_t>(bytes, static_cast<std::uint16_t>(name.size() * 2));
    append(bytes, std::as_bytes(std::span(name.data(), name.size())));
}

//   offset  size  holds
//        0     4  1923
//        4   3*10  columns: number, 1 when it ascends; FFFF: unused
//       34     4  usage map
//       38     4  root
//       46     1  flags
void appendPhysicalRecord(Bytes& bytes, const PhysicalIndex& index)
{
    assert(index.columns.size() <= kIndexSlots);
    append<std::uint32_t>(bytes, kPhysicalMagic);
    for (std::size_t i = 0; i < kIndexSlots; ++i) {
        const bool used = i < index.columns.size();
        append<std::uint16_t>(bytes, used ? index.columns[i].number : kNoColumn);
        append<std::uint8_t>(bytes, used && index.columns[i].ascending);
    }
    append<std::uint32_t>(bytes, pointerTo(index.usageMap));
    append<std::uint32_t>(bytes, index.root);
    append<std::uint32_t>(bytes, 0);
    append<std::uint8_t>(bytes, index.flags);
    bytes.resize(bytes.size() + 5);
}

// An index that is no part of a relationship: no partner (-1), no other table, and 4 where a relationship
// would say what happens to the rows of the other side.
void appendLogicalRecord(Bytes& bytes, const LogicalIndex& index)
{
    append<std::uint32_t>(bytes, kRecordMagic);
    append<std::uint32_t>(bytes, index.number);
    append<std::uint32_t>(bytes, index.physical);
    append<std::uint8_t>(bytes, 0);
    append<std::int32_t>(bytes, -1);
    append<std::uint32_t>(bytes, 0);
    append<std::uint8_t>(bytes, 4);
    append<std::uint8_t>(bytes, 4);
    append<std::uint8_t>(bytes, index.kind);
    append<std::uint32_t>(bytes, 0);
}

DefinitionParts partsOf(const TableDefinition& definition)
{
    const Format::Definition& sizes = definition.format->definition;
    DefinitionParts parts;
    parts.columns = sizes.headBytes + sizes.counterBytes * definition.physicalIndexes.size();
    parts.columnNames = parts.columns + sizes.columnBytes * definition.columns.size();
    parts.physicalIndexes = skipNames(definition.joined, parts.columnNames, definition.columns.size());
    parts.logicalIndexes = parts.physicalIndexes + sizes.physicalBytes * definition.physicalIndexes.size();
    parts.indexNames = parts.logicalIndexes + sizes.logicalBytes * definition.logicalIndexes.size();
    return parts;
}

std::size_t skipNames(const Bytes& joined, std::size_t at, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i)
        at += 2 + load<std::uint16_t>(joined, at);
    return at;
}

TableDefinition readTableDefinition(const PageFile& file, PageNo page)
{
    TableDefinition definition;
    const Header& header = file.header();
    definition.format = header.format;
    definition.codePage = header.codePage;
    definition.page = page;
    definition.joined = joinPages(file, page, definition.pages);
    Reader reader(definition.joined, header);
    const PartCounts counts = readHead(reader, definition);
    for (std::size_t i = 0; i < counts.physicalIndexes; ++i) {
        definition.counterOffsets.push_back(reader.offset());
        reader.take(header.format->definition.counterBytes);
    }
    readColumns(reader, definition, counts.columns, header);
    readIndexes(reader, definition, counts);
    readLongValueMaps(reader, definition);
    return definition;
}

std::size_t definitionPageCount(std::size_t bytes)
{
    return bytes <= kPageSize ? 1 : 1 + (bytes - kPageSize + kContinuation - 1) / kContinuation;
}

//   first page     bytes 0 to 4095 of `joined`
//   further ones   kind, free bytes, next page; then 4088 bytes of it each
//
// The head of the first page is the beginning of `joined`, and is copied back once it is written.
void writeDefinitionBytes(PageFile& file, TableDefinition& definition)
{
    Bytes& joined = definition.joined;
    store<std::uint32_t>(joined, 8, static_cast<std::uint32_t>(joined.size()));
    const std::size_t pagesNeeded = definitionPageCount(joined.size());
    FreePages free(file);
    while (definition.pages.size() < pagesNeeded)
        definition.pages.push_back(free.allocate());
    while (definition.pages.size() > pagesNeeded) {
        free.release(definition.pages.back(), kFreedDefinition);
        definition.pages.pop_back();
    }

    ByteView rest = joined;
    for (std::size_t i = 0; i < pagesNeeded; ++i) {
        const std::size_t header = i == 0 ? 0 : 8;
        const ByteView part = rest.first(std::min(rest.size(), kPageSize - header));
        rest = rest.subspan(part.size());
        const MutableBytes page = file.writeNew(definition.pages[i]);
        std::copy(part.begin(), part.end(), page.begin() + static_cast<std::ptrdiff_t>(header));
        const std::size_t used = header + part.size();
        store<std::uint16_t>(page, 0, 0x0102);
        store<std::uint16_t>(
            page, 2, static_cast<std::uint16_t>(used + 8 > kPageSize ? 0 : kPageSize - 8 - used));
        store<std::uint32_t>(page, 4, i + 1 < pagesNeeded ? definition.pages[i + 1] : 0);
    }
    assert(rest.empty());
    const PageView first = file.read(definition.page);
    std::copy_n(first.bytes().begin(), 8, joined.begin());
}

void storePlaces(TableDefinition& definition)
{
    Bytes& joined = definition.joined;
    const Format::Definition& places = definition.format->definition;
    store<std::uint32_t>(joined, places.ownedMap, pointerTo(definition.ownedMap));
    store<std::uint32_t>(joined, places.freeMap, pointerTo(definition.freeMap));
    for (const Column& column : definition.columns) {
        if (column.mapsOffset == 0)
            continue;
        store<std::uint32_t>(joined, column.mapsOffset, pointerTo(column.ownedMap));
        store<std::uint32_t>(joined, column.mapsOffset + 4, pointerTo(column.freeMap));
    }
    for (const PhysicalIndex& index : definition.physicalIndexes) {
        store<std::uint32_t>(joined, index.offset + kUsageMapInIndex, pointerTo(index.usageMap));
        store<std::uint32_t>(joined, index.offset + kRootInIndex, index.root);
    }
}

void patchDefinition(PageFile& file, TableDefinition& definition, std::size_t offset, std::uint32_t number)
{
    store<std::uint32_t>(definition.joined, offset, number);
    for (std::size_t i = offset; i < offset + 4; ++i) { // it may straddle two pages
        if (i < kPageSize) {
            file.write(definition.pages[0])[i] = definition.joined[i];
        } else {
            const std::size_t behind = i - kPageSize;
            file.write(definition.pages[1 + behind / kContinuation])[8 + behind % kContinuation] =
                definition.joined[i];
        }
    }
}

} // namespace vellums::jet
