// The B-tree of one index.
#pragma once

#include "jet/file/maps/freePages.h"
#include "jet/file/pageFile.h"

#include <functional>
#include <vector>

namespace vellums::jet {

struct IndexEntry {
    Bytes key;
    RowRef row; // the row's home place

    friend auto operator<=>(const IndexEntry&, const IndexEntry&) = default;
};

// Where the tree of an index lies.
struct TreePlace {
    PageNo root = 0;
    RowRef usageMap;
    PageNo table = 0; // definition page of the owning table
};

// The tree of one index. Searching is in bTree.cpp; how entries come and go in treeWriter.cpp; inspect(),
// which walks over all of it, in treeInspector.cpp.
class BTree {
public:
    BTree(PageFile& file, TreePlace place);

    // Writes an empty leaf: the root of a new index.
    static void initRoot(MutableBytes page, PageNo table);

    // Adds an entry. True when no other entry has the same key. Throws Error when the entry is there
    // already, the key is too long, or the tree breaks a rule on the path.
    bool insert(ByteView key, RowRef row, FreePages& free);

    // Removes an entry. False when it is not there.
    bool erase(ByteView key, RowRef row, FreePages& free);
    // Removes the entry of a row whatever its key, by walking the leaves.
    bool eraseByRow(RowRef row, FreePages& free);

    // The rows with exactly this key, in order.
    std::vector<RowRef> find(ByteView key) const;

    // All entries in key order; the callback returns false to stop.
    void forEach(const std::function<bool(ByteView key, RowRef row)>& callback) const;

    // Replaces the whole content. The entries are sorted here. It makes the tree of a new index over rows
    // that are there, and of a compacted table.
    void rebuild(std::vector<IndexEntry> entries, FreePages& free);

    // Every page of the tree, root first; checks structure, order, bounds, the leaf chain and that the
    // pages are those of the usage map. Each violation is one line.
    struct Report {
        std::vector<PageNo> pages;
        std::vector<IndexEntry> entries;
        std::vector<std::u16string> faults;
    };
    Report inspect() const;

private:
    PageFile& file_;
    TreePlace place_;
};

} // namespace vellums::jet
