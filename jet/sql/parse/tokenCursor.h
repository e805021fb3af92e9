// A place in the tokens of a statement, and the errors that the parser raises there.
#pragma once

#include "jet/sql/parse/lexer.h"

#include <initializer_list>
#include <string_view>

namespace vellums::jet::sql {

class TokenCursor {
public:
    explicit TokenCursor(std::u16string_view sql);

    const Token& token(std::size_t ahead = 0) const;
    std::size_t place() const { return at_; }
    void advance() { ++at_; }

    // A keyword is a bare word; a name in brackets never is one.
    bool atWord(std::u16string_view keyword, std::size_t ahead = 0) const;
    bool atAnyWord(std::initializer_list<std::u16string_view> keywords) const;
    bool atSymbol(std::u16string_view symbol, std::size_t ahead = 0) const;
    bool skipWord(std::u16string_view keyword);
    bool skipSymbol(std::u16string_view symbol);

    // What a broken statement is called from now on.
    void inStatement(int native, std::u16string_view sentence);
    // Throws the error of the statement being read.
    [[noreturn]] void fail() const;
    void expectWord(std::u16string_view keyword);
    void expectSymbol(std::u16string_view symbol);
    // A table, column or index name: bracketed, or any word that is no keyword of the statement.
    std::u16string expectName();
    // A whole number without a sign.
    std::uint64_t expectWholeNumber();
    // One `;` may follow, and nothing behind it.
    void expectEnd();

    // The text from a place up to the end of the expression that begins there.
    std::u16string_view expressionFrom(std::size_t place) const;
    // The text between two places.
    std::u16string_view textBetween(std::size_t first, std::size_t end) const;
    // A token of the error kinds at the current place is reported as the expression's fault.
    void refuseBadToken(std::size_t expressionPlace) const;

private:
    std::u16string_view sql_;
    std::vector<Token> tokens_;
    std::size_t at_ = 0;
    int native_ = 0;
    std::u16string_view sentence_;
};

// Words that end an expression or separate its parts, so they never are operands or aliases.
bool isClauseWord(std::u16string_view keyword);

} // namespace vellums::jet::sql
