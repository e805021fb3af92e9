// Only the pages of rows, long values and indexes are laid anew, from the lowest free page on. What describes
// them keeps its bytes: page 0, the definitions, the rows of the system tables. So nothing has to be
// translated, and what this engine does not understand survives: a table with columns that are not known to
// it stays where it lies, page by page.
//
// A definition that lies far behind would keep the file long: one page at the end, and nothing before it can
// be cut off. Where a table is the user's own and nothing but the catalogue knows its page, the definition
// moves, too; the number of its page is then replaced where the catalogue has it (tablePacker.h).
//
//   1. survey       what stays, and which tables are written anew
//   2. copyKept     the pages that stay, in their places; all others are free
//   3. place        roots of indexes, definitions that move
//   4. pack         table by table
//   5. cut          what is free at the end
//
// The copy is built without a journal, as nobody knows of it. Compacting in place, it is checked and then
// written back as one change of the file like any other, in the original's own journal: the file never has
// another name, and nobody can come in between.
#include "jet/upkeep/compactor.h"

#include "jet/catalogue/catalogue.h"
#include "jet/catalogue/definitionBuilder.h"
#include "jet/catalogue/systemRows.h"
#include "jet/file/maps/freePages.h"
#include "jet/file/maps/mapRow.h"
#include "jet/file/maps/usageMap.h"
#include "jet/index/bTree.h"
#include "jet/upkeep/checker.h"
#include "jet/upkeep/tablePacker.h"
#include "platform/passingFile.h"

#include <algorithm>

namespace vellums::jet {
namespace {

constexpr std::int16_t kTableType = 1;
constexpr std::int16_t kLinkedType = 4; // may have a definition

bool isKnown(ColumnType type)
{
    return type == ColumnType::Boolean || type == ColumnType::Text || type == ColumnType::Binary ||
        type == ColumnType::FixedBinary || isLongValue(type) || valueSize(type) != 0;
}

// All pointers in its rows are known.
bool canBePacked(const TableDefinition& definition)
{
    return std::all_of(definition.columns.begin(), definition.columns.end(), [](const Column& column) {
        return isKnown(column.type) && !column.isCalculated() &&
            isLongValue(column.type) == (column.ownedMap.page != 0);
    });
}

// No other table, and nothing but the catalogue, knows where its definition lies.
bool canMove(const CatalogueEntry& entry, const TableDefinition& definition)
{
    const bool related = std::any_of(definition.logicalIndexes.begin(), definition.logicalIndexes.end(),
        [](const LogicalIndex& index) { return index.kind == 2; });
    const bool complex = std::any_of(definition.columns.begin(), definition.columns.end(),
        [](const Column& column) { return column.type == ColumnType::Complex; });
    return entry.isUserTable() && !entry.name.starts_with(u"f_") && !related && !complex;
}

std::vector<RowRef> mapsOf(const TableDefinition& definition)
{
    std::vector<RowRef> maps = {definition.ownedMap, definition.freeMap};
    for (const Column& column : definition.columns)
        maps.insert(maps.end(), {column.ownedMap, column.freeMap});
    for (const PhysicalIndex& index : definition.physicalIndexes)
        maps.push_back(index.usageMap);
    std::erase_if(maps, [](RowRef place) { return place.page == 0; });
    return maps;
}

void requireSound(PageFile& file, const std::u16string& what)
{
    if (const std::vector<std::u16string> faults = checkFile(file); !faults.empty())
        throwDamaged(what + faults.front());
}

class Compactor {
public:
    Compactor(PageFile& original, const std::u16string& destination)
        : from_(original)
        , destination_(destination)
        , keep_(original.pageCount())
    {
    }

    void run()
    {
        survey();
        copyKept();
        PageFile to(destination_, OpenMode::Scratch, from_.password());
        FreePages::reset(to, keep_);
        MovedIds moved;
        for (Packed& packed : tables_) {
            place(packed, to);
            if (packed.moves)
                moved[packed.entry.id] = static_cast<std::int32_t>(packed.fresh.page);
        }
        for (Packed& packed : tables_)
            pack(packed, to, moved);
        cut(to);
        to.commit();
    }

private:
    struct Packed {
        CatalogueEntry entry;
        bool moves = false;
        TableDefinition fresh; // as it shall be in the copy
    };

    void keepPage(PageNo page)
    {
        if (page < keep_.size())
            keep_[page] = true;
    }

    void survey()
    {
        keepPage(0);
        keepPage(1);
        keepMap({1, 1}); // of unknown use
        std::vector<Packed> all;
        for (const CatalogueEntry& entry : Catalogue(from_).entries())
            if (entry.type == kTableType || (entry.type == kLinkedType && entry.id > 0))
                all.push_back({entry, false, readTableDefinition(from_, static_cast<PageNo>(entry.id))});
        const PageNo used = usedPages(all);
        for (Packed& table : all) {
            if (!canBePacked(table.fresh)) {
                keepWhole(table.fresh);
                continue;
            }
            const auto isFar = [used](PageNo page) { return page >= used; };
            const std::vector<RowRef> maps = mapsOf(table.fresh);
            const std::vector<PageNo>& pages = table.fresh.pages;
            table.moves = canMove(table.entry, table.fresh) &&
                (std::any_of(pages.begin(), pages.end(), isFar) ||
                    std::any_of(maps.begin(), maps.end(), [&](RowRef map) { return isFar(map.page); }));
            if (!table.moves)
                keepDescription(table.fresh);
            tables_.push_back(std::move(table));
        }
        std::sort(tables_.begin(), tables_.end(),
            [](const Packed& a, const Packed& b) { return a.entry.id < b.entry.id; });
    }

