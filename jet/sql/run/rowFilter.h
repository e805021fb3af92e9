// The rows of a table that a WHERE keeps.
//
// A large file is looked through in several threads, each with a part of the table and an evaluator of
// its own; what they found is put together in the order of the table.
#pragma once

#include "jet/sql/run/evaluator.h"
#include "jet/sql/run/interruption.h"

#include <functional>
#include <optional>
#include <vector>

namespace vellums::jet::sql {

inline constexpr std::uint64_t kAllRows = static_cast<std::uint64_t>(-1);

class RowFilter {
public:
    // `where` is bound, or null: every row. Scope and expression must outlive the filter.
    RowFilter(const Scope& scope, const Expression* where);

    // Calls back for each row in the order of the table until the callback returns false. A condition
    // `column = number` that must hold goes through the column's index where there is one; a constant
    // condition reads no row or all.
    template <typename Callback>
    void forEach(Callback&& callback) const
    {
        if (isConstantCondition() && !constantResult())
            return;
        if (const std::optional<std::vector<RowRef>> found = lookUp()) {
            for (const RowRef home : *found)
                if (!keep(scope_.table->rowAt(home), evaluator_, callback))
                    return;
            return;
        }
        scope_.table->forEachRow([&](const Row& row) { return keep(row, evaluator_, callback); });
    }

    // The same without an end before the last row, in several threads where that saves time: each row goes
    // to the callback with one of `collected`, of which each belongs to a part of the table, in order.
    template <typename Collected, typename Callback>
    void forEachInParts(std::vector<Collected>& collected, const Collected& empty, Callback callback) const
    {
        const std::size_t parts = partCount();
        collected.assign(parts, empty);
        if (parts == 1) {
            forEach([&](const Row& row) {
                callback(row, collected.front());
                return true;
            });
            return;
        }
        std::vector<Table::Scan> scans = scope_.table->scans(parts);
        runParts(parts, [&](std::size_t part) {
            const Evaluator evaluator(scope_);
            const auto collect = [&](const Row& row) {
                callback(row, collected[part]);
                return true;
            };
            while (const std::optional<Row> row = scans[part].next())
                keep(*row, evaluator, collect);
        });
    }

    // The places of the rows, at most `most` of them, or kAllRows.
    std::vector<RowRef> homes(std::uint64_t most) const;

    // Whether a statement without a table gives its row.
    bool keepsNothingness() const { return constantResult(); }

private:
    bool isConstantCondition() const { return !where_ || isConstant(*where_); }
    bool constantResult() const;
    // Through an index; nullopt: no index answers.
    std::optional<std::vector<RowRef>> lookUp() const;
    // In how many threads a pass over the table is worth it.
    std::size_t partCount() const;
    // Runs the work for each part in a thread of its own; throws what the first part in order threw.
    static void runParts(std::size_t parts, const std::function<void(std::size_t)>& work);

    template <typename Callback>
    bool keep(const Row& row, const Evaluator& evaluator, Callback&& callback) const
    {
        if (scope_.interruption != nullptr)
            scope_.interruption->check();
        return !isConstantCondition() && evaluator.truth(*where_, &row) != Truth::True ? true : callback(row);
    }

    const Scope& scope_;
    const Expression* where_;
    Evaluator evaluator_;
};

} // namespace vellums::jet::sql
