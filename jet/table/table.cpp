// A scan goes through the table's pages in the order of its usage map and through the rows of each page; the
// far end of a moved row is passed over, since the row is met at its home. A row is bytes until somebody asks
// for a column. The pages may be divided among several scans, for as many threads.
#include "jet/table/table.h"

#include "jet/file/dataPage.h"
#include "jet/file/maps/usageMap.h"
#include "jet/index/bTree.h"
#include "jet/index/collation.h"
#include "jet/table/indexKeys.h"
#include "jet/table/longValue.h"
#include "jet/table/rowCodec.h"
#include "jet/table/valueCodec.h"

#include <algorithm>
#include <cassert>

namespace vellums::jet {
namespace {

constexpr std::size_t kCalculatedLengthAt = 16;
constexpr std::size_t kCalculatedHeader = 20;
constexpr int kMostHops = 8; // one is the rule, more are damage or a foreign habit

// A calculated column wraps its value: a head of 20 bytes with the length at 16, then the value.
ByteView unwrapCalculated(ByteView bytes)
{
    if (bytes.size() < kCalculatedHeader)
        return bytes.first(0);
    return slice(bytes, kCalculatedHeader, load<std::uint32_t>(bytes, kCalculatedLengthAt));
}

// What does not fit the type of a calculated column is given as it lies. Decimals have a form of their own.
Value decodeCalculated(const Column& column, ByteView content)
{
    if (column.valueType == ColumnType::Decimal && content.size() == kPlainDecimalBytes)
        return decodePlainDecimal(content);
    const std::size_t size = column.valueType == ColumnType::Boolean ? 1 : valueSize(column.valueType);
    if (size != content.size() || column.valueType == ColumnType::Decimal)
        return Bytes(content.begin(), content.end());
    Column plain;
    plain.type = column.valueType;
    return decodeValue(plain, content);
}

// `bytes` may lie in `scratch`.
StoredText textOf(const TableDefinition& definition, const Column& column, ByteView bytes, Bytes& scratch)
{
    if (definition.format->codePageTexts)
        return storedCodePageText(bytes, definition.codePage, scratch);
    if (column.isFixed() && !column.isCalculated())
        return {false, bytes.first(bytes.size() / 2 * 2)};
    return storedText(bytes, scratch);
}

} // namespace

Row::Row(const PageFile& file, const TableDefinition& definition, RowRef home, PageView bytes)
    : file_(&file)
    , definition_(&definition)
    , home_(home)
    , bytes_(std::move(bytes))
{
}

bool Row::isNull(std::size_t column) const
{
    const Column& c = definition_->columns[column];
    if (c.complexTexts)
        return jet::isNull(value(column));
    return (c.type != ColumnType::Boolean || c.isCalculated()) &&
        !columnBytes(*definition_->format, bytes_, c);
}

std::optional<ByteView> Row::stored(std::size_t column) const
{
    assert(column < definition_->columns.size());
    return columnBytes(*definition_->format, bytes_, definition_->columns[column]);
}

Value Row::value(std::size_t column) const
{
    assert(column < definition_->columns.size());
    const Column& c = definition_->columns[column];
    if (c.type == ColumnType::Boolean && !c.isCalculated())
        return isPresent(*definition_->format, bytes_, c);
    Bytes scratch;
    const std::optional<ByteView> bytes = content(column, scratch);
    if (!bytes)
        return Null{};
    if (c.complexTexts) {
        std::optional<std::u16string> text = c.complexTexts->textOf(load<std::int32_t>(*bytes, 0));
        return text ? Value(std::move(*text)) : Value();
    }
    if (isText(c.valueType))
        return toText(textOf(*definition_, c, *bytes, scratch));
    if (c.isCalculated())
        return decodeCalculated(c, *bytes);
    return c.type == ColumnType::Ole ? Value(Bytes(bytes->begin(), bytes->end())) : decodeValue(c, *bytes);
}

StoredText Row::text(std::size_t column, Bytes& scratch) const
{
    if (definition_->columns[column].complexTexts) {
        const Value whole = value(column);
        const auto* const text = std::get_if<std::u16string>(&whole);
        const ByteView units = text ? std::as_bytes(std::span(text->data(), text->size())) : ByteView();
        scratch.assign(units.begin(), units.end());
        return {false, scratch};
    }
    const std::optional<ByteView> bytes = content(column, scratch);
    return bytes ? textOf(*definition_, definition_->columns[column], *bytes, scratch) : StoredText{};
}

// In this order: a calculated memo is a long value whose content is wrapped.
std::optional<ByteView> Row::content(std::size_t column, Bytes& scratch) const
{
    const Column& c = definition_->columns[column];
    std::optional<ByteView> bytes = columnBytes(*definition_->format, bytes_, c);
    if (bytes && c.holdsLongValues())
        bytes = readLongValue(*file_, *bytes, scratch);
    if (bytes && c.isCalculated())
        bytes = unwrapCalculated(*bytes);
    return bytes;
}

Table::Table(PageFile& file, PageNo definitionPage, std::u16string name, std::vector<ColumnRule> rules)
    : file_(file)
    , name_(std::move(name))
    , definition_(readTableDefinition(file, definitionPage))
    , rules_(std::move(rules))
{
    rules_.resize(definition_.columns.size());
    for (std::size_t i = 0; i < rules_.size(); ++i)
        if (definition_.columns[i].isCalculated() && rules_[i].resultType)
            definition_.columns[i].valueType = *rules_[i].resultType;
}

void Table::setComplexTexts(std::size_t column, std::shared_ptr<const ComplexTexts> texts)
{
    definition_.columns[column].complexTexts = std::move(texts);
    definition_.columns[column].valueType = ColumnType::Memo;
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
    : Scan(table, UsageMap(table.file_, table.definition_.ownedMap).pages())
{
}

Table::Scan::Scan(const Table& table, std::vector<PageNo> pages)
    : table_(table)
    , pages_(std::move(pages))
{
}

std::optional<Row> Table::Scan::next()
{
    for (;;) {
        while (page_ && row_ < page_->rowCount()) {
            const int row = row_++;
            const std::uint16_t flags = page_->flags(row);
            if ((flags & kMovedHereFlag) != 0)
                continue;
            const RowRef home{pages_[pageIndex_ - 1], static_cast<std::uint8_t>(row)};
            if (flags == kMovedFlag)
                return table_.rowAt(home);
            return Row(table_.file_, table_.definition_, home, page_->row(row));
        }
        if (pageIndex_ == pages_.size())
            return std::nullopt;
        page_.emplace(table_.file_.read(pages_[pageIndex_++]));
        row_ = 0;
        if (page_->owner() != table_.definition_.page)
            throwDamaged(u"a page of a table belongs to another one");
    }
}

// Pages are shared out by number alone: how many rows lie on one is known only when it is read.
std::vector<Table::Scan> Table::scans(std::size_t parts) const
{
    const std::vector<PageNo> pages = UsageMap(file_, definition_.ownedMap).pages();
    std::vector<Scan> scans;
    for (std::size_t part = 0, begin = 0; part < parts; ++part) {
        const std::size_t end = pages.size() * (part + 1) / parts;
        scans.emplace_back(*this,
            std::vector<PageNo>(pages.begin() + static_cast<std::ptrdiff_t>(begin),
                pages.begin() + static_cast<std::ptrdiff_t>(end)));
        begin = end;
    }
    return scans;
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
            return {file_, definition_, home, page.row(at.row)};
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
