// Computes bound expressions, for a row or without one.
//
// Only the columns that the answer needs are read: OR stops at the first true operand, AND at the
// first false one, IIF looks at one of its values, and LIKE looks at the bytes of a column as they lie
// in the file.
#pragma once

#include "jet/sql/run/scope.h"
#include "jet/sql/values/operators.h"

namespace vellums::jet::sql {

class Evaluator {
public:
    // The scope must outlive the evaluator. `aggregates` holds the values of the statement's aggregates,
    // for expressions that have some.
    explicit Evaluator(const Scope& scope, const std::vector<Value>* aggregates = nullptr)
        : scope_(scope)
        , aggregates_(aggregates)
    {
    }

    // `row` may be null for expressions without columns. All throw Error: mismatch, invalid call.
    Value value(const Expression& expression, const Row* row) const;
    Truth truth(const Expression& expression, const Row* row) const;
    bool isNullValue(const Expression& expression, const Row* row) const;

private:
    Value concat(const Expression& expression, const Row* row) const;
    Value call(const Expression& expression, const Row* row) const;
    Truth like(const Expression& expression, const Row* row) const;
    Truth in(const Expression& expression, const Row* row) const;
    Truth between(const Expression& expression, const Row* row) const;
    Truth andOr(const Expression& expression, const Row* row) const;
    Truth pair(const Expression& expression, const Row* row) const;

    const Scope& scope_;
    const std::vector<Value>* aggregates_;
    mutable Bytes scratch_; // for texts that do not lie together in the file
};

} // namespace vellums::jet::sql
