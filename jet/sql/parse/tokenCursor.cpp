// A statement as a list of tokens and a place in it. Looking beyond the end gives the End token again, so no
// caller has to ask whether there is one more. Texts of expressions for messages are cut out of the
// statement as it was written, by the places of tokens.
#include "jet/sql/parse/tokenCursor.h"

#include "jet/sql/values/sqlError.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace vellums::jet::sql {

TokenCursor::TokenCursor(std::u16string_view sql)
    : sql_(sql)
    , tokens_(tokenize(sql))
{
}

const Token& TokenCursor::token(std::size_t ahead) const
{
    return tokens_[std::min(at_ + ahead, tokens_.size() - 1)];
}

bool TokenCursor::atWord(std::u16string_view keyword, std::size_t ahead) const
{
    return token(ahead).kind == TokenKind::Word && token(ahead).keyword == keyword;
}

bool TokenCursor::atAnyWord(std::initializer_list<std::u16string_view> keywords) const
{
    return std::any_of(
        keywords.begin(), keywords.end(), [&](std::u16string_view keyword) { return atWord(keyword); });
}

bool TokenCursor::atSymbol(std::u16string_view symbol, std::size_t ahead) const
{
    return token(ahead).kind == TokenKind::Symbol && token(ahead).text == symbol;
}

bool TokenCursor::skipWord(std::u16string_view keyword)
{
    const bool there = atWord(keyword);
    if (there)
        advance();
    return there;
}

bool TokenCursor::skipSymbol(std::u16string_view symbol)
{
    const bool there = atSymbol(symbol);
    if (there)
        advance();
    return there;
}

void TokenCursor::inStatement(int native, std::u16string_view sentence)
{
    native_ = native;
    sentence_ = sentence;
}

void TokenCursor::fail() const
{
    throwSyntax(native_, std::u16string(sentence_));
}

void TokenCursor::expectWord(std::u16string_view keyword)
{
    if (!skipWord(keyword))
        fail();
}

void TokenCursor::expectSymbol(std::u16string_view symbol)
{
    if (!skipSymbol(symbol))
        fail();
}

std::u16string TokenCursor::expectName()
{
    const Token& here = token();
    const bool word = here.kind == TokenKind::Word && !isClauseWord(here.keyword);
    if ((!word && here.kind != TokenKind::Name) || here.text.empty())
        fail();
    advance();
    return here.text;
}

// Up to 10^15, where every whole number still is a Double.
std::uint64_t TokenCursor::expectWholeNumber()
{
    const Token& here = token();
    if (here.kind != TokenKind::Number)
        fail();
    const auto* whole = std::get_if<std::int32_t>(&here.value);
    const double number = whole ? *whole : std::get<double>(here.value);
    if (number < 0 || number != std::floor(number) || number > 1e15)
        fail();
    advance();
    return static_cast<std::uint64_t>(number);
}

void TokenCursor::expectEnd()
{
    const bool closed = skipSymbol(u";");
    if (token().kind == TokenKind::End)
        return;
    if (closed)
        throwSyntax(3142, u"Characters found after end of SQL statement.");
    fail();
}

// The expression was perhaps never understood, so its end is guessed: the first comma or clause word outside
// of parentheses, a semicolon, the end of the statement.
std::u16string_view TokenCursor::expressionFrom(std::size_t place) const
{
    std::size_t end = place;
    for (int depth = 0; end + 1 < tokens_.size(); ++end) {
        const Token& here = tokens_[end];
        if (here.kind == TokenKind::Symbol && here.text == u"(")
            ++depth;
        else if (here.kind == TokenKind::Symbol && here.text == u")")
            --depth;
        else if (here.kind == TokenKind::Symbol && here.text == u";")
            break;
        if (depth != 0)
            continue;
        const bool separator = here.kind == TokenKind::Symbol && here.text == u",";
        constexpr std::array<std::u16string_view, 8> kEnds{
            u"FROM", u"WHERE", u"ORDER", u"GROUP", u"HAVING", u"UNION", u"INTO", u"AS"};
        if (separator ||
            (here.kind == TokenKind::Word &&
                std::find(kEnds.begin(), kEnds.end(), here.keyword) != kEnds.end()))
            break;
    }
    return textBetween(place, end);
}

std::u16string_view TokenCursor::textBetween(std::size_t first, std::size_t end) const
{
    if (first >= end)
        return {};
    const std::size_t begin = tokens_[first].begin;
    return sql_.substr(begin, tokens_[end - 1].end - begin);
}

void TokenCursor::refuseBadToken(std::size_t expressionPlace) const
{
    switch (token().kind) {
    case TokenKind::OpenText:
        throwStringSyntax(expressionFrom(expressionPlace));
    case TokenKind::BadDate:
        throwDateSyntax(token().text);
    case TokenKind::OpenName:
        throwSyntax(3126, u"Invalid bracketing of name '" + token().text.substr(0, 64) + u"'.");
    case TokenKind::BadCharacter:
        throwExpressionSyntax(expressionFrom(expressionPlace));
    default:
        break;
    }
}

bool isClauseWord(std::u16string_view keyword)
{
    constexpr std::array<std::u16string_view, 30> kWords{u"SELECT", u"FROM", u"WHERE", u"ORDER", u"GROUP",
        u"HAVING", u"UNION", u"BY", u"AS", u"INTO", u"VALUES", u"SET", u"AND", u"OR", u"NOT", u"XOR", u"EQV",
        u"IMP", u"MOD", u"LIKE", u"ALIKE", u"IN", u"IS", u"BETWEEN", u"JOIN", u"INNER", u"ON", u"NULL",
        u"DISTINCT", u"DISTINCTROW"};
    return std::find(kWords.begin(), kWords.end(), keyword) != kWords.end();
}

} // namespace vellums::jet::sql
