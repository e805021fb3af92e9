// Changing rows, together with the indexes, long values and counters that go with them.
//
// Each change has two halves. The first only looks: rules, lengths, whether the row fits on a page, the key
// for each index and whether the index takes it. The second changes pages. What fails only there (a damaged
// file, a full disk, a key of several columns that grows too long) is taken back with the whole statement.
//
// A row has a home, the place that indexes name, and keeps it for life. Where it grows out of its page the
// home keeps four bytes that say where the row went, and the far end is marked so that scans pass over it:
//
//   home 0x4000: row, page, page, page   ->   far end 0x8000: the row
//
// When it moves again its old far end is deleted and the home points to the new one: never more than one
// step. Where it fits nowhere but at home it goes home again. Indexes are not touched by any of that.
//
// Long values that are to lie outside are placed between the halves, since the row needs their places; so
// the keys are made from a preview of the row that has them in line.
#include "jet/file/dataPage.h"
#include "jet/file/maps/freePages.h"
#include "jet/index/bTree.h"
#include "jet/table/indexKeys.h"
#include "jet/table/longValue.h"
#include "jet/table/pageSpace.h"
#include "jet/table/rowCodec.h"
#include "jet/table/table.h"
#include "jet/table/valueCodec.h"

#include <algorithm>
#include <cassert>

