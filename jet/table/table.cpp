#include "jet/table/table.h"

#include "jet/file/dataPage.h"
#include "jet/file/usageMap.h"
#include "jet/index/bTree.h"
#include "jet/index/collation.h"
#include "jet/table/indexKeys.h"
#include "jet/table/longValue.h"
#include "jet/table/rowCodec.h"
#include "jet/table/valueCodec.h"

#include <algorithm>

namespace vellums::jet {
namespace {

constexpr std::size_t kCalculatedLengthAt = 16;
constexpr std::size_t kCalculatedHeader = 20;
constexpr int kMostHops = 8;

// A calculated column wraps its value.
ByteView unwrapCalculated(ByteView bytes)
{
    if (bytes.size() < kCalculatedHeader)
        return bytes.first(0);
    return slice(bytes, kCalculatedHeader, load<std::uint32_t>(bytes, kCalculatedLengthAt));
}

// What the declared type of a calculated column does not fit is given as it lies.
Value decodeCalculated(const Column& column, ByteView bytes)
{
    const ByteView content = unwrapCalculated(bytes);
    if (isText(column.type)) {
        Bytes scratch;
        return toText(storedText(content, scratch));
    }
    if (fixedSize(column) == content.size() && column.type != ColumnType::Decimal)
        return decodeValue(column, content);
    if (column.type == ColumnType::Boolean && content.size() == 1)
        return content[0] != std::byte{0};
    return Bytes(content.begin(), content.end());
}

} // namespace

Row::Row(const PageFile& file, const TableDefinition& definition, RowRef home, ByteView bytes)
    : file_(&file)
    , definition_(&definition)
    , home_(home)
    , bytes_(bytes)
{
}

bool Row::isNull(std::size_t column) const
{
    const Column& c = definition_->columns[column];
    return (c.type != ColumnType::Boolean || c.isCalculated()) && !columnBytes(bytes_, c);
}

std::optional<ByteView> Row::stored(std::size_t column) const
{
    return columnBytes(bytes_, definition_->columns[column]);
}

Value Row::value(std::size_t column) const
{
    const Column& c = definition_->columns[column];
    if (c.type == ColumnType::Boolean && !c.isCalculated())
        return isPresent(bytes_, c);
    const std::optional<ByteView> stored = columnBytes(bytes_, c);
    if (!stored)
        return Null{};
    Bytes scratch;
    const bool longValue = isLongValue(c.type);
    if (c.isCalculated())
        return decodeCalculated(c, longValue ? readLongValue(*file_, *stored, scratch) : *stored);
    if (c.type == ColumnType::Memo)
        return toText(text(column, scratch));
    if (c.type == ColumnType::Ole) {
        const ByteView content = readLongValue(*file_, *stored, scratch);
        return Bytes(content.begin(), content.end());
    }
    return decodeValue(c, *stored);
}

StoredText Row::text(std::size_t column, Bytes& scratch) const
{
    const Column& c = definition_->columns[column];
    const std::optional<ByteView> stored = columnBytes(bytes_, c);
    if (!stored)
        return {};
    if (c.isFixed())
        return {false, stored->first(stored->size() / 2 * 2)};
    if (c.type != ColumnType::Memo)
        return storedText(*stored, scratch);
    return storedText(readLongValue(*file_, *stored, scratch), scratch);
}

Table::Table(PageFile& file, PageNo definitionPage, std::u16string name, std::vector<ColumnRule> rules)
    : file_(file)
    , name_(std::move(name))
    , definition_(readTableDefinition(file, definitionPage))
    , rules_(std::move(rules))
{
    rules_.resize(definition_.columns.size());
}

std::optional<std::size_t> Table::columnIndex(std::u16string_view name) const
{
    const auto equal = [&](const Column& column) {
        return column.name == name || compareTexts(column.name, name, file_.header().sortOrder) == 0;
    };
    const auto found = std::find_if(definition_.columns.begin(), definition_.columns.end(), equal);
    if (found == definition_.columns.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - definition_.columns.begin());
}

Table::Scan::Scan(const Table& table)
    : table_(table)
    , pages_(UsageMap(table.file_, table.definition_.ownedMap).pages())
{
}

std::optional<Row> Table::Scan::next()
{
    for (; pageIndex_ < pages_.size(); ++pageIndex_, row_ = 0) {
        const PageNo page = pages_[pageIndex_];
        const DataPage data(table_.file_.read(page));
        if (data.owner() != table_.definition_.page)
            throwDamaged(u"a page of a table belongs to another one");
        while (row_ < data.rowCount()) {
            const int row = row_++;
            if ((data.flags(row) & kMovedHereFlag) == 0)
                return table_.rowAt({page, static_cast<std::uint8_t>(row)});
        }
    }
    return std::nullopt;
}

Row Table::rowAt(RowRef home) const
{
    RowRef at = home;
    for (int hop = 0; hop < kMostHops; ++hop) {
        const DataPage page(file_.read(at.page));
        const std::uint16_t flags = page.flags(at.row);
        if (page.owner() != definition_.page || flags == kDeletedFlags)
            throwDamaged(u"a pointer leads to a row that does not exist");
        if (flags != kMovedFlag)
            return {file_, definition_, home, page.bytes(at.row)};
        at = rowRefOf(load<std::uint32_t>(page.bytes(at.row), 0));
    }
    throwDamaged(u"a row has moved in a circle");
}

std::optional<std::vector<RowRef>> Table::findLong(std::size_t column, std::int32_t number) const
{
    const Column& c = definition_.columns[column];
    if (c.type != ColumnType::Long)
        return std::nullopt;
    for (const PhysicalIndex& index : definition_.physicalIndexes) {
        if (!index.understood || index.columns.size() != 1 || index.columns[0].number != c.number)
            continue;
        KeyValue value;
        value.bytes = std::as_bytes(std::span(&number, 1));
        Bytes key;
        if (appendKeyPart(key, keyColumnOf(file_, definition_, index.columns[0]), value))
            return BTree(file_, treeOf(definition_, index)).find(key);
    }
    return std::nullopt;
}

} // namespace vellums::jet
