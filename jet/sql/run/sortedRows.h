// Keeps the first rows of an order: those of TOP n and every further one that ties with the n-th.
#pragma once

#include "jet/file/pageFile.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vellums::jet::sql {

class SortedRows {
public:
    // `top` 0 keeps nothing; nullopt keeps every row.
    explicit SortedRows(std::optional<std::uint64_t> top)
        : top_(top)
    {
    }

    // Offers a row. Rows that tie stay in the order in which they are offered.
    void offer(std::string key, RowRef home);

    // Takes over the rows of another one of the same `top`; they count as offered after those here.
    void append(SortedRows&& other);

    // The rows in their order; the object is empty afterwards.
    std::vector<RowRef> take();

private:
    struct Entry {
        std::string key;
        std::uint64_t sequence = 0;
        RowRef home;
    };
    static bool before(const Entry& a, const Entry& b);
    void prune();

    std::optional<std::uint64_t> top_;
    std::vector<Entry> entries_;
    std::optional<std::string> limit_; // keys above it are not among the first
    std::uint64_t sequence_ = 0;
    std::size_t pruneAt_ = 0;
};

} // namespace vellums::jet::sql