namespace vellums::jet {
namespace {

// A row on its way into the table. Long values that are to lie outside are kept apart until the keys
// are checked.
struct NewRow {
    RowContent content;
    std::vector<std::optional<Bytes>> outside; // parallel to the columns
};

// Of a validation rule only this is known: whether there is one. A NULL breaks none.
void checkRules(const Table& table, const Assignment& assignment)
{
    const Column& column = table.definition().columns[assignment.column];
    const ColumnRule& rule = table.rules()[assignment.column];
    if (isNull(assignment.value)) {
        if (rule.required)
            throwNullNotAllowed(table.name(), column.name);
        return;
    }
    const auto* text = std::get_if<std::u16string>(&assignment.value);
    if (text != nullptr && text->empty() && !rule.allowsEmpty)
        throwEmptyNotAllowed(table.name(), column.name);
    if (!rule.validationRule.empty())
        throwUnsupported(u"The field '" + table.name() + u"." + column.name + u"' has the validation rule '" +
            rule.validationRule + u"', which cannot be checked here; it is left as it is.");
}

// A true boolean is present and without bytes, a false one absent. The place of a long value that is to lie
// outside is held by twelve zeros, so that the length of the row is right from the start. A memo is
// compressed only where it stays in line.
void setContent(NewRow& row, const Column& column, std::size_t at, const Value& value)
{
    row.content[at].reset();
    row.outside[at].reset();
    if (isNull(value)) {
        if (column.type == ColumnType::Boolean)
            throwTypeMismatch();
        return;
    }
    if (column.type == ColumnType::Boolean) {
        const bool* const flag = std::get_if<bool>(&value);
        if (flag == nullptr)
            throwTypeMismatch();
        if (*flag)
            row.content[at].emplace();
        return;
    }
    if (!isLongValue(column.type)) {
        row.content[at] = encodeValue(column, value);
        return;
    }
    std::size_t plainBytes = 0;
    Bytes bytes;
    if (const auto* text = std::get_if<std::u16string>(&value);
        text != nullptr && column.type == ColumnType::Memo) {
        plainBytes = text->size() * 2;
        bytes = encodeText(*text, plainBytes <= kMaxInlineBytes);
    } else if (const auto* binary = std::get_if<Bytes>(&value);
               binary != nullptr && column.type == ColumnType::Ole) {
        plainBytes = binary->size();
        bytes = *binary;
    } else {
        throwTypeMismatch();
    }
    if (bytes.size() > kMaxLongValue)
        throwFieldTooSmall();
    if (plainBytes <= kMaxInlineBytes) {
        row.content[at] = inlineReference(bytes);
    } else {
        row.content[at] = Bytes(kLongValueHeader);
        row.outside[at] = std::move(bytes);
    }
}

// While the row is too long, its longest inline value moves out. Each round takes one, so it ends: with a
// row that fits, or with none left to take. Values that the row had before, in an update, move out as well.
void makeFitting(const TableDefinition& definition, NewRow& row)
{
    while (encodeRow(definition, row.content).size() > kMaxRowBytes) {
        std::size_t longest = definition.columns.size();
        for (std::size_t i = 0; i < definition.columns.size(); ++i) {
            if (!isLongValue(definition.columns[i].type) || !row.content[i] || row.outside[i] ||
                row.content[i]->size() <= kLongValueHeader || !isInline(*row.content[i]))
                continue;
            if (longest == definition.columns.size() || row.content[i]->size() > row.content[longest]->size())
                longest = i;
        }
        if (longest == definition.columns.size())
            throw Error(3047, kFail, u"Record is too large.");
        Bytes& content = *row.content[longest];
        row.outside[longest] = Bytes(content.begin() + kLongValueHeader, content.end());
        content.assign(kLongValueHeader, std::byte{0});
    }
}

// A row as it will be, for computing keys, which it is good for alone: a long value that is to lie outside
// is put in line where an index asks for it, cut to 512 bytes; elsewhere its twelve zeros stay, which read
// as an empty value. It may be longer than a page. The bytes are in `bytes` and must outlive the row.
Row previewRow(
    const PageFile& file, const TableDefinition& definition, const NewRow& row, RowRef home, Bytes& bytes)
{
    RowContent content = row.content;
    for (std::size_t i = 0; i < content.size(); ++i) {
        const bool indexed = std::any_of(definition.physicalIndexes.begin(), definition.physicalIndexes.end(),
            [&](const PhysicalIndex& index) {
                return std::any_of(index.columns.begin(), index.columns.end(),
                    [&](const IndexColumn& c) { return c.number == definition.columns[i].number; });
            });
        if (row.outside[i] && indexed) {
            // Keys look at the first 255 units, which are 510 bytes where a text is not compressed.
            const ByteView value =
                ByteView(*row.outside[i]).first(std::min<std::size_t>(row.outside[i]->size(), 512));
            content[i] = inlineReference(value);
        }
    }
    bytes = encodeRow(definition, content);
    return {file, definition, home, PageView(bytes)};
}

// Refuses keys that the index does not take. `self` is the home of the row that is changed, whose present
// entry is no duplicate; a row that is inserted has none. Keys that are NULL in every column may repeat.
void checkKey(PageFile& file, const Table& table, const PhysicalIndex& index, const RowKey& key, RowRef self)
{
    if (key.state == RowKey::State::Absent)
        return;
    if (key.state == RowKey::State::Unencodable)
        throwUnsupported(u"The table '" + table.name() +
            u"' has an index whose sort order this engine cannot maintain for this value; nothing was "
            u"changed.");
    if (index.required && key.anyNull)
        throwNullNotAllowed(table.name(), table.definition().columnByNumber(index.columns[0].number)->name);
    if (!index.unique || key.allNull)
        return;
    const auto rows = BTree(file, treeOf(table.definition(), index)).find(key.bytes);
    if (std::any_of(rows.begin(), rows.end(), [self](RowRef row) { return row != self; }))
        throwDuplicateKey();
}

PageOwner ownerOf(const TableDefinition& definition)
{
    return {definition.page, definition.ownedMap, definition.freeMap};
}

void writeOutsideValues(PageFile& file, const TableDefinition& definition, NewRow& row)
{
    for (std::size_t i = 0; i < row.outside.size(); ++i)
        if (row.outside[i])
            row.content[i] = writeLongValue(file, definition.columns[i], *row.outside[i]);
}

void addIndexEntry(PageFile& file, TableDefinition& definition, std::size_t at, const RowKey& key, RowRef row)
{
    if (key.state == RowKey::State::Absent)
        return;
    FreePages free(file);
    BTree tree(file, treeOf(definition, definition.physicalIndexes[at]));
    // The counter of different keys is a hint for others, raised here and never lowered.
    if (tree.insert(key.bytes, row, free)) {
        const std::size_t differentKeys = definition.counterOffsets[at] + 4;
        patchDefinition(
            file, definition, differentKeys, load<std::uint32_t>(definition.joined, differentKeys) + 1);
    }
}

// An entry that is not found by the key of its row was made by other rules than ours, or its key cannot be
// made here at all; it is looked for by the row. That it is nowhere is damage.
void removeIndexEntry(PageFile& file, const TableDefinition& definition, const PhysicalIndex& index,
    const RowKey& key, RowRef row)
{
    if (key.state == RowKey::State::Absent)
        return;
    FreePages free(file);
    BTree tree(file, treeOf(definition, index));
    if (key.state == RowKey::State::Encoded && tree.erase(key.bytes, row, free))
        return;
    if (!tree.eraseByRow(row, free))
        throwDamaged(u"an index lacks a row of its table");
}

void setRowCount(PageFile& file, TableDefinition& definition, std::int64_t delta)
{
    const std::int64_t count = std::max<std::int64_t>(0, std::int64_t{definition.rowCount} + delta);
    definition.rowCount = static_cast<std::uint32_t>(count);
    patchDefinition(file, definition, kRowCountOffset, definition.rowCount);
}

void raiseAutoNumber(PageFile& file, TableDefinition& definition, std::int32_t number)
{
    if (number <= static_cast<std::int32_t>(definition.lastAutoNumber))
        return;
    definition.lastAutoNumber = static_cast<std::uint32_t>(number);
    patchDefinition(file, definition, kAutoNumberOffset, definition.lastAutoNumber);
}

// Where the bytes of a row lie now; the home itself unless the row has moved.
RowRef placeOf(const PageFile& file, RowRef home)
{
    const DataPage page(file.read(home.page));
    if ((page.flags(home.row) & kMovedFlag) == 0)
        return home;
    return rowRefOf(load<std::uint32_t>(page.bytes(home.row), 0));
}

// True when the page has room for the row in the place of what is there now.
bool fitsAt(const PageFile& file, RowRef at, std::size_t length)
{
    const DataPage page(file.read(at.page));
    return length <= page.bytes(at.row).size() + static_cast<std::size_t>(page.freeBytes());
}

// Puts the new bytes of a row where they fit: where it lies, at home, or on another page.
void storeRow(PageFile& file, const PageOwner& owner, RowRef home, ByteView row)
{
    const RowRef now = placeOf(file, home);
    if (fitsAt(file, now, row.size())) {
        replaceRow(writablePage(file, owner, now.page), now.row, row, now == home ? 0 : kMovedHereFlag);
        noteFreeSpace(file, owner, now.page);
        return;
    }
    if (now != home && fitsAt(file, home, row.size())) {
        removeRow(file, owner, now);
        replaceRow(writablePage(file, owner, home.page), home.row, row, 0);
        return;
    }
    if (now != home)
        removeRow(file, owner, now);
    Bytes pointer(4);
    replaceRow(writablePage(file, owner, home.page), home.row, pointer, kMovedFlag);
    const RowRef target = placeRow(file, owner, row, kMovedHereFlag);
    store<std::uint32_t>(pointer, 0, pointerTo(target));
    replaceRow(writablePage(file, owner, home.page), home.row, pointer, kMovedFlag);
}

// The content of a row as it lies, long values as their references.
NewRow sameContent(const TableDefinition& definition, const Row& row)
{
    NewRow same;
    same.content.resize(definition.columns.size());
    same.outside.resize(definition.columns.size());
    for (std::size_t i = 0; i < definition.columns.size(); ++i)
        if (const auto stored = row.stored(i))
            same.content[i].emplace(stored->begin(), stored->end());
    return same;
}

struct LongValueThatGoes {
    std::size_t column;
    Bytes reference;
};

struct KeyChange {
    std::size_t index; // of the physical indexes
    RowKey before;
    RowKey after;
};

bool hasAssignedColumn(
    const TableDefinition& definition, const PhysicalIndex& index, const std::vector<Assignment>& assignments)
{
    return std::any_of(index.columns.begin(), index.columns.end(), [&](const IndexColumn& c) {
        return std::any_of(assignments.begin(), assignments.end(),
            [&](const Assignment& a) { return definition.columns[a.column].number == c.number; });
    });
}

// The entries that an update changes, all of them checked. An index none of whose columns is assigned is left
// alone, even one whose keys cannot be made here.
std::vector<KeyChange> keyChanges(PageFile& file, const Table& table,
    const std::vector<Assignment>& assignments, const Row& before, const Row& future)
{
    const TableDefinition& definition = table.definition();
    std::vector<KeyChange> changes;
    for (std::size_t i = 0; i < definition.physicalIndexes.size(); ++i) {
        const PhysicalIndex& index = definition.physicalIndexes[i];
        if (!hasAssignedColumn(definition, index, assignments))
            continue;
        KeyChange change{i, rowKey(file, definition, index, before), rowKey(file, definition, index, future)};
        if (change.before.state == change.after.state && change.before.bytes == change.after.bytes)
            continue;
        checkKey(file, table, index, change.after, before.home());
        changes.push_back(std::move(change));
    }
    return changes;
}

} // namespace

void Table::requireWritable() const
{
    const auto refuse = [&](const std::u16string& why) {
        throwUnsupported(u"The table '" + name_ + u"' cannot be changed here: " + why + u".");
    };
    if (!readOnlyReason_.empty())
        refuse(readOnlyReason_);
    for (const Column& column : definition_.columns) {
        const auto code = static_cast<unsigned>(column.type);
        if (column.isCalculated())
            refuse(u"the field '" + column.name + u"' is calculated");
        if (code == 0 || code == 0x0D || code == 0x0E || code == 0x11 || code == 0x12 || code >= 0x14)
            refuse(u"the field '" + column.name + u"' has a type that is only read");
        if (isLongValue(column.type) && column.isFixed())
            refuse(u"the field '" + column.name + u"' holds long values in a place of fixed length");
        if (isLongValue(column.type) && column.ownedMap.page == 0)
            refuse(u"the field '" + column.name + u"' has no map of its pages");
    }
    for (const PhysicalIndex& index : definition_.physicalIndexes)
        if (!index.understood)
            refuse(u"it has an index of an unknown kind");
    for (const LogicalIndex& index : definition_.logicalIndexes)
        if (index.kind == 2 && index.partner != -1)
            refuse(u"it takes part in the relationship '" + index.name + u"'");
}

std::int32_t Table::insert(const std::vector<Assignment>& assignments)
{
    NewRow row;
    row.content.resize(definition_.columns.size());
    row.outside.resize(definition_.columns.size());
    std::vector<Value> values(definition_.columns.size());
    for (const Assignment& assignment : assignments) {
        assert(assignment.column < values.size());
        values[assignment.column] = assignment.value;
    }
    std::int32_t autoNumber = 0;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const Column& column = definition_.columns[i];
        if (column.isAutoNumber()) {
            if (isNull(values[i]))
                values[i] = static_cast<std::int32_t>(definition_.lastAutoNumber + 1);
            if (const auto* number = std::get_if<std::int32_t>(&values[i]))
                autoNumber = *number;
        } else if (column.type == ColumnType::Boolean && isNull(values[i])) {
            values[i] = false;
        }
        checkRules(*this, {i, values[i]});
        setContent(row, column, i, values[i]);
    }

