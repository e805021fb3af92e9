// Cuts the text of a statement into tokens.
//
// White space is blank, tab, CR and LF; there are no comments. A U+0000 ends nothing: it is a
// character that no token may hold.
#pragma once

#include "jet/table/value.h"

#include <string>
#include <string_view>
#include <vector>

namespace vellums::jet::sql {

enum class TokenKind {
    End,
    Word,         // a bare name or a keyword
    Name,         // [name] or `name`, without its delimiters
    Text,         // 'text' or "text", without its delimiters
    Date,         // #date#, read
    Number,       // Long or Double in `value`
    Symbol,       // operators and punctuation, as they stand
    Identity,     // @@IDENTITY
    OpenText,     // a text literal that is not closed, or that holds a U+0000
    OpenName,     // a bracket that is not closed
    BadDate,      // #...# that is no date, or that is not closed
    BadCharacter, // anything else
};

struct Token {
    TokenKind kind = TokenKind::End;
    std::u16string text;    // of words, names, texts and symbols
    std::u16string keyword; // of words: in capitals
    Value value;            // of numbers and dates
    std::size_t begin = 0;  // its place in the statement
    std::size_t end = 0;
};

// All tokens, the last one of kind End. Never fails: what is no token becomes one of the last four kinds.
std::vector<Token> tokenize(std::u16string_view sql);

} // namespace vellums::jet::sql
