#include "jet/sql/values/sqlError.h"

namespace vellums::jet::sql {

namespace {

constexpr std::size_t kLongestQuote = 255;

std::u16string quoted(std::u16string_view expression)
{
    std::u16string text = u"'";
    text += expression.substr(0, kLongestQuote);
    if (expression.size() > kLongestQuote)
        text += u"...";
    return text + u"'";
}

} // namespace

void throwSyntax(int native, std::u16string sentence)
{
    throw Error(native, kErrorsInCommand, std::move(sentence));
}

void throwExpressionSyntax(std::u16string_view expression)
{
    throwSyntax(3075, u"Syntax error in query expression " + quoted(expression) + u".");
}

void throwMissingOperator(std::u16string_view expression)
{
    throwSyntax(3075, u"Syntax error (missing operator) in query expression " + quoted(expression) + u".");
}

void throwMissingParenthesis(std::u16string_view expression)
{
    throwSyntax(3075, u"Missing ), ], or Item in query expression " + quoted(expression) + u".");
}

void throwExtraParenthesis(std::u16string_view expression)
{
    throwSyntax(3075, u"Extra ) in query expression " + quoted(expression) + u".");
}

void throwStringSyntax(std::u16string_view expression)
{
    throwSyntax(3075, u"Syntax error in string in query expression " + quoted(expression) + u".");
}

void throwDateSyntax(std::u16string_view literal)
{
    throwSyntax(3075, u"Syntax error in date in query expression " + quoted(literal) + u".");
}

void throwArgumentCount(std::u16string_view expression)
{
    throwSyntax(3075,
        u"Wrong number of arguments used with function in query expression " + quoted(expression) + u".");
}

void throwUndefinedFunction(std::u16string_view name)
{
    throwSyntax(3085, u"Undefined function " + quoted(name) + u" in expression.");
}

void throwTooComplex()
{
    throwSyntax(3360, u"Query is too complex.");
}

void throwMissingParameter()
{
    throw Error(3061, kParamNotOptional, u"No value given for one or more required parameters.");
}

void throwNoInputTable(const std::u16string& name)
{
    throw Error(3078, kNoTable,
        u"The database engine cannot find the input table or query '" + name +
            u"'. Make sure it exists and that its name is spelled correctly.");
}

void throwNoOutputTable(const std::u16string& name)
{
    throw Error(3192, kNoTable, u"Could not find output table '" + name + u"'.");
}

void throwNoTableToDrop(const std::u16string& name)
{
    throw Error(3376, kNoTable, u"Table '" + name + u"' does not exist.");
}

void throwUnknownInsertField(const std::u16string& name)
{
    throwSyntax(3127,
        u"The INSERT INTO statement contains the following unknown field name: '" + name +
            u"'. Make sure you have typed the name correctly, and try the operation again.");
}

void throwDuplicateDestination(const std::u16string& name)
{
    throwSyntax(3063, u"Duplicate output destination '" + name + u"'.");
}

void throwValueCount()
{
    throwSyntax(3346, u"Number of query values and destination fields are not the same.");
}

void throwNotUpdateable(const std::u16string& column)
{
    throw Error(3164, kFail, u"Cannot update '" + column + u"'; field not updateable.");
}

void throwNotAggregated(std::u16string_view expression)
{
    throw Error(3122, kErrorsOccurred,
        u"You tried to execute a query that does not include the specified expression " + quoted(expression) +
            u" as part of an aggregate function.");
}

void throwAggregateInWhere(std::u16string_view expression)
{
    throwSyntax(
        3096, u"Cannot have aggregate function in WHERE clause (" + std::u16string(expression) + u").");
}

void throwOrderConflict(std::u16string_view expression)
{
    throwSyntax(3093, u"ORDER BY clause (" + std::u16string(expression) + u") conflicts with DISTINCT.");
}

void throwInvalidCall()
{
    throw Error(5, kFail, u"Invalid procedure call");
}

void throwOverflow()
{
    throw Error(3349, kDataOverflow, u"Overflow");
}

void throwCanceled()
{
    throw Error(3059, kCanceled, u"Operation canceled by user.");
}

} // namespace vellums::jet::sql
