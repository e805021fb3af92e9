// The rows of a table that a WHERE keeps.
#pragma once

#include "jet/sql/evaluator.h"

#include <algorithm>
#include <optional>

namespace vellums::jet::sql {

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
        const Expression* where = isConstantCondition() ? nullptr : where_;
        const auto keep = [&](const Row& row) {
            return where && evaluator_.truth(*where, &row) != Truth::True ? true : callback(row);
        };
        if (const std::optional<std::vector<RowRef>> found = where ? lookUp() : std::nullopt) {
            for (const RowRef home : *found)
                if (!keep(scope_.table->rowAt(home)))
                    return;
            return;
        }
        scope_.table->forEachRow(keep);
    }

    // The places of the rows, at most `most` of them.
    std::vector<RowRef> homes(std::uint64_t most) const;

    // Whether a statement without a table gives its row.
    bool keepsNothingness() const { return constantResult(); }

private:
    bool isConstantCondition() const { return !where_ || isConstant(*where_); }
    bool constantResult() const;
    std::optional<std::vector<RowRef>> lookUp() const;

    const Scope& scope_;
    const Expression* where_;
    Evaluator evaluator_;
};

} // namespace vellums::jet::sql
