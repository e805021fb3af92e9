// Statements by their first word, clause by clause, in the order in which they must stand. Each clause first
// says what a fault in it is called, so that the cursor can raise it wherever it is met; the sentences are
// those that programs written for the providers know. Clauses that the dialect has and this engine has not
// are refused by name, never passed over: GROUP BY, joins, subqueries, other databases.
#include "jet/sql/parse/parser.h"

#include "jet/sql/parse/expressionParser.h"
#include "jet/sql/parse/schemaParser.h"
#include "jet/sql/values/sqlError.h"

namespace vellums::jet::sql {

namespace {

void inSelectList(TokenCursor& cursor)
{
    cursor.inStatement(3141,
        u"The SELECT statement includes a reserved word or an argument name that is misspelled or missing, "
        u"or the punctuation is incorrect.");
}

void inFromClause(TokenCursor& cursor)
{
    cursor.inStatement(3131, u"Syntax error in FROM clause.");
}

// Clauses that are known but not answered.
void refuseUnsupported(const TokenCursor& cursor)
{
    if (cursor.atAnyWord({u"GROUP", u"HAVING", u"UNION"}))
        throwSyntax(
            3131, u"Syntax error: " + cursor.token().keyword + u" is not supported in a SELECT statement.");
    if (cursor.atAnyWord({u"JOIN", u"INNER", u"LEFT", u"RIGHT", u"FULL", u"CROSS"}) || cursor.atSymbol(u","))
        throwSyntax(3131, u"Syntax error in FROM clause: joins are not supported.");
    if (cursor.atWord(u"IN"))
        throwSyntax(3131, u"Syntax error in FROM clause: other databases are not supported.");
}

TableReference parseTable(TokenCursor& cursor)
{
    if (cursor.atSymbol(u"("))
        throwSyntax(3131, u"Syntax error in FROM clause: subqueries and joins are not supported.");
    TableReference table;
    table.name = cursor.expectName();
    if (cursor.atSymbol(u".") || cursor.atSymbol(u"!")) // a table of another database
        cursor.fail();
    if (cursor.skipWord(u"AS")) {
        table.alias = cursor.expectName();
    } else if (cursor.token().kind == TokenKind::Name ||
        (cursor.token().kind == TokenKind::Word && !isClauseWord(cursor.token().keyword) &&
            !cursor.atAnyWord({u"LEFT", u"RIGHT", u"FULL", u"CROSS", u"OUTER"}))) {
        table.alias = cursor.expectName();
    }
    return table;
}

// A parenthesis or a comma behind the condition is none of its faults for the expression parser, to which
// both may end an expression in a list; here they are.
std::optional<Expression> parseWhere(TokenCursor& cursor)
{
    if (!cursor.skipWord(u"WHERE"))
        return std::nullopt;
    const std::size_t begin = cursor.place();
    Expression condition = ExpressionParser(cursor).parse();
    if (cursor.atSymbol(u")"))
        throwExtraParenthesis(cursor.expressionFrom(begin));
    if (cursor.atSymbol(u","))
        throwExpressionSyntax(cursor.expressionFrom(begin));
    return condition;
}

// `*`, `t.*`, or an expression that may be given a name.
SelectItem parseItem(TokenCursor& cursor)
{
    SelectItem item;
    if (cursor.skipSymbol(u"*")) {
        item.all = true;
        return item;
    }
    const TokenKind kind = cursor.token().kind;
    const bool name = kind == TokenKind::Name || kind == TokenKind::Word;
    if (name && (cursor.atSymbol(u".", 1) || cursor.atSymbol(u"!", 1)) && cursor.atSymbol(u"*", 2)) {
        item.all = true;
        item.qualifier = cursor.expectName();
        cursor.advance();
        cursor.advance();
        return item;
    }
    if (kind == TokenKind::End || cursor.atSymbol(u",") || cursor.atSymbol(u";") || cursor.atSymbol(u")") ||
        (kind == TokenKind::Word && isClauseWord(cursor.token().keyword) &&
            !cursor.atAnyWord({u"NOT", u"NULL", u"ON"})))
        cursor.fail();
    item.expression = ExpressionParser(cursor).parse();
    if (cursor.skipWord(u"AS"))
        item.alias = cursor.expectName();
    return item;
}

void parseOrder(TokenCursor& cursor, SelectStatement& select)
{
    cursor.inStatement(3138, u"Syntax error in ORDER BY clause.");
    if (!cursor.skipWord(u"ORDER"))
        return;
    cursor.expectWord(u"BY");
    do {
        OrderItem item;
        const std::size_t begin = cursor.place();
        if (cursor.token().kind == TokenKind::End || cursor.atSymbol(u",") || cursor.atSymbol(u";"))
            cursor.fail();
        item.expression = ExpressionParser(cursor).parse();
        item.source = cursor.textBetween(begin, cursor.place()).substr(0, 255);
        item.descending = cursor.skipWord(u"DESC");
        if (!item.descending)
            cursor.skipWord(u"ASC");
        select.order.push_back(std::move(item));
    } while (cursor.skipSymbol(u","));
}

// Behind SELECT.
SelectStatement parseSelect(TokenCursor& cursor)
{
    SelectStatement select;
    inSelectList(cursor);
    if (cursor.skipWord(u"DISTINCT"))
        select.distinct = true;
    else if (!cursor.skipWord(u"ALL"))
        cursor.skipWord(u"DISTINCTROW"); // of one table these are all rows
    // TOP is a keyword only in front of a number; else it is a column.
    if (cursor.atWord(u"TOP") && cursor.token(1).kind == TokenKind::Number) {
        cursor.advance();
        select.top = cursor.expectWholeNumber();
        if (cursor.atWord(u"PERCENT") && !cursor.atSymbol(u",", 1) && !cursor.atWord(u"FROM", 1))
            throwSyntax(3141, u"Syntax error: TOP n PERCENT is not supported.");
    }
    do
        select.items.push_back(parseItem(cursor));
    while (cursor.skipSymbol(u","));
    if (cursor.skipWord(u"INTO"))
        select.into = cursor.expectName();
    if (cursor.skipWord(u"FROM")) {
        inFromClause(cursor);
        select.from = parseTable(cursor);
        refuseUnsupported(cursor);
    }
    select.where = parseWhere(cursor);
    refuseUnsupported(cursor);
    if (!cursor.atWord(u"ORDER"))
        return select;
    parseOrder(cursor, select);
    refuseUnsupported(cursor);
    return select;
}

Statement parseSelectStatement(TokenCursor& cursor)
{
    if (cursor.token().kind == TokenKind::Identity) {
        inSelectList(cursor);
        cursor.advance();
        cursor.expectEnd();
        return IdentityStatement{};
    }
    Statement statement = parseSelect(cursor);
    cursor.expectEnd();
    return statement;
}

Statement parseInsert(TokenCursor& cursor)
{
    const auto inInsert = [&] { cursor.inStatement(3134, u"Syntax error in INSERT INTO statement."); };
    inInsert();
    cursor.expectWord(u"INTO");
    InsertStatement insert;
    insert.table = cursor.expectName();
    if (cursor.skipSymbol(u"(")) {
        do
            insert.columns.push_back(cursor.expectName());
        while (cursor.skipSymbol(u","));
        cursor.expectSymbol(u")");
    }
    if (cursor.skipWord(u"SELECT")) {
        insert.select = parseSelect(cursor);
        if (insert.select->into)
            cursor.fail();
    } else {
        cursor.expectWord(u"VALUES");
        cursor.expectSymbol(u"(");
        do {
            if (cursor.atSymbol(u")") || cursor.atSymbol(u","))
                cursor.fail();
            insert.values.push_back(ExpressionParser(cursor).parse());
        } while (cursor.skipSymbol(u","));
        cursor.expectSymbol(u")");
    }
    // What follows and should not is a fault of the last clause of the SELECT.
    if (insert.select && cursor.token().kind != TokenKind::End && !cursor.atSymbol(u";"))
        cursor.fail();
    inInsert();
    cursor.expectEnd();
    return insert;
}

Statement parseUpdate(TokenCursor& cursor)
{
    cursor.inStatement(3144, u"Syntax error in UPDATE statement.");
    UpdateStatement update;
    update.table = parseTable(cursor);
    cursor.expectWord(u"SET");
    do {
        UpdateStatement::Change change;
        change.column = cursor.expectName();
        if (cursor.skipSymbol(u".") || cursor.skipSymbol(u"!")) {
            change.qualifier = std::move(change.column);
            change.column = cursor.expectName();
        }
        cursor.expectSymbol(u"=");
        if (cursor.token().kind == TokenKind::End || cursor.atSymbol(u",") || cursor.atWord(u"WHERE"))
            cursor.fail();
        change.value = ExpressionParser(cursor).parse();
        update.changes.push_back(std::move(change));
    } while (cursor.skipSymbol(u","));
    update.where = parseWhere(cursor);
    cursor.expectEnd();
    return update;
}

Statement parseDelete(TokenCursor& cursor)
{
    inFromClause(cursor);
    cursor.skipSymbol(u"*");
    cursor.expectWord(u"FROM");
    DeleteStatement statement;
    statement.table = parseTable(cursor);
    refuseUnsupported(cursor);
    statement.where = parseWhere(cursor);
    cursor.expectEnd();
    return statement;
}

} // namespace

Statement parseStatement(std::u16string_view sql)
{
    TokenCursor cursor(sql);
    if (cursor.skipWord(u"SELECT"))
        return parseSelectStatement(cursor);
    if (cursor.skipWord(u"INSERT"))
        return parseInsert(cursor);
    if (cursor.skipWord(u"UPDATE"))
        return parseUpdate(cursor);
    if (cursor.skipWord(u"DELETE"))
        return parseDelete(cursor);
    if (cursor.atAnyWord({u"CREATE", u"ALTER", u"DROP"}))
        return parseSchemaStatement(cursor);
    if (cursor.atAnyWord({u"TRANSFORM", u"PARAMETERS", u"EXEC", u"EXECUTE", u"PROCEDURE"}))
        throwSyntax(3129, u"Invalid SQL statement: " + cursor.token().keyword + u" is not supported.");
    throwSyntax(
        3129, u"Invalid SQL statement; expected 'DELETE', 'INSERT', 'PROCEDURE', 'SELECT', or 'UPDATE'.");
}

Expression parseExpression(std::u16string_view text)
{
    TokenCursor cursor(text);
    cursor.inStatement(3075, u"Syntax error in query expression.");
    Expression expression = ExpressionParser(cursor).parse();
    cursor.expectEnd();
    return expression;
}

bool writes(const Statement& statement)
{
    if (const auto* select = std::get_if<SelectStatement>(&statement))
        return select->into.has_value();
    return !std::holds_alternative<IdentityStatement>(statement);
}

bool needsNoFile(const Statement& statement)
{
    return std::holds_alternative<IdentityStatement>(statement);
}

} // namespace vellums::jet::sql
