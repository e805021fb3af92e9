// Looking things up in a tree. The way down leads to the one leaf where an entry stands or would stand; from
// there on the chain of leaves gives all that follow, without the nodes. The smallest row pointer behind a
// key gives its first entry. A leaf may be empty, so a walk goes on until the key is another one, not until
// a leaf gives nothing. Leaves that were met are remembered: a chain that comes back is an error.
#include "jet/index/bTree.h"

#include "jet/file/maps/freePages.h"
#include "jet/index/treeWriter.h"

#include <unordered_set>

namespace vellums::jet {
namespace {

// Walks the leaves from the one where `from` would stand. The callback gets each page and returns
// false to stop.
template <typename Callback>
void eachLeaf(const PageFile& file, const TreePlace& place, ByteView from, Callback&& callback)
{
    IndexPage page = descend(file, place, from).leaf;
    std::unordered_set<PageNo> seen;
    while (callback(page) && page.next != 0) {
        if (!seen.insert(page.page).second)
            throwDamaged(u"the leaves of an index run in a circle");
        page = readIndexPage(file, page.next, place.table);
        if (!page.leaf)
            throwDamaged(u"a leaf of an index is followed by a node");
    }
}

} // namespace

BTree::BTree(PageFile& file, TreePlace place)
    : file_(file)
    , place_(place)
{
}

void BTree::initRoot(MutableBytes page, PageNo table)
{
    writeIndexPage(page, IndexPage(0, true), table);
}

bool BTree::insert(ByteView key, RowRef row, FreePages& free)
{
    return TreeWriter(file_, place_, free).insert(leafEntry(key, row));
}

bool BTree::erase(ByteView key, RowRef row, FreePages& free)
{
    return TreeWriter(file_, place_, free).erase(leafEntry(key, row));
}

// For entries whose key cannot be made again, or was made by other rules: costs a walk over all leaves.
bool BTree::eraseByRow(RowRef row, FreePages& free)
{
    Bytes found;
    eachLeaf(file_, place_, {}, [&](const IndexPage& page) {
        for (std::size_t i = 0; i < page.entries.size() && found.empty(); ++i)
            if (rowOf(page.entries.at(i)) == row)
                found.assign(page.entries.at(i).begin(), page.entries.at(i).end());
        return found.empty();
    });
    if (found.empty())
        return false;
    if (!TreeWriter(file_, place_, free).erase(found))
        throwDamaged(u"an entry of an index cannot be found by its key");
    return true;
}

std::vector<RowRef> BTree::find(ByteView key) const
{
    std::vector<RowRef> rows;
    const Bytes from = leafEntry(key, {});
    eachLeaf(file_, place_, from, [&](const IndexPage& page) {
        for (std::size_t i = page.entries.lowerBound(from); i < page.entries.size(); ++i) {
            const ByteView entry = page.entries.at(i);
            if (compareBytes(keyOf(entry), key) != 0)
                return false;
            rows.push_back(rowOf(entry));
        }
        return true;
    });
    return rows;
}

void BTree::forEach(const std::function<bool(ByteView key, RowRef row)>& callback) const
{
    eachLeaf(file_, place_, {}, [&](const IndexPage& page) {
        for (std::size_t i = 0; i < page.entries.size(); ++i) {
            const ByteView entry = page.entries.at(i);
            if (!callback(keyOf(entry), rowOf(entry)))
                return false;
        }
        return true;
    });
}

void BTree::rebuild(std::vector<IndexEntry> entries, FreePages& free)
{
    std::vector<Bytes> sorted;
    sorted.reserve(entries.size());
    for (const IndexEntry& entry : entries)
        sorted.push_back(leafEntry(entry.key, entry.row));
    TreeWriter(file_, place_, free).rebuild(std::move(sorted));
}

} // namespace vellums::jet