    // About what the compacted file will have: no fewer than that.
    PageNo usedPages(const std::vector<Packed>& all)
    {
        std::size_t used = 2;
        for (const Packed& table : all) {
            used += table.fresh.pages.size() + 1;
            for (const RowRef map : mapsOf(table.fresh))
                used += UsageMap(from_, map).pages().size();
        }
        return static_cast<PageNo>(std::min<std::size_t>(used, from_.pageCount()));
    }

    void keepMap(RowRef place)
    {
        keepPage(place.page);
        for (const PageNo page : UsageMap(from_, place).bitmapPages())
            keepPage(page);
    }

    void keepDescription(const TableDefinition& definition)
    {
        for (const PageNo page : definition.pages)
            keepPage(page);
        for (const RowRef place : mapsOf(definition))
            keepPage(place.page);
    }

    void keepWhole(const TableDefinition& definition)
    {
        keepDescription(definition);
        for (const RowRef place : mapsOf(definition)) {
            keepMap(place);
            for (const PageNo page : UsageMap(from_, place).pages())
                keepPage(page);
        }
    }

    void copyKept()
    {
        const auto last = std::find(keep_.rbegin(), keep_.rend(), true);
        keep_.resize(static_cast<std::size_t>(keep_.rend() - last));
        try {
            platform::File file(destination_, platform::Access::Create);
            file.resize(std::uint64_t{keep_.size()} * kPageSize);
            for (PageNo page = 0; page < keep_.size(); ++page) {
                if (!keep_[page])
                    continue;
                const PageView kept = from_.read(page);
                file.writeAt(std::uint64_t{page} * kPageSize, kept);
            }
        } catch (const platform::FileError& e) {
            if (e.fault == platform::FileFault::DiskFull)
                throw Error(3026, kFail, u"Not enough space on disk.");
            throwDiskFailed();
        }
    }

    static void place(Packed& packed, PageFile& to)
    {
        FreePages free(to);
        TableDefinition& table = packed.fresh;
        std::vector<PageNo> mapPages;
        if (packed.moves) {
            for (PageNo& page : table.pages)
                page = free.allocate();
            table.page = table.pages.front();
            mapPages.resize((mapCount(table) + kMapsOnPage - 1) / kMapsOnPage);
            for (PageNo& page : mapPages)
                page = free.allocate();
        } else {
            for (const RowRef map : mapsOf(table))
                replaceMapRow(to, map, Bytes(MapRow(to, map).bytes.size()));
        }
        for (PhysicalIndex& index : table.physicalIndexes) {
            index.root = free.allocate();
            BTree::initRoot(to.writeNew(index.root), table.page);
            if (!packed.moves)
                UsageMap(to, index.usageMap).add(index.root, free);
        }
        if (!packed.moves)
            return;
        placeMaps(table, mapPages);
        for (const PageNo page : mapPages)
            writeMapPage(to.writeNew(page), page, table);
    }

    void pack(Packed& packed, PageFile& to, const MovedIds& moved)
    {
        const auto id = static_cast<PageNo>(packed.entry.id);
        const Table table(from_, id, packed.entry.name);
        std::optional<std::size_t> idColumn;
        if (id == kObjectsPage)
            idColumn = columnOf(table, u"Id");
        else if (id == kPermissionsPage)
            idColumn = columnOf(table, u"ObjectId");
        TablePacker(from_, table, to, std::move(packed.fresh), idColumn, moved).run();
    }

    static void cut(PageFile& to)
    {
        const FreePages free(to);
        PageNo end = to.pageCount();
        while (end > 3 && free.isFree(end - 1))
            --end;
        for (PageNo page = 2; page < end; ++page) {
            if (!free.isFree(page))
                continue;
            to.writeNew(page); // what lies there is of no use to anybody
            to.makeRoom();
        }
        to.truncate(end);
    }

    PageFile& from_;
    std::u16string destination_;
    std::vector<bool> keep_;
    std::vector<Packed> tables_; // those that are written anew
};

void writeBack(const PageFile& packed, PageFile& original)
{
    for (PageNo page = 0; page < packed.pageCount(); ++page) {
        const PageView now = packed.read(page);
        if (page < original.pageCount()) {
            const PageView before = original.read(page);
            if (std::equal(now.bytes().begin(), now.bytes().end(), before.bytes().begin()))
                continue;
        }
        std::copy(now.bytes().begin(), now.bytes().end(), original.writeNew(page).begin());
        original.makeRoom();
    }
    if (packed.pageCount() < original.pageCount())
        original.truncate(packed.pageCount());
}

} // namespace

void compactCopy(PageFile& original, const std::u16string& destination)
{
    requireSound(original, u"");
    Compactor(original, destination).run();
    PageFile packed(destination, OpenMode::Read, original.password());
    requireSound(packed, u"the compacted copy is not sound: ");
}

void compactFile(const std::u16string& path, const std::u16string& password)
{
    PageFile original(path, OpenMode::Write, password);
    const platform::PassingFile copy(path + u"-compacted");
    compactCopy(original, copy.path());
    writeBack(PageFile(copy.path(), OpenMode::Read, password), original);
    original.commit();
}

} // namespace vellums::jet
