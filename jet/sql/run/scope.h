// What the names of a statement mean.
//
// bind() finds the columns, computes what is constant once, compiles constant LIKE patterns and refuses
// comparisons of a column with a constant of another kind, whether there are rows or not.
#pragma once

#include "jet/sql/parse/tree.h"
#include "jet/table/table.h"

namespace vellums::jet::sql {

class Interruption;

struct Scope {
    const Table* table = nullptr; // none: no column is known
    std::u16string alias;
    SortOrder sortOrder;
    Date now;
    PageNo filePages = 0;                 // how large the file is
    Interruption* interruption = nullptr; // asked for each row; null: nobody interrupts
    // Where aggregates may stand, the ones found so far; null: an aggregate is an error.
    std::vector<const Expression*>* aggregates = nullptr;
};

// The column that a name means; nullopt: none.
std::optional<std::size_t> findColumn(
    const Scope& scope, const std::u16string& qualifier, const std::u16string& name);

// Completes an expression. Throws Error: an unknown name (3061), mismatch. `expression` must then stay
// where it is if it holds aggregates.
void bind(Expression& expression, const Scope& scope);

// The type of the values of a bound expression.
ColumnType typeOf(const Expression& expression, const Scope& scope);

bool isConstant(const Expression& expression);
// True when a column stands outside of every aggregate; gives that name.
const Expression* columnOutsideAggregates(const Expression& expression);

} // namespace vellums::jet::sql
