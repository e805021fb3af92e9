// One state for each aggregate, in one pass. Sums are Doubles. COUNT of an expression only asks whether it
// is NULL, which for a column needs no value; MIN and MAX compare as the sort order does and keep the first
// of equals.
#include "jet/sql/run/aggregates.h"

#include "jet/sql/values/conversion.h"

#include <cmath>

namespace vellums::jet::sql {

Aggregates::Aggregates(const Scope& scope, std::vector<const Expression*> expressions)
    : scope_(scope)
    , evaluator_(scope)
    , expressions_(std::move(expressions))
    , states_(expressions_.size())
{
}

void Aggregates::add(const Row* row)
{
    for (std::size_t i = 0; i < expressions_.size(); ++i)
        addTo(states_[i], *expressions_[i], row);
}

void Aggregates::addTo(State& state, const Expression& aggregate, const Row* row) const
{
    if (aggregate.operands.empty()) {
        ++state.count;
        return;
    }
    const Expression& operand = aggregate.operands[0];
    if (aggregate.function == Function::Count) {
        state.count += evaluator_.isNullValue(operand, row) ? 0 : 1;
        return;
    }
    Value value = evaluator_.value(operand, row);
    if (isNull(value))
        return;
    ++state.count;
    if (aggregate.function == Function::Sum || aggregate.function == Function::Avg) {
        state.sum += numberOf(value);
    } else {
        const bool largest = aggregate.function == Function::Max;
        const bool better = state.count == 1 ||
            (largest ? compareValues(value, state.extreme, scope_.sortOrder) > 0
                     : compareValues(value, state.extreme, scope_.sortOrder) < 0);
        if (better)
            state.extreme = std::move(value);
    }
}

std::vector<Value> Aggregates::values() const
{
    std::vector<Value> values;
    for (std::size_t i = 0; i < expressions_.size(); ++i) {
        const State& state = states_[i];
        switch (expressions_[i]->function) {
        case Function::Count:
            values.emplace_back(static_cast<std::int32_t>(state.count));
            break;
        case Function::Sum:
        case Function::Avg: {
            if (state.count == 0) {
                values.emplace_back(Null{});
                break;
            }
            const bool average = expressions_[i]->function == Function::Avg;
            const double result = average ? state.sum / static_cast<double>(state.count) : state.sum;
            if (!std::isfinite(result))
                throwTypeMismatch();
            values.emplace_back(result);
            break;
        }
        default:
            values.push_back(state.extreme);
        }
    }
    return values;
}

} // namespace vellums::jet::sql
