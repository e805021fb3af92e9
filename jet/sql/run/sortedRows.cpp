// A sorted TOP n without sorting everything. Rows are collected until there are more than twice as many as
// wanted; then a selection in linear time finds the n-th, and all rows behind it go. Its key is the limit
// from then on: a row with a larger one is dropped when it is offered, so a long pass soon keeps hardly any.
// Rows that tie with the n-th stay, however many; the next pruning then waits until they have doubled, so
// each costs a few steps for every row that came since. What is left is sorted once, at the end.
//
// Equal keys are ordered by when they were offered, which makes the result the same however the pass is
// divided into parts.
#include "jet/sql/run/sortedRows.h"

#include <algorithm>
#include <cassert>

namespace vellums::jet::sql {

namespace {

constexpr std::size_t kSlack = 1024; // rows kept beyond twice the wanted number before the next pruning

} // namespace

bool SortedRows::before(const Entry& a, const Entry& b)
{
    const int order = a.key.compare(b.key);
    return order != 0 ? order < 0 : a.sequence < b.sequence;
}

void SortedRows::offer(std::string key, RowRef home)
{
    if (top_ && (*top_ == 0 || (limit_ && key > *limit_)))
        return;
    entries_.push_back({std::move(key), sequence_++, home});
    if (!top_ || entries_.size() <= *top_)
        return;
    if (pruneAt_ == 0)
        pruneAt_ = 2 * static_cast<std::size_t>(*top_) + kSlack;
    if (entries_.size() >= pruneAt_)
        prune();
}

// Drops what lies behind the n-th row; ties with it stay.
void SortedRows::prune()
{
    assert(top_ && *top_ > 0 && entries_.size() > *top_);
    const auto last = entries_.begin() + static_cast<std::ptrdiff_t>(*top_ - 1);
    std::nth_element(entries_.begin(), last, entries_.end(), before);
    limit_ = last->key;
    std::erase_if(entries_, [&](const Entry& entry) { return entry.key > *limit_; });
    pruneAt_ = std::max(pruneAt_, 2 * entries_.size());
}

// No limit is asked here: take() prunes once more.
void SortedRows::append(SortedRows&& other)
{
    for (Entry& entry : other.entries_) {
        entry.sequence += sequence_;
        entries_.push_back(std::move(entry));
    }
    sequence_ += other.sequence_;
    other.entries_.clear();
}

std::vector<RowRef> SortedRows::take()
{
    if (top_ && *top_ != 0 && entries_.size() > *top_)
        prune();
    std::sort(entries_.begin(), entries_.end(), before);
    std::vector<RowRef> rows;
    rows.reserve(entries_.size());
    for (const Entry& entry : entries_)
        rows.push_back(entry.home);
    entries_.clear();
    return rows;
}

} // namespace vellums::jet::sql
