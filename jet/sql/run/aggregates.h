// COUNT, MIN, MAX, SUM and AVG over the rows of a statement.
#pragma once

#include "jet/sql/run/evaluator.h"

#include <vector>

namespace vellums::jet::sql {

class Aggregates {
public:
    // The aggregate expressions, bound; they and the scope must outlive the object.
    Aggregates(const Scope& scope, std::vector<const Expression*> expressions);

    // `row` is null for the one row of a statement without a table.
    void add(const Row* row);

    // In the order of the expressions. Without values COUNT is 0 and the others are NULL. Throws
    // (mismatch) for a sum that is too large.
    std::vector<Value> values() const;

private:
    struct State {
        std::int64_t count = 0;
        double sum = 0;
        Value extreme;
    };
    void addTo(State& state, const Expression& aggregate, const Row* row) const;

    const Scope& scope_;
    Evaluator evaluator_;
    std::vector<const Expression*> expressions_;
    std::vector<State> states_;
};

} // namespace vellums::jet::sql
