// Adding to a tree, taking from it, and building it anew.
//
// A node entry is an upper bound: everything below its child is not larger, and larger than the entry
// before. It need not exist itself, so taking the largest entry out of a leaf leaves the nodes above alone,
// and a new entry on the way that descend() took is within all bounds already. What lies above the last
// entry of a node hangs on its tail.
//
// A page that overflows gives its left part to a new page: the old one keeps its slot in the parent, whose
// bound stays right, and the parent only gains an entry in front of that slot. This may overflow the parent,
// and so on up the path, which ends at the root; the root never moves, so its content first goes to a page
// of its own. Dividing a leaf writes four pages: both parts, the left neighbour and the parent. Pages that
// become small are not filled up from their neighbours; they are given back when they are empty.
//
// Leaves are chained across the whole level, nodes only among the children of one parent.
#include "jet/index/treeWriter.h"

#include "jet/file/maps/freePages.h"

#include <algorithm>
#include <cassert>

namespace vellums::jet {
namespace {

constexpr std::size_t kLongestNodeEntry = 1200; // three entries always fit on a page
constexpr std::size_t kPreviousField = 12;
constexpr std::size_t kNextField = 16;
constexpr std::size_t kBalanced = 0; // a cut that divides the bytes evenly

void requireLength(ByteView entry)
{
    if (entry.size() + kChildPointer > kLongestNodeEntry)
        throw Error(0, kFail, u"A value is too long for an index of the table.");
}

// Where to cut entries that do not fit on one page: at half of their bytes, or as near to it as lets both
// parts fit. Only a new first or last entry can spoil the shared prefix, so a cut behind the first or before
// the last entry always serves. All cuts are tried; each costs comparing two pairs of keys.
std::size_t balancedCut(const EntryList& entries)
{
    const std::size_t n = entries.size();
    std::size_t best = 0;
    std::size_t bestDistance = 0;
    for (std::size_t cut = 1; cut < n; ++cut) {
        if (entries.packed(0, cut) > kEntryAreaSize || entries.packed(cut, n) > kEntryAreaSize)
            continue;
        const std::size_t left = entries.bytes(0, cut);
        const std::size_t right = entries.bytes(cut, n);
        const std::size_t distance = left < right ? right - left : left - right;
        if (best == 0 || distance < bestDistance) {
            best = cut;
            bestDistance = distance;
        }
    }
    if (best == 0)
        throwDamaged(u"an index page cannot be divided");
    return best;
}

} // namespace

TreePath descend(const PageFile& file, const TreePlace& place, ByteView bound)
{
    std::vector<TreeStep> nodes;
    IndexPage page = readIndexPage(file, place.root, place.table);
    while (!page.leaf) {
        const std::size_t slot = page.slotFor(bound);
        const PageNo child = page.child(slot);
        nodes.push_back({std::move(page), slot});
        if (nodes.size() > kMaxDepth)
            throwDamaged(u"an index is too deep");
        for (const TreeStep& step : nodes)
            if (step.page.page == child)
                throwDamaged(u"an index runs in a circle");
        page = readIndexPage(file, child, place.table);
    }
    return {std::move(nodes), std::move(page)};
}

TreeWriter::TreeWriter(PageFile& file, const TreePlace& place, FreePages& free)
    : file_(file)
    , place_(place)
    , free_(free)
    , map_(file, place.usageMap)
{
}

PageNo TreeWriter::allocate()
{
    if (!reusable_.empty()) {
        const PageNo page = reusable_.back();
        reusable_.pop_back();
        return page;
    }
    const PageNo page = free_.allocate();
    map_.add(page, free_);
    return page;
}

void TreeWriter::release(PageNo page)
{
    assert(page != place_.root);
    map_.remove(page);
    free_.release(page, 0);
}

void TreeWriter::write(const IndexPage& page)
{
    writeIndexPage(file_.writeNew(page.page), page, place_.table);
}

// Changes one chain pointer of a page and nothing else.
void TreeWriter::link(PageNo page, std::size_t field, PageNo to)
{
    if (page == 0)
        return;
    readIndexPage(file_, page, place_.table);
    store<std::uint32_t>(file_.write(page), field, to);
}

// For the counter of different keys, a hint to other programs: an entry of the same key could only be next
// to this one, here or on the leaf beside it. One behind an empty leaf goes unnoticed.
bool TreeWriter::hasNewKey(const IndexPage& leaf, std::size_t place) const
{
    const ByteView key = keyOf(leaf.entries.at(place));
    const auto sameKey = [key](const IndexPage& page, std::size_t entry) {
        return compareBytes(keyOf(page.entries.at(entry)), key) == 0;
    };
    if (place > 0 && sameKey(leaf, place - 1))
        return false;
    if (place + 1 < leaf.entries.size() && sameKey(leaf, place + 1))
        return false;
    if (place == 0 && leaf.previous != 0) {
        const IndexPage before = readIndexPage(file_, leaf.previous, place_.table);
        if (!before.entries.empty() && sameKey(before, before.entries.size() - 1))
            return false;
    }
    if (place + 1 == leaf.entries.size() && leaf.next != 0) {
        const IndexPage after = readIndexPage(file_, leaf.next, place_.table);
        if (!after.entries.empty() && sameKey(after, 0))
            return false;
    }
    return true;
}

bool TreeWriter::insert(ByteView entry)
{
    requireLength(entry);
    TreePath path = descend(file_, place_, entry);
    IndexPage leaf = std::move(path.leaf);
    // A node without a tail led here by its last entry, whose bound the new entry may exceed.
    for (TreeStep& step : path.nodes) {
        EntryList& entries = step.page.entries;
        if (step.page.tail == 0 && step.slot + 1 == entries.size()) {
            step.page.tail = entries.child(step.slot);
            entries.erase(step.slot);
            write(step.page);
        }
    }
    const std::size_t place = leaf.entries.lowerBound(entry);
    if (place < leaf.entries.size() && compareBytes(leaf.entries.at(place), entry) == 0)
        throwDamaged(u"an index holds an entry of a new row already");
    leaf.entries.insert(place, entry);
    const bool isNew = hasNewKey(leaf, place);
    // Rising keys leave full pages behind: only the new entry goes on, to what will be the last leaf.
    const bool lastOfAll = leaf.next == 0 && place + 1 == leaf.entries.size();
    const std::size_t depth = path.nodes.size();
    storeAt(path, depth, std::move(leaf), lastOfAll ? place : kBalanced);
    return isNew;
}

// Writes a changed page at this depth of the path. One that has grown too large gives its left part to
// a new page, which its parent then names; the old page keeps its place in the parent, whose bound is
// still right. `cut` says where to divide.
void TreeWriter::storeAt(TreePath& path, std::size_t depth, IndexPage page, std::size_t cut)
{
    if (page.entries.fits()) {
        write(page);
        return;
    }
    if (depth == 0) {
        const PageNo root = page.page;
        page = pushRootDown(std::move(page));
        IndexPage top(root, false);
        top.level = static_cast<std::uint8_t>(page.level + 1);
        top.tail = page.page;
        path.nodes.insert(path.nodes.begin(), {std::move(top), 0});
        depth = 1;
    }
    if (cut == kBalanced)
        cut = balancedCut(page.entries);
    assert(cut > 0 && cut < page.entries.size());
    IndexPage left(allocate(), page.leaf);
    left.level = page.level;
    left.entries = page.entries.part(0, cut);
    left.previous = page.previous;
    left.next = page.page;
    const ByteView lastBound = left.entries.bound(cut - 1);
    const Bytes bound(lastBound.begin(), lastBound.end());
    if (!left.leaf) {
        // The bound of the left part's last child moves up into the parent, and the child to the tail.
        left.tail = left.entries.child(cut - 1);
        left.entries.erase(cut - 1);
    }
    page.entries = page.entries.part(cut, page.entries.size());
    page.previous = left.page;
    write(left);
    write(page);
    link(left.previous, kNextField, left.page);
    if (!left.leaf)
        cutChainBetweenChildren(left);

    TreeStep& parent = path.nodes[depth - 1];
    parent.page.entries.insert(parent.slot, nodeEntry(bound, left.page));
    storeAt(path, depth - 1, std::move(parent.page), kBalanced);
}

// The root's content moves to a new page, which is to become its only child.
IndexPage TreeWriter::pushRootDown(IndexPage root)
{
    root.page = allocate();
    root.previous = 0;
    root.next = 0;
    return root;
}

// Nodes are chained with children of the same parent only, leaves across all parents. When a node is
// divided, the last node below its left part loses its right neighbour.
void TreeWriter::cutChainBetweenChildren(const IndexPage& left)
{
    const IndexPage child = readIndexPage(file_, left.tail, place_.table);
    if (child.leaf)
        return;
    link(child.next, kPreviousField, 0);
    link(child.page, kNextField, 0);
}

// The bounds above are left as they are, even where the entry was the last of its leaf.
bool TreeWriter::erase(ByteView entry)
{
    TreePath path = descend(file_, place_, entry);
    IndexPage& leaf = path.leaf;
    const std::size_t place = leaf.entries.lowerBound(entry);
    if (place == leaf.entries.size() || compareBytes(leaf.entries.at(place), entry) != 0)
        return false;
    leaf.entries.erase(place);
    if (!leaf.entries.empty() || path.nodes.empty())
        write(leaf);
    else
        dropFrom(path, path.nodes.size(), leaf);
    return true;
}

// Takes an empty page at this depth out of the tree. Nodes that lose their last child go the same way;
// a root that does becomes an empty leaf.
void TreeWriter::dropFrom(TreePath& path, std::size_t depth, const IndexPage& page)
{
    assert(page.entries.empty() && page.tail == 0);
    if (depth == 0) {
        write(IndexPage(place_.root, true));
        return;
    }
    unchain(page);
    release(page.page);
    TreeStep& step = path.nodes[depth - 1];
    IndexPage& parent = step.page;
    if (step.slot < parent.entries.size())
        parent.entries.erase(step.slot);
    else
        parent.tail = 0;
    if (parent.tail == 0 && !parent.entries.empty()) {
        // Other programs look at the tail for the end of the index.
        const std::size_t last = parent.entries.size() - 1;
        parent.tail = parent.entries.child(last);
        parent.entries.erase(last);
    }
    if (parent.tail == 0)
        dropFrom(path, depth - 1, parent);
    else
        write(parent);
}

void TreeWriter::unchain(const IndexPage& page)
{
    link(page.previous, kNextField, page.next);
    link(page.next, kPreviousField, page.previous);
}

// From the leaves up, level by level, each page as full as it goes. The pages that the tree has are used
// again, lowest first; what is left of them is given back, what is missing is taken from the free ones.
void TreeWriter::rebuild(std::vector<Bytes> entries)
{
    for (const Bytes& entry : entries)
        requireLength(entry);
    std::sort(entries.begin(), entries.end(),
        [](const Bytes& a, const Bytes& b) { return compareBytes(a, b) < 0; });
    readIndexPage(file_, place_.root, place_.table);
    reusable_ = map_.pages();
    std::erase(reusable_, place_.root);
    std::reverse(reusable_.begin(), reusable_.end()); // the lowest page is taken first

    std::vector<Built> level = buildLeaves(entries);
    for (std::uint8_t height = 1; level.size() > 1; ++height)
        level = buildNodes(level, height);
    for (const PageNo page : reusable_)
        release(page);
    reusable_.clear();
}

// Gives the pages of a level their numbers and writes them; a level of one page is the root. Leaves get
// their neighbours here. Nodes are written without any: who their neighbours are depends on the parents, so
// buildNodes() links them once it has grouped them.
void TreeWriter::writeLevel(std::vector<IndexPage>& pages)
{
    for (IndexPage& page : pages)
        page.page = pages.size() == 1 ? place_.root : allocate();
    for (std::size_t i = 0; i < pages.size(); ++i) {
        if (pages[i].leaf) {
            pages[i].previous = i == 0 ? 0 : pages[i - 1].page;
            pages[i].next = i + 1 == pages.size() ? 0 : pages[i + 1].page;
        }
        write(pages[i]);
        file_.makeRoom();
    }
}

// Without entries there is one leaf all the same: the empty root.
std::vector<TreeWriter::Built> TreeWriter::buildLeaves(const std::vector<Bytes>& entries)
{
    std::vector<IndexPage> pages(1, IndexPage(0, true));
    for (const Bytes& entry : entries) {
        EntryList& list = pages.back().entries;
        list.add(entry);
        if (list.fits())
            continue;
        list.erase(list.size() - 1);
        pages.emplace_back(0, true).entries.add(entry);
    }
    writeLevel(pages);
    std::vector<Built> built;
    for (const IndexPage& page : pages) {
        const ByteView last = page.entries.empty() ? ByteView() : page.entries.bound(page.entries.size() - 1);
        built.push_back({Bytes(last.begin(), last.end()), page.page});
    }
    return built;
}

// Groups the children below nodes: all but the last of a group get an entry, the last is the tail.
std::vector<TreeWriter::Built> TreeWriter::buildNodes(const std::vector<Built>& children, std::uint8_t level)
{
    // Where the groups begin. A child opens a new one when the entry of the child before it finds no room;
    // that one then is the tail of its group and takes no entry.
    std::vector<std::size_t> starts = {0};
    EntryList list(kRowPointer + kChildPointer);
    for (std::size_t i = 1; i < children.size(); ++i) {
        list.add(nodeEntry(children[i - 1].last, children[i - 1].page));
        if (list.fits())
            continue;
        starts.push_back(i);
        list = EntryList(kRowPointer + kChildPointer);
    }
    if (starts.size() > 1 && starts.back() + 1 == children.size())
        --starts.back(); // no node has one child only
    starts.push_back(children.size());

    std::vector<IndexPage> pages;
    std::vector<Built> built;
    for (std::size_t group = 0; group + 1 < starts.size(); ++group) {
        IndexPage& page = pages.emplace_back(0, false);
        page.level = level;
        for (std::size_t i = starts[group]; i + 1 < starts[group + 1]; ++i)
            page.entries.add(nodeEntry(children[i].last, children[i].page));
        page.tail = children[starts[group + 1] - 1].page;
        built.push_back({children[starts[group + 1] - 1].last, 0});
    }
    writeLevel(pages);
    for (std::size_t group = 0; group < pages.size(); ++group) {
        built[group].page = pages[group].page;
        for (std::size_t i = starts[group]; level > 1 && i < starts[group + 1]; ++i) {
            link(children[i].page, kPreviousField, i == starts[group] ? 0 : children[i - 1].page);
            link(children[i].page, kNextField, i + 1 == starts[group + 1] ? 0 : children[i + 1].page);
        }
    }
    return built;
}

} // namespace vellums::jet
