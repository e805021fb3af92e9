// Changes of the tree of one index: pages split when they overflow and are given back when they
// become empty. The root never moves.
#pragma once

#include "jet/file/maps/freePages.h"
#include "jet/file/maps/usageMap.h"
#include "jet/index/bTree.h"
#include "jet/index/indexPage.h"

#include <vector>

namespace vellums::jet {

// A node on the way down and the slot that was taken there.
struct TreeStep {
    IndexPage page;
    std::size_t slot;
};

struct TreePath {
    std::vector<TreeStep> nodes; // root first
    IndexPage leaf;
};

// The way from the root to the leaf where `bound` (key and row pointer) stands or would stand. Throws
// (damaged file) when a page on the way breaks a rule, comes twice, or the tree is too deep.
TreePath descend(const PageFile& file, const TreePlace& place, ByteView bound);

class TreeWriter {
public:
    TreeWriter(PageFile& file, const TreePlace& place, FreePages& free);

    // Adds a leaf entry. True when no neighbour has the same key. Throws Error: the entry is there, or
    // is too long.
    bool insert(ByteView entry);
    // Removes a leaf entry; false when it is not there.
    bool erase(ByteView entry);
    // Replaces everything by these leaf entries, in any order.
    void rebuild(std::vector<Bytes> entries);

private:
    struct Built {
        Bytes last; // its largest key and row pointer
        PageNo page;
    };

    bool hasNewKey(const IndexPage& leaf, std::size_t place) const;
    void storeAt(TreePath& path, std::size_t depth, IndexPage page, std::size_t cut);
    IndexPage pushRootDown(IndexPage root);
    void cutChainBetweenChildren(const IndexPage& left);
    void dropFrom(TreePath& path, std::size_t depth, const IndexPage& page);
    void unchain(const IndexPage& page);
    void link(PageNo page, std::size_t field, PageNo to);
    PageNo allocate();
    void release(PageNo page);
    void write(const IndexPage& page);
    std::vector<Built> buildLeaves(const std::vector<Bytes>& entries);
    std::vector<Built> buildNodes(const std::vector<Built>& children, std::uint8_t level);
    void writeLevel(std::vector<IndexPage>& pages);

    PageFile& file_;
    TreePlace place_;
    FreePages& free_;
    UsageMap map_;
    std::vector<PageNo> reusable_; // while rebuilding
};

} // namespace vellums::jet
