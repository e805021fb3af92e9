// Everything that belongs to a table is claimed at the ledger, which finds pages with two owners or none.
// Then the rows: each is decoded, its long values are followed and counted off against the rows of their
// pages, and moved rows against their far ends. Last the indexes: the keys made from the rows and those in
// the tree must be the same. A fault ends only the page or index in which it lies, so one run tells of all.
//
// What real files show without harm is passed over: bytes that nobody uses, a map of free space that is out
// of date (as long as its pages are owned), counters that are off.
#include "jet/upkeep/tableChecker.h"

#include "jet/file/dataPage.h"
#include "jet/index/bTree.h"
#include "jet/table/indexKeys.h"
#include "jet/table/longValue.h"

#include <algorithm>
#include <cassert>
#include <set>

namespace vellums::jet {
namespace {

class TableChecker {
public:
    TableChecker(PageLedger& ledger, PageNo definitionPage, const std::u16string& name)
        : ledger_(ledger)
        , file_(ledger.file())
        , table_(file_, definitionPage, name)
        , definition_(table_.definition())
        , label_(u"table '" + name + u"'")
        , longValues_(definition_.columns.size())
        , longValuePages_(definition_.columns.size())
    {
    }

    void run()
    {
        for (const PageNo page : definition_.pages)
            ledger_.claim(page, label_);
        const std::vector<PageNo> owned = ownedPages(definition_.ownedMap, definition_.freeMap, label_);
        for (std::size_t i = 0; i < definition_.columns.size(); ++i) {
            const Column& column = definition_.columns[i];
            if (isLongValue(column.type) && column.ownedMap.page == 0)
                fault(u"the column '" + column.name + u"' has no map of its pages");
            const std::vector<PageNo> pages = ownedPages(column.ownedMap, column.freeMap, columnLabel(i));
            longValuePages_[i].insert(pages.begin(), pages.end());
        }
        rowPages_.insert(owned.begin(), owned.end());
        for (const PageNo page : owned)
            ledger_.attempt(label_ + u", page " + decimal(page), [&] { checkRowPage(page); });
        checkMovedRows();
        for (std::size_t i = 0; i < longValuePages_.size(); ++i)
            for (const PageNo page : longValuePages_[i])
                ledger_.attempt(
                    columnLabel(i) + u", page " + decimal(page), [&] { checkLongValuePage(i, page); });
        for (std::size_t i = 0; i < definition_.physicalIndexes.size(); ++i)
            ledger_.attempt(indexLabel(i), [&] { checkIndex(i); });
    }

private:
    void fault(const std::u16string& text) { ledger_.fault(label_ + u": " + text); }

    std::u16string columnLabel(std::size_t column) const
    {
        return label_ + u", column '" + definition_.columns[column].name + u"'";
    }

    std::u16string indexLabel(std::size_t physical) const
    {
        for (const LogicalIndex& index : definition_.logicalIndexes)
            if (index.physical == physical)
                return label_ + u", index '" + index.name + u"'";
        return label_ + u", index " + decimal(static_cast<std::int64_t>(physical));
    }

    std::vector<PageNo> ownedPages(RowRef ownedMap, RowRef freeMap, const std::u16string& owner)
    {
        std::vector<PageNo> owned = ledger_.mapPages(ownedMap, owner);
        for (const PageNo page : owned)
            ledger_.claim(page, owner);
        for (const PageNo page : ledger_.mapPages(freeMap, owner))
            if (!std::binary_search(owned.begin(), owned.end(), page))
                ledger_.fault(owner + u": page " + decimal(page) + u" has free space but is not owned");
        return owned;
    }

    DataPage checkedPage(PageNo number, std::uint32_t owner)
    {
        const DataPage page(file_.read(number));
        if (page.owner() != owner)
            fault(u"page " + decimal(number) + u" names another owner");
        if (page.freeBytes() != page.countedFreeBytes())
            fault(u"page " + decimal(number) + u" counts its free bytes wrongly");
        return page;
    }

    void checkRowPage(PageNo number)
    {
        const DataPage page = checkedPage(number, definition_.page);
        for (int row = 0; row < page.rowCount(); ++row) {
            const RowRef place{number, static_cast<std::uint8_t>(row)};
            const std::uint16_t flags = page.flags(row);
            if (flags == kMovedHereFlag)
                farEnds_.insert(place);
            if ((flags & kMovedHereFlag) != 0)
                continue;
            homes_.push_back(place);
            ledger_.attempt(label_ + u", " + placeText(place), [&] {
                if (flags == kMovedFlag)
                    checkPointer(place, rowRefOf(load<std::uint32_t>(page.bytes(row), 0)));
                checkRow(table_.rowAt(place));
            });
        }
    }

    void checkPointer(RowRef home, RowRef target)
    {
        if (!rowPages_.contains(target.page))
            fault(placeText(home) + u" points to a page that is not the table's");
        else if (!pointedTo_.insert(target).second)
            fault(placeText(home) + u" points to a row that another one points to");
    }

    // Every 0x4000 pointer has its own 0x8000 row, and the reverse.
    void checkMovedRows()
    {
        for (const RowRef place : farEnds_)
            if (!pointedTo_.contains(place))
                fault(placeText(place) + u" is a moved row without a pointer to it");
        for (const RowRef place : pointedTo_)
            if (!farEnds_.contains(place))
                fault(placeText(place) + u" is pointed to but no moved row");
    }

    // Every value can be read; long values are noted.
    void checkRow(const Row& row)
    {
        for (std::size_t i = 0; i < definition_.columns.size(); ++i) {
            const Column& column = definition_.columns[i];
            const std::optional<ByteView> stored = row.stored(i);
            if (column.holdsLongValues() && stored && stored->size() >= kLongValueHeader)
                noteLongValue(i, row.home(), *stored);
            (void)row.value(i);
        }
    }

