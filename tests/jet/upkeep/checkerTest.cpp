#include "jet/upkeep/checker.h"

#include "jet/catalogue/blankDatabase.h"
#include "jet/catalogue/catalogue.h"
#include "jet/catalogue/systemRows.h"
#include "jet/file/dataPage.h"
#include "jet/file/maps/freePages.h"
#include "jet/file/maps/usageMap.h"
#include "jet/index/bTree.h"
#include "jet/table/indexKeys.h"
#include "tests/support/temporaryFolder.h"

#include <functional>
#include <gtest/gtest.h>

namespace vellums::jet {
namespace {

// A file with two tables: rows that moved, memos inside and outside, an index; made once.
const std::string& sampleBytes()
{
    static const std::string bytes = [] {
        const tests::TemporaryFolder folder;
        const std::u16string path = folder.file(u"sample.accdb");
        createDatabase(path, FileFormat::Ace12, 45000);
        { // closed before it is read: on Windows a file that is written is not shared
            PageFile file(path, OpenMode::Write);
            Catalogue catalogue(file);
            TableSpec spec{u"Notes",
                {{u"ID", ColumnType::Long}, {u"Head", ColumnType::Text}, {u"Body", ColumnType::Memo}},
                {{u"ByID", {{u"ID"}}, true}, {u"ByHead", {{u"Head", false}}}}};
            spec.columns[0].autoNumber = true;
            catalogue.createTable(spec);
            spec.name = u"Other";
            catalogue.createTable(spec);
            Table notes = catalogue.open(*catalogue.find(u"Notes"));
            for (std::size_t i = 0; i < 300; ++i)
                notes.insert(
                    {{1, u"head " + std::u16string(i % 40, u'x')}, {2, std::u16string(i * 40, u'b')}});
            std::vector<RowRef> homes;
            notes.forEachRow([&](const Row& row) {
                homes.push_back(row.home());
                return true;
            });
            for (std::size_t i = 0; i < homes.size(); i += 3)
                notes.update(homes[i], {{1, std::u16string(200, u'y')}});
            file.commit();
        }
        return tests::bytesOf(path);
    }();
    return bytes;
}

struct Damage {
    const char* what;
    std::function<void(PageFile&, Table& notes)> inflict;
};

RowRef firstRow(const Table& table)
{
    RowRef first;
    table.forEachRow([&](const Row& row) {
        first = row.home();
        return false;
    });
    return first;
}

BTree treeOfIndex(PageFile& file, const Table& table, std::size_t index)
{
    return {file, treeOf(table.definition(), table.definition().physicalIndexes[index])};
}

template <typename T>
void add(PageFile& file, PageNo page, std::size_t offset, T delta)
{
    const MutableBytes bytes = file.write(page);
    store<T>(bytes, offset, static_cast<T>(load<T>(bytes, offset) + delta));
}

// Each of these must show by itself.
const Damage kDamages[] = {
    {"free bytes of a row page",
        [](PageFile& f, Table& t) { add<std::uint16_t>(f, firstRow(t).page, 2, 1); }},
    {"owner of a row page", [](PageFile& f, Table& t) { add<std::uint32_t>(f, firstRow(t).page, 4, 1); }},
    {"row deleted behind the indexes' back",
        [](PageFile& f, Table& t) { deleteRow(f.write(firstRow(t).page), firstRow(t).row); }},
    {"far end of a moved row deleted",
        [](PageFile& f, Table& t) {
            const RowRef home = firstRow(t); // moved, as every third
            const PageView row = DataPage(f.read(home.page)).row(home.row);
            const auto target = rowRefOf(load<std::uint32_t>(row, 0));
            deleteRow(f.write(target.page), target.row);
        }},
    {"pointer of a moved row lost",
        [](PageFile& f, Table& t) { deleteRow(f.write(firstRow(t).page), firstRow(t).row); }},
    {"a long value no row refers to",
        [](PageFile& f, Table& t) {
            const RowRef map = t.definition().columns[2].ownedMap;
            const PageNo page = UsageMap(f, map).highestBelow(kMaxPages);
            if (DataPage(f.read(page)).hasRoomFor(5))
                appendRow(f.write(page), Bytes(5), 0);
        }},
    {"a page missing from the map of owned pages",
        [](PageFile& f, Table& t) { UsageMap(f, t.definition().ownedMap).remove(firstRow(t).page); }},
    {"a page of the table marked free",
        [](PageFile& f, Table& t) { FreePages(f).release(firstRow(t).page, 0); }},
    {"a page owned by two tables",
        [](PageFile& f, Table& t) {
            const Table other(f, static_cast<PageNo>(Catalogue(f).find(u"Other")->id), u"Other");
            FreePages free(f);
            UsageMap(f, other.definition().ownedMap).add(firstRow(t).page, free);
        }},
    {"an index entry missing",
        [](PageFile& f, Table& t) {
            FreePages free(f);
            EXPECT_TRUE(treeOfIndex(f, t, 1).eraseByRow(firstRow(t), free));
        }},
    {"an index entry with another key",
        [](PageFile& f, Table& t) {
            FreePages free(f);
            BTree tree = treeOfIndex(f, t, 0);
            EXPECT_TRUE(tree.eraseByRow(firstRow(t), free));
            tree.insert(Bytes(5, std::byte{0x7F}), firstRow(t), free);
        }},
    {"an index entry of no row",
        [](PageFile& f, Table& t) {
            FreePages free(f);
            treeOfIndex(f, t, 0).insert(Bytes(5, std::byte{0x7F}), {firstRow(t).page, 250}, free);
        }},
    {"an index page out of the index's map",
        [](PageFile& f, Table& t) {
            const PhysicalIndex& index = t.definition().physicalIndexes[1];
            UsageMap(f, index.usageMap).remove(index.root);
        }},
    {"a repeated key in a unique index",
        [](PageFile& f, Table& t) {
            std::vector<RowRef> homes;
            t.forEachRow([&](const Row& row) {
                homes.push_back(row.home());
                return homes.size() < 3;
            });
            const PageView row = DataPage(f.read(homes[1].page)).row(homes[1].row);
            const PageView other = DataPage(f.read(homes[2].page)).row(homes[2].row);
            Bytes changed(row.bytes().begin(), row.bytes().end());
            std::copy_n(other.bytes().begin() + 2, 4, changed.begin() + 2); // the ID
            replaceRow(f.write(homes[1].page), homes[1].row, changed, 0);
        }},
    {"length of the definition",
        [](PageFile& f, Table& t) { add<std::uint32_t>(f, t.definition().page, 8, 2); }},
    {"permissions of a missing object",
        [](PageFile& f, Table&) {
            Table permissions(f, kPermissionsPage, u"MSysACEs");
            permissions.insert({{columnOf(permissions, u"ObjectId"), 4711}});
        }},
    {"a table without permissions",
        [](PageFile& f, Table& t) {
            Table permissions(f, kPermissionsPage, u"MSysACEs");
            const std::size_t object = columnOf(permissions, u"ObjectId");
            const auto rows = permissions.findLong(object, static_cast<std::int32_t>(t.definition().page));
            ASSERT_TRUE(rows);
            for (const RowRef row : *rows)
                permissions.erase(row);
        }},
    {"a fixed object renamed",
        [](PageFile& f, Table&) {
            Table objects(f, kObjectsPage, u"MSysObjects");
            objects.update(objectRow(objects, kDatabaseId)->home(), {{columnOf(objects, u"Name"), u"Gone"}});
        }},
    {"properties that do not parse",
        [](PageFile& f, Table&) {
            Table objects(f, kObjectsPage, u"MSysObjects");
            objects.update(Catalogue(f).find(u"Notes")->row, {{columnOf(objects, u"LvProp"), Bytes(9)}});
        }},
    {"an object without a parent",
        [](PageFile& f, Table&) {
            Table objects(f, kObjectsPage, u"MSysObjects");
            objects.update(Catalogue(f).find(u"Notes")->row, {{columnOf(objects, u"ParentId"), 4711}});
        }},
};

TEST(CheckFile, FindsEachDamage)
{
    for (const Damage& damage : kDamages) {
        const tests::TemporaryFolder folder;
        PageFile file(folder.write(u"a.accdb", sampleBytes()), OpenMode::Write);
        ASSERT_TRUE(checkFile(file).empty());
        Catalogue catalogue(file);
        Table notes = catalogue.open(*catalogue.find(u"Notes"));
        damage.inflict(file, notes);
        EXPECT_FALSE(checkFile(file).empty()) << damage.what;
    }
}

} // namespace
} // namespace vellums::jet
