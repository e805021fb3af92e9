#include "jet/sql/rowFilter.h"

#include "jet/sql/conversion.h"

#include <cmath>

namespace vellums::jet::sql {

namespace {

// A comparison of a Long column with a number, as the index of the column can answer it.
struct Lookup {
    std::size_t column;
    std::int32_t number;
};

std::optional<Lookup> asLookup(const Expression& node, const Scope& scope)
{
    if (node.kind != ExpressionKind::Compare || node.op != Operator::Equal)
        return std::nullopt;
    const bool columnFirst = node.operands[0].column.has_value();
    const Expression& column = node.operands[columnFirst ? 0 : 1];
    const Expression& constant = node.operands[columnFirst ? 1 : 0];
    if (!column.column || !isConstant(constant) || kindOf(constant.literal) != ValueKind::Number ||
        scope.table->definition().columns[*column.column].type != ColumnType::Long)
        return std::nullopt;
    const double number = numberOf(constant.literal);
    const std::optional<std::int32_t> whole = roundedLong(number);
    if (!whole || *whole != number)
        return std::nullopt;
    return Lookup{*column.column, *whole};
}

} // namespace

RowFilter::RowFilter(const Scope& scope, const Expression* where)
    : scope_(scope)
    , where_(where)
    , evaluator_(scope)
{
}

bool RowFilter::constantResult() const
{
    return !where_ || evaluator_.truth(*where_, nullptr) == Truth::True;
}

// Through the first condition of an AND that an index answers.
std::optional<std::vector<RowRef>> RowFilter::lookUp() const
{
    const auto tryOne = [&](const Expression& node) -> std::optional<std::vector<RowRef>> {
        const std::optional<Lookup> lookup = asLookup(node, scope_);
        return lookup ? scope_.table->findLong(lookup->column, lookup->number) : std::nullopt;
    };
    std::optional<std::vector<RowRef>> found;
    if (where_->kind == ExpressionKind::And) {
        for (const Expression& operand : where_->operands)
            if (!found)
                found = tryOne(operand);
    } else {
        found = tryOne(*where_);
    }
    if (found)
        std::sort(found->begin(), found->end());
    return found;
}

std::vector<RowRef> RowFilter::homes(std::uint64_t most) const
{
    std::vector<RowRef> rows;
    if (most == 0)
        return rows;
    forEach([&](const Row& row) {
        rows.push_back(row.home());
        return rows.size() < most;
    });
    return rows;
}

} // namespace vellums::jet::sql
