// Recursive descent: a routine for each level of binding, which reads an operand by asking the next tighter
// level and goes on while it sees one of its own operators. So equal operators group from the left, and the
// place of a routine in the chain is its precedence. AND, OR and & make one node with all their operands: a
// condition of a thousand terms is broad, not deep.
//
// Two limits keep a statement from using up the stack. The depth of the tree is counted where nodes are
// made, since evaluating, binding and destroying it recurse as deep. The depth of the parser is counted on
// the three levels through which every recursion comes back (IMP, NOT and signs), since parentheses make no
// nodes.
//
// Faults are told with the text of the whole expression, from `begin_` on. Only parse() sets that; inner
// expressions are read with parseImp().
#include "jet/sql/parse/expressionParser.h"

#include "jet/sql/values/sqlError.h"

#include <algorithm>

namespace vellums::jet::sql {

namespace {

// Deeper expressions would need too much stack: to evaluate, and to read (one pair of parentheses takes
// three levels of the parser).
constexpr int kDeepest = 500;
constexpr int kDeepestLevel = 200;

// The one place where nodes with operands come from, so that no tree is deeper than allowed.
Expression make(ExpressionKind kind, Operator op, std::vector<Expression> operands)
{
    Expression node;
    node.kind = kind;
    node.op = op;
    for (const Expression& operand : operands)
        node.depth = std::max(node.depth, operand.depth + 1);
    if (node.depth > kDeepest)
        throwTooComplex();
    node.operands = std::move(operands);
    return node;
}

Expression unary(ExpressionKind kind, Expression operand)
{
    std::vector<Expression> operands;
    operands.push_back(std::move(operand));
    return make(kind, Operator::None, std::move(operands));
}

Expression binary(ExpressionKind kind, Operator op, Expression left, Expression right)
{
    std::vector<Expression> operands;
    operands.push_back(std::move(left));
    operands.push_back(std::move(right));
    return make(kind, op, std::move(operands));
}

Expression literal(Value value)
{
    Expression node;
    node.literal = std::move(value);
    return node;
}

struct NamedFunction {
    std::u16string_view name;
    Function function;
    std::size_t least; // arguments
    std::size_t most;
};

// clang-format off
constexpr NamedFunction kFunctions[] = {
    {u"MID", Function::Mid, 2, 3},       {u"LEFT", Function::Left, 2, 2},     {u"RIGHT", Function::Right, 2, 2},
    {u"LEN", Function::Len, 1, 1},       {u"INSTR", Function::InStr, 2, 3},   {u"UCASE", Function::UCase, 1, 1},
    {u"LCASE", Function::LCase, 1, 1},   {u"TRIM", Function::Trim, 1, 1},     {u"LTRIM", Function::LTrim, 1, 1},
    {u"RTRIM", Function::RTrim, 1, 1},   {u"IIF", Function::Iif, 3, 3},       {u"ISNULL", Function::IsNull, 1, 1},
    {u"ISDATE", Function::IsDate, 1, 1}, {u"CDATE", Function::CDate, 1, 1},   {u"NOW", Function::Now, 0, 0},
    {u"DATE", Function::Date, 0, 0},     {u"TIME", Function::Time, 0, 0},     {u"CSTR", Function::CStr, 1, 1},
    {u"CLNG", Function::CLng, 1, 1},     {u"CDBL", Function::CDbl, 1, 1},     {u"COUNT", Function::Count, 1, 1},
    {u"MIN", Function::Min, 1, 1},       {u"MAX", Function::Max, 1, 1},       {u"SUM", Function::Sum, 1, 1},
    {u"AVG", Function::Avg, 1, 1},
};

struct NamedOperator {
    std::u16string_view symbol;
    Operator op;
};

constexpr NamedOperator kComparisons[] = {
    {u"=", Operator::Equal},        {u"<>", Operator::NotEqual},     {u"<", Operator::Less},
    {u">", Operator::Greater},      {u"<=", Operator::LessOrEqual},  {u">=", Operator::GreaterOrEqual},
};
// clang-format on

bool isAggregate(Function function)
{
    return function >= Function::Count;
}

} // namespace

// Counts how deep the parser stands in itself, for as long as the routine runs.
class ExpressionParser::Level {
public:
    explicit Level(int& level)
        : level_(level)
    {
        if (++level_ > kDeepestLevel)
            throwTooComplex();
    }
    ~Level() { --level_; }
    Level(const Level&) = delete;
    Level& operator=(const Level&) = delete;

private:
    int& level_;
};

Expression ExpressionParser::parse()
{
    begin_ = cursor_.place();
    Expression expression = parseImp();
    cursor_.refuseBadToken(begin_);
    if (cursor_.atSymbol(u")"))
        return expression; // it may close a list around the expression
    // Anything that could begin an operand lacks an operator in front of it. What else follows is for the
    // statement to judge, which knows the words that may come there.
    const Token& behind = cursor_.token();
    const bool operandBehind = behind.kind == TokenKind::Name || behind.kind == TokenKind::Text ||
        behind.kind == TokenKind::Date || behind.kind == TokenKind::Number || cursor_.atSymbol(u"(") ||
        (behind.kind == TokenKind::Symbol && behind.text != u"," && behind.text != u";");
    const bool wordBehind = behind.kind == TokenKind::Word && !isClauseWord(behind.keyword) &&
        behind.keyword != u"ASC" && behind.keyword != u"DESC";
    if (operandBehind || wordBehind)
        throwMissingOperator(cursor_.expressionFrom(begin_));
    return expression;
}

Expression ExpressionParser::parseImp()
{
    const Level level(level_);
    Expression left = parseEqv();
    while (cursor_.skipWord(u"IMP"))
        left = binary(ExpressionKind::Imp, Operator::None, std::move(left), parseEqv());
    return left;
}

Expression ExpressionParser::parseEqv()
{
    Expression left = parseXor();
    while (cursor_.skipWord(u"EQV"))
        left = binary(ExpressionKind::Eqv, Operator::None, std::move(left), parseXor());
    return left;
}

Expression ExpressionParser::parseXor()
{
    Expression left = parseOr();
    while (cursor_.skipWord(u"XOR"))
        left = binary(ExpressionKind::Xor, Operator::None, std::move(left), parseOr());
    return left;
}

Expression ExpressionParser::parseOr()
{
    std::vector<Expression> operands;
    operands.push_back(parseAnd());
    while (cursor_.skipWord(u"OR"))
        operands.push_back(parseAnd());
    if (operands.size() == 1)
        return std::move(operands.front());
    return make(ExpressionKind::Or, Operator::None, std::move(operands));
}

Expression ExpressionParser::parseAnd()
{
    std::vector<Expression> operands;
    operands.push_back(parseNot());
    while (cursor_.skipWord(u"AND"))
        operands.push_back(parseNot());
    if (operands.size() == 1)
        return std::move(operands.front());
    return make(ExpressionKind::And, Operator::None, std::move(operands));
}

Expression ExpressionParser::parseNot()
{
    const Level level(level_);
    if (cursor_.skipWord(u"NOT"))
        return unary(ExpressionKind::Not, parseNot());
    return parseComparison();
}

// Comparisons and predicates are one level: `a = b LIKE c` matches the answer of a = b against c. A NOT
// belongs to a predicate only when its word follows at once.
Expression ExpressionParser::parseComparison()
{
    Expression left = parseConcat();
    for (;;) {
        const auto* comparison = std::find_if(std::begin(kComparisons), std::end(kComparisons),
            [&](const NamedOperator& named) { return cursor_.atSymbol(named.symbol); });
        if (comparison != std::end(kComparisons)) {
            cursor_.advance();
            left = binary(ExpressionKind::Compare, comparison->op, std::move(left), parseConcat());
            continue;
        }
        if (cursor_.skipWord(u"IS")) {
            const bool negated = cursor_.skipWord(u"NOT");
            if (!cursor_.skipWord(u"NULL"))
                throwExpressionSyntax(cursor_.expressionFrom(begin_));
            left = unary(ExpressionKind::IsNull, std::move(left));
            left.negated = negated;
            continue;
        }
        const bool negated = cursor_.atWord(u"NOT") &&
            (cursor_.atWord(u"LIKE", 1) || cursor_.atWord(u"ALIKE", 1) || cursor_.atWord(u"IN", 1) ||
                cursor_.atWord(u"BETWEEN", 1));
        if (negated)
            cursor_.advance();
        if (!cursor_.atAnyWord({u"LIKE", u"ALIKE", u"IN", u"BETWEEN"}))
            return left;
        left = parsePredicate(std::move(left), negated);
    }
}

Expression ExpressionParser::parsePredicate(Expression left, bool negated)
{
    Expression result;
    if (cursor_.skipWord(u"IN")) {
        result = parseIn(std::move(left));
    } else if (cursor_.skipWord(u"BETWEEN")) {
        std::vector<Expression> operands;
        operands.push_back(std::move(left));
        operands.push_back(parseConcat()); // a tighter level, which leaves the AND
        if (!cursor_.skipWord(u"AND"))
            throwExpressionSyntax(cursor_.expressionFrom(begin_));
        operands.push_back(parseConcat());
        result = make(ExpressionKind::Between, Operator::None, std::move(operands));
    } else {
        cursor_.advance(); // LIKE or ALIKE
        result = binary(ExpressionKind::Like, Operator::None, std::move(left), parseConcat());
    }
    result.negated = negated;
    return result;
}

Expression ExpressionParser::parseIn(Expression left)
{
    if (!cursor_.skipSymbol(u"("))
        throwExpressionSyntax(cursor_.expressionFrom(begin_));
    if (cursor_.atWord(u"SELECT"))
        refuseSubquery();
    std::vector<Expression> operands;
    operands.push_back(std::move(left));
    do
        operands.push_back(parseImp());
    while (cursor_.skipSymbol(u","));
    closeParenthesis();
    return make(ExpressionKind::In, Operator::None, std::move(operands));
}

Expression ExpressionParser::parseConcat()
{
    std::vector<Expression> operands;
    operands.push_back(parseSum());
    while (cursor_.skipSymbol(u"&"))
        operands.push_back(parseSum());
    if (operands.size() == 1)
        return std::move(operands.front());
    return make(ExpressionKind::Concat, Operator::None, std::move(operands));
}

Expression ExpressionParser::parseSum()
{
    Expression left = parseModulo();
    for (;;) {
        const Operator op = cursor_.atSymbol(u"+") ? Operator::Add
            : cursor_.atSymbol(u"-")               ? Operator::Subtract
                                                   : Operator::None;
        if (op == Operator::None)
            return left;
        cursor_.advance();
        left = binary(ExpressionKind::Arithmetic, op, std::move(left), parseModulo());
    }
}

Expression ExpressionParser::parseModulo()
{
    Expression left = parseWholeDivision();
    while (cursor_.skipWord(u"MOD"))
        left = binary(ExpressionKind::Arithmetic, Operator::Modulo, std::move(left), parseWholeDivision());
    return left;
}

Expression ExpressionParser::parseWholeDivision()
{
    Expression left = parseProduct();
    while (cursor_.skipSymbol(u"\\"))
        left = binary(ExpressionKind::Arithmetic, Operator::WholeDivide, std::move(left), parseProduct());
    return left;
}

Expression ExpressionParser::parseProduct()
{
    Expression left = parseSign();
    for (;;) {
        const Operator op = cursor_.atSymbol(u"*") ? Operator::Multiply
            : cursor_.atSymbol(u"/")               ? Operator::Divide
                                                   : Operator::None;
        if (op == Operator::None)
            return left;
        cursor_.advance();
        left = binary(ExpressionKind::Arithmetic, op, std::move(left), parseSign());
    }
}

Expression ExpressionParser::parseSign()
{
    const Level level(level_);
    if (cursor_.skipSymbol(u"-"))
        return unary(ExpressionKind::Negate, parseSign());
    if (cursor_.skipSymbol(u"+"))
        return unary(ExpressionKind::Plus, parseSign());
    return parsePower();
}

// Powers bind tighter than the sign in front of them, -2 ^ 2 is -4; an exponent may have one of its own.
Expression ExpressionParser::parsePower()
{
    Expression left = parseOperand();
    while (cursor_.skipSymbol(u"^")) {
        const bool negative = cursor_.skipSymbol(u"-");
        Expression exponent = parseOperand();
        if (negative)
            exponent = unary(ExpressionKind::Negate, std::move(exponent));
        left = binary(ExpressionKind::Arithmetic, Operator::Power, std::move(left), std::move(exponent));
    }
    return left;
}

Expression ExpressionParser::parseOperand()
{
    cursor_.refuseBadToken(begin_);
    const Token& token = cursor_.token();
    switch (token.kind) {
    case TokenKind::Text:
        cursor_.advance();
        return literal(token.text);
    case TokenKind::Number:
    case TokenKind::Date:
        cursor_.advance();
        return literal(token.value);
    case TokenKind::Name:
        return parseName();
    case TokenKind::Word:
        return parseWord();
    case TokenKind::Symbol:
        if (token.text == u"(")
            return parseParentheses();
        missingOperand();
    default:
        missingOperand();
    }
}

// A word with a parenthesis behind it is a call, unless it is a word of the statement, as in `NOT (...)`.
// YES, NO, OFF, NOW and the like may be columns as well; binding decides.
Expression ExpressionParser::parseWord()
{
    const std::u16string& keyword = cursor_.token().keyword;
    if (cursor_.atSymbol(u"(", 1) && !isClauseWord(keyword))
        return parseCall();
    if (cursor_.skipWord(u"NULL"))
        return literal(Null{});
    if (cursor_.skipWord(u"TRUE") || cursor_.skipWord(u"ON"))
        return literal(true);
    if (cursor_.skipWord(u"FALSE"))
        return literal(false);
    if (isClauseWord(keyword))
        missingOperand();
    return parseName();
}

Expression ExpressionParser::parseParentheses()
{
    cursor_.advance();
    if (cursor_.atWord(u"SELECT"))
        refuseSubquery();
    if (cursor_.atSymbol(u")"))
        throwExpressionSyntax(cursor_.expressionFrom(begin_));
    Expression inside = parseImp();
    closeParenthesis();
    return inside;
}

// What stands in the place of the parenthesis tells what is missing: with the end of the expression the
// parenthesis itself, with anything else an operator.
void ExpressionParser::closeParenthesis()
{
    cursor_.refuseBadToken(begin_);
    if (cursor_.skipSymbol(u")"))
        return;
    const Token& token = cursor_.token();
    if (token.kind == TokenKind::End || (token.kind == TokenKind::Word && isClauseWord(token.keyword)) ||
        cursor_.atSymbol(u";"))
        throwMissingParenthesis(cursor_.expressionFrom(begin_));
    throwMissingOperator(cursor_.expressionFrom(begin_));
}

Expression ExpressionParser::parseName()
{
    const std::size_t begin = cursor_.place();
    Expression node;
    node.kind = ExpressionKind::Name;
    node.bare = cursor_.token().kind == TokenKind::Word;
    node.name = cursor_.token().text;
    cursor_.advance();
    if (cursor_.skipSymbol(u".") || cursor_.skipSymbol(u"!")) {
        const Token& token = cursor_.token();
        if (token.kind != TokenKind::Word && token.kind != TokenKind::Name)
            throwMissingOperator(cursor_.expressionFrom(begin_));
        node.bare = false;
        node.qualifier = std::move(node.name);
        node.name = token.text;
        cursor_.advance();
    }
    node.source = cursor_.textBetween(begin, cursor_.place());
    return node;
}

Expression ExpressionParser::parseCall()
{
    const std::size_t begin = cursor_.place();
    const Token& name = cursor_.token();
    if (name.keyword == u"EXISTS")
        refuseSubquery();
    const auto* named = std::find_if(std::begin(kFunctions), std::end(kFunctions),
        [&](const NamedFunction& function) { return function.name == name.keyword; });
    if (named == std::end(kFunctions))
        throwUndefinedFunction(name.text);
    cursor_.advance(); // the name and the parenthesis
    cursor_.advance();
    std::vector<Expression> arguments;
    const bool countAll = named->function == Function::Count && cursor_.skipSymbol(u"*");
    if (!countAll && !cursor_.atSymbol(u")")) {
        do
            arguments.push_back(parseImp());
        while (cursor_.skipSymbol(u","));
    }
    closeParenthesis();
    const std::u16string_view source = cursor_.textBetween(begin, cursor_.place());
    if (!countAll && (arguments.size() < named->least || arguments.size() > named->most))
        throwArgumentCount(source);
    Expression node = make(isAggregate(named->function) ? ExpressionKind::Aggregate : ExpressionKind::Call,
        Operator::None, std::move(arguments));
    node.function = named->function;
    node.source = source.substr(0, 255); // for messages
    return node;
}

void ExpressionParser::missingOperand()
{
    const std::u16string_view text = cursor_.expressionFrom(begin_);
    if (cursor_.atSymbol(u")") && cursor_.place() == begin_)
        throwExtraParenthesis(text);
    if (text.empty())
        throwExpressionSyntax(text);
    throwMissingOperator(text);
}

void ExpressionParser::refuseSubquery() const
{
    throwSyntax(3075, u"Syntax error in query expression: subqueries are not supported.");
}

} // namespace vellums::jet::sql
