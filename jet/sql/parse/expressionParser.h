// Reads expressions from the tokens of a statement.
//
// From loosest to tightest: IMP, EQV, XOR, OR, AND, NOT, comparisons, &, + -, MOD, \, * /, signs, ^.
// Equal operators group from the left.
#pragma once

#include "jet/sql/parse/tokenCursor.h"
#include "jet/sql/parse/tree.h"

namespace vellums::jet::sql {

class ExpressionParser {
public:
    explicit ExpressionParser(TokenCursor& cursor)
        : cursor_(cursor)
    {
    }

    // The expression at the cursor, which ends up behind it. Throws Error.
    Expression parse();

private:
    class Level;

    Expression parseImp();
    Expression parseEqv();
    Expression parseXor();
    Expression parseOr();
    Expression parseAnd();
    Expression parseNot();
    Expression parseComparison();
    Expression parsePredicate(Expression left, bool negated);
    Expression parseIn(Expression left);
    Expression parseConcat();
    Expression parseSum();
    Expression parseModulo();
    Expression parseWholeDivision();
    Expression parseProduct();
    Expression parseSign();
    Expression parsePower();
    Expression parseOperand();
    Expression parseWord();
    Expression parseParentheses();
    Expression parseName();
    Expression parseCall();
    void closeParenthesis();
    [[noreturn]] void missingOperand();
    [[noreturn]] void refuseSubquery() const;

    TokenCursor& cursor_;
    std::size_t begin_ = 0; // where the whole expression begins
    int level_ = 0;
};

} // namespace vellums::jet::sql