    // Each row of a chain may be used once, which also ends a chain that runs in a circle.
    void noteLongValue(std::size_t column, RowRef home, ByteView reference)
    {
        const LongValueReference value(reference);
        if (value.inlined)
            return;
        RowRef at = value.first;
        if (value.single) {
            if (useLongValue(column, home, at) && chunk(at).size() != value.length)
                fault(placeText(home) + u" has a long value of another length");
            return;
        }
        std::size_t length = 0;
        while (at.page != 0 && useLongValue(column, home, at)) {
            const PageView view = chunk(at);
            const ByteView bytes = view;
            length += bytes.size() - std::min<std::size_t>(bytes.size(), 4);
            at = rowRefOf(load<std::uint32_t>(bytes, 0));
        }
        if (length != value.length)
            fault(placeText(home) + u" has a long value of another length");
    }

    PageView chunk(RowRef place) { return DataPage(file_.read(place.page)).row(place.row); }

    // False when the value must not be followed: a row of another column, or used twice.
    bool useLongValue(std::size_t column, RowRef home, RowRef place)
    {
        if (!longValuePages_[column].contains(place.page)) {
            fault(placeText(home) + u" has a long value on a page that is not its column's");
            return false;
        }
        if (!longValues_[column].insert(place).second) {
            fault(placeText(home) + u" shares a long value with another row");
            return false;
        }
        const DataPage page(file_.read(place.page));
        if (place.row >= page.rowCount() || page.flags(place.row) != 0) {
            fault(placeText(home) + u" has a long value that was deleted");
            return false;
        }
        return true;
    }

    // The other way round: what lies on the pages of a column belongs to some value.
    void checkLongValuePage(std::size_t column, PageNo number)
    {
        const DataPage page = checkedPage(number, kLongValueOwner);
        for (int row = 0; row < page.rowCount(); ++row) {
            const RowRef place{number, static_cast<std::uint8_t>(row)};
            if (page.flags(row) != kDeletedFlags && !longValues_[column].contains(place))
                fault(placeText(place) + u" is a long value that no row refers to");
        }
    }

    void checkIndex(std::size_t at)
    {
        const PhysicalIndex& index = definition_.physicalIndexes[at];
        const std::u16string label = indexLabel(at);
        BTree::Report report = BTree(file_, treeOf(definition_, index)).inspect();
        for (const std::u16string& text : report.faults)
            ledger_.fault(label + u": " + text);
        for (const PageNo page : ledger_.mapPages(index.usageMap, label))
            ledger_.claim(page, label);
        if (report.faults.empty() && index.understood)
            checkEntries(label, index, std::move(report.entries));
    }

    // The entries are those of the rows, each once, with the keys that the rows give. Both are in the order
    // of places here, and walked side by side. A key that cannot be made is not compared.
    void checkEntries(
        const std::u16string& label, const PhysicalIndex& index, std::vector<IndexEntry> entries)
    {
        const auto complain = [&](RowRef row, const char16_t* what) {
            ledger_.fault(label + u": " + placeText(row) + what);
        };
        if (index.unique)
            checkUnique(label, index, entries);
        std::sort(entries.begin(), entries.end(),
            [](const IndexEntry& a, const IndexEntry& b) { return a.row < b.row; });
        assert(std::is_sorted(homes_.begin(), homes_.end()));
        auto entry = entries.begin();
        for (const RowRef home : homes_) {
            for (; entry != entries.end() && entry->row < home; ++entry)
                complain(entry->row, u" has an entry but is no row");
            const RowKey key = rowKey(file_, definition_, index, table_.rowAt(home));
            const bool present = entry != entries.end() && entry->row == home;
            if (present != (key.state != RowKey::State::Absent))
                complain(home, present ? u" has an entry it should not have" : u" has no entry");
            else if (present && key.state == RowKey::State::Encoded && entry->key != key.bytes)
                complain(home, u" has an entry with another key than its values give");
            if ((index.flags & 0x08) != 0 && key.anyNull)
                complain(home, u" has no value where one is required");
            if (present)
                ++entry;
            for (; entry != entries.end() && entry->row == home; ++entry)
                complain(home, u" has two entries");
        }
        for (; entry != entries.end(); ++entry)
            complain(entry->row, u" has an entry but is no row");
    }

    // Equal keys are allowed only where all columns are NULL.
    void checkUnique(
        const std::u16string& label, const PhysicalIndex& index, const std::vector<IndexEntry>& entries)
    {
        Bytes allNull;
        for (const IndexColumn& column : index.columns)
            allNull.push_back(column.ascending ? std::byte{0x00} : std::byte{0xFF});
        for (std::size_t i = 1; i < entries.size(); ++i)
            if (entries[i].key == entries[i - 1].key && entries[i].key != allNull)
                ledger_.fault(label + u": " + placeText(entries[i].row) + u" repeats the key of another row");
    }

    PageLedger& ledger_;
    PageFile& file_;
    Table table_;
    const TableDefinition& definition_;
    std::u16string label_;
    std::set<PageNo> rowPages_;
    std::vector<RowRef> homes_; // ascending
    std::set<RowRef> farEnds_;
    std::set<RowRef> pointedTo_;
    std::vector<std::set<RowRef>> longValues_;     // by column: rows that values refer to
    std::vector<std::set<PageNo>> longValuePages_; // by column
};

} // namespace

void checkTable(PageLedger& ledger, PageNo definitionPage, const std::u16string& name)
{
    TableChecker(ledger, definitionPage, name).run();
}

} // namespace vellums::jet
