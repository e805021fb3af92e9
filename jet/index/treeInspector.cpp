// The check of a whole tree: structure, order, bounds, the chain of leaves, the usage map.
//
// From the root down, in the order of the keys. Each page is visited with the bounds of the way to it: its
// entries must be larger than the lower one and not larger than the upper one; a missing bound is open. The
// order within a page is checked where it is read. A page is entered once, so the walk ends in any circle,
// and the depth is limited, so it ends in any chain. A page that cannot be read is one fault, and the rest
// is looked at all the same; the leaves are remembered as they come, and their chain is compared at the end.
//
// Bounds that are larger than anything below them and empty leaves are no faults: that is how deleting
// leaves a tree.
#include "jet/file/maps/usageMap.h"
#include "jet/index/bTree.h"
#include "jet/index/indexPage.h"
#include "text/decimal.h"

#include <algorithm>
#include <optional>
#include <set>

namespace vellums::jet {
namespace {

using text::decimal;

class Inspector {
public:
    Inspector(const PageFile& file, const TreePlace& place, BTree::Report& report)
        : file_(file)
        , place_(place)
        , report_(report)
    {
    }

    void run()
    {
        visit(place_.root, 0, {}, {});
        checkChain();
    }

private:
    using Bound = std::optional<Bytes>;
    struct Leaf {
        PageNo page;
        PageNo previous;
        PageNo next;
    };

    void fault(PageNo page, const std::u16string& what)
    {
        report_.faults.push_back(u"index page " + decimal(page) + u": " + what);
    }

    void visit(PageNo number, std::size_t depth, const Bound& lower, const Bound& upper)
    {
        if (depth > kMaxDepth)
            return fault(number, u"the tree is too deep");
        if (!seen_.insert(number).second)
            return fault(number, u"it hangs in the tree twice");
        try {
            const IndexPage page = readIndexPage(file_, number, place_.table);
            report_.pages.push_back(number);
            checkBounds(page, lower, upper);
            if (page.leaf)
                visitLeaf(page, depth);
            else
                visitChildren(page, depth, lower, upper);
        } catch (const Error& e) {
            fault(number, e.description);
        }
    }

    void checkBounds(const IndexPage& page, const Bound& lower, const Bound& upper)
    {
        if (page.entries.empty())
            return;
        if (lower && compareBytes(page.entries.bound(0), *lower) <= 0)
            fault(page.page, u"an entry is below the bound of the path to it");
        if (upper && compareBytes(page.entries.bound(page.entries.size() - 1), *upper) > 0)
            fault(page.page, u"an entry is above the bound of the path to it");
    }

    void visitLeaf(const IndexPage& page, std::size_t depth)
    {
        if (leaves_.empty())
            leafDepth_ = depth;
        else if (leafDepth_ != depth)
            fault(page.page, u"the leaves lie at different depths");
        leaves_.push_back({page.page, page.previous, page.next});
        for (std::size_t i = 0; i < page.entries.size(); ++i) {
            const ByteView entry = page.entries.at(i);
            const ByteView key = keyOf(entry);
            report_.entries.push_back({Bytes(key.begin(), key.end()), rowOf(entry)});
        }
    }

    // A node without a tail lets the child of its last entry serve everything above as well, up to the bound
    // of the node itself.
    void visitChildren(const IndexPage& page, std::size_t depth, const Bound& lower, const Bound& upper)
    {
        if (page.entries.empty() && page.tail == 0)
            fault(page.page, u"a node without children");
        Bound below = lower;
        for (std::size_t i = 0; i < page.entries.size(); ++i) {
            const ByteView bound = page.entries.bound(i);
            const bool servesRest = page.tail == 0 && i + 1 == page.entries.size();
            visit(page.entries.child(i), depth + 1, below,
                servesRest ? upper : Bound(Bytes(bound.begin(), bound.end())));
            below = Bytes(bound.begin(), bound.end());
        }
        if (page.tail != 0)
            visit(page.tail, depth + 1, below, upper);
    }

    void checkChain()
    {
        for (std::size_t i = 0; i < leaves_.size(); ++i) {
            const PageNo previous = i == 0 ? 0 : leaves_[i - 1].page;
            const PageNo next = i + 1 == leaves_.size() ? 0 : leaves_[i + 1].page;
            if (leaves_[i].previous != previous || leaves_[i].next != next)
                fault(leaves_[i].page, u"the chain of leaves does not follow the tree");
        }
    }

    const PageFile& file_;
    const TreePlace& place_;
    BTree::Report& report_;
    std::set<PageNo> seen_;
    std::vector<Leaf> leaves_;
    std::size_t leafDepth_ = 0;
};

} // namespace

BTree::Report BTree::inspect() const
{
    Report report;
    Inspector(file_, place_, report).run();
    try {
        std::vector<PageNo> pages = report.pages;
        std::sort(pages.begin(), pages.end());
        if (pages != UsageMap(file_, place_.usageMap).pages())
            report.faults.push_back(
                u"the index with root page " + decimal(place_.root) + u" has other pages than its usage map");
    } catch (const Error& e) {
        report.faults.push_back(u"the usage map of an index: " + e.description);
    }
    return report;
}

} // namespace vellums::jet