    makeFitting(definition_, row);
    Bytes preview;
    const Row future = previewRow(file_, definition_, row, {}, preview);
    std::vector<RowKey> keys;
    for (const PhysicalIndex& index : definition_.physicalIndexes) {
        keys.push_back(rowKey(file_, definition_, index, future));
        checkKey(file_, *this, index, keys.back(), {});
    }

    writeOutsideValues(file_, definition_, row);
    const RowRef home = placeRow(file_, ownerOf(definition_), encodeRow(definition_, row.content), 0);
    for (std::size_t i = 0; i < keys.size(); ++i)
        addIndexEntry(file_, definition_, i, keys[i], home);
    setRowCount(file_, definition_, 1);
    raiseAutoNumber(file_, definition_, autoNumber);
    file_.makeRoom();
    return autoNumber;
}

void Table::update(RowRef home, const std::vector<Assignment>& assignments)
{
    const Row old = rowAt(home);
    const Bytes oldBytes(old.bytes().begin(), old.bytes().end()); // the page changes under it
    const Row before(file_, definition_, home, PageView(oldBytes));
    NewRow row = sameContent(definition_, before);
    std::vector<LongValueThatGoes> replaced;
    std::int32_t autoNumber = 0;
    for (const Assignment& assignment : assignments) {
        const Column& column = definition_.columns[assignment.column];
        checkRules(*this, assignment);
        if (isLongValue(column.type) && row.content[assignment.column])
            replaced.push_back({assignment.column, *row.content[assignment.column]});
        setContent(row, column, assignment.column, assignment.value);
        if (column.isAutoNumber())
            if (const auto* number = std::get_if<std::int32_t>(&assignment.value))
                autoNumber = *number;
    }

    makeFitting(definition_, row);
    Bytes preview;
    const Row future = previewRow(file_, definition_, row, home, preview);
    const std::vector<KeyChange> changes = keyChanges(file_, *this, assignments, before, future);

    for (const LongValueThatGoes& value : replaced)
        freeLongValue(file_, definition_.columns[value.column], value.reference);
    writeOutsideValues(file_, definition_, row);
    storeRow(file_, ownerOf(definition_), home, encodeRow(definition_, row.content));
    for (const KeyChange& change : changes) {
        removeIndexEntry(file_, definition_, definition_.physicalIndexes[change.index], change.before, home);
        addIndexEntry(file_, definition_, change.index, change.after, home);
    }
    raiseAutoNumber(file_, definition_, autoNumber);
    file_.makeRoom();
}

void Table::erase(RowRef home)
{
    const Row row = rowAt(home);
    const Bytes bytes(row.bytes().begin(), row.bytes().end());
    const Row copy(file_, definition_, home, PageView(bytes));
    for (const PhysicalIndex& index : definition_.physicalIndexes)
        removeIndexEntry(file_, definition_, index, rowKey(file_, definition_, index, copy), home);
    for (std::size_t i = 0; i < definition_.columns.size(); ++i)
        if (isLongValue(definition_.columns[i].type))
            if (const auto reference = copy.stored(i))
                freeLongValue(file_, definition_.columns[i], *reference);
    const RowRef place = placeOf(file_, home);
    if (place != home)
        removeRow(file_, ownerOf(definition_), place);
    removeRow(file_, ownerOf(definition_), home);
    setRowCount(file_, definition_, -1);
    file_.makeRoom();
}

// The places are collected first, since a scan must not see its table change.
void Table::rewriteRows()
{
    std::vector<RowRef> homes;
    forEachRow([&](const Row& row) {
        homes.push_back(row.home());
        return true;
    });
    for (const RowRef home : homes)
        update(home, {});
}

} // namespace vellums::jet
