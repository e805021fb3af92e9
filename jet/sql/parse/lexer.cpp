// One pass over the statement. The first character of a token tells its kind, but for & (an operator, or the
// start of a hexadecimal or octal number), which depends on the token before. Keywords are not told apart
// from names here: which words are reserved depends on the place. Faults become tokens, because the sentence
// for a fault depends on the clause in which the parser meets it.
//
// A literal may be a whole note, so texts are copied in the pieces between doubled quotes, not by
// characters.
#include "jet/sql/parse/lexer.h"

#include "jet/sql/values/asciiUnits.h"
#include "jet/sql/values/dateText.h"

#include <charconv>
#include <limits>

namespace vellums::jet::sql {

namespace {

bool isBlank(char16_t c)
{
    return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n';
}

// Letters outside ASCII are told by leaving out the ranges of signs and punctuation: general punctuation to
// arrows and shapes but for letterlike signs and number forms (2100 to 218F), ideographic punctuation,
// vertical and small forms, wide signs.
bool isLetter(char16_t c)
{
    if (c < 0x80)
        return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
    if (c < 0xC0)
        return c == 0xAA || c == 0xB5 || c == 0xBA;
    if (c == 0xD7 || c == 0xF7)
        return false;
    if (c >= 0x2000 && c <= 0x2BFF)
        return c >= 0x2100 && c <= 0x218F;
    if (c >= 0x3000 && c <= 0x303F)
        return c >= 0x3005 && c <= 0x3007;
    if (c >= 0xFE10 && c <= 0xFE6F)
        return false;
    if (c >= 0xFF00 && c <= 0xFF65)
        return (c >= 0xFF21 && c <= 0xFF3A) || (c >= 0xFF41 && c <= 0xFF5A);
    return c < 0xFFF0;
}

bool isNameCharacter(char16_t c)
{
    return isLetter(c) || isDigit(c) || c == u'_' || (c >= 0xFF10 && c <= 0xFF19);
}

int digitOfBase(char16_t c, int base)
{
    int digit = 99;
    if (isDigit(c))
        digit = c - u'0';
    else if (c >= u'A' && c <= u'F')
        digit = c - u'A' + 10;
    else if (c >= u'a' && c <= u'f')
        digit = c - u'a' + 10;
    return digit < base ? digit : -1;
}

class Lexer {
public:
    explicit Lexer(std::u16string_view sql)
        : sql_(sql)
    {
    }

    std::vector<Token> run()
    {
        for (;;) {
            while (isBlank(peek()))
                ++at_;
            Token token;
            token.begin = at_;
            if (at_ == sql_.size()) {
                token.end = at_;
                tokens_.push_back(std::move(token));
                return std::move(tokens_);
            }
            read(token);
            token.end = at_;
            tokens_.push_back(std::move(token));
        }
    }

private:
    char16_t peek(std::size_t ahead = 0) const
    {
        return at_ + ahead < sql_.size() ? sql_[at_ + ahead] : u'\0';
    }

    // `&H1F` is a number only where no operand stands in front of it.
    bool operandBefore() const
    {
        if (tokens_.empty())
            return false;
        const Token& last = tokens_.back();
        switch (last.kind) {
        case TokenKind::Symbol:
            return last.text == u")";
        case TokenKind::Word:
            for (const char16_t* keyword : {u"SELECT", u"WHERE", u"AND", u"OR", u"NOT", u"XOR", u"EQV",
                     u"IMP", u"MOD", u"LIKE", u"ALIKE", u"BETWEEN", u"BY", u"DISTINCT", u"ALL", u"TOP"})
                if (last.keyword == keyword)
                    return false;
            return true;
        default:
            return true;
        }
    }

    void read(Token& token)
    {
        const char16_t c = peek();
        if (c == u'\'' || c == u'"')
            readText(token, c);
        else if (c == u'[' || c == u'`')
            readName(token, c == u'[' ? u']' : u'`');
        else if (c == u'#')
            readDate(token);
        else if (isDigit(c) || (c == u'.' && isDigit(peek(1))))
            readNumber(token);
        else if (c == u'&' && readRadixNumber(token))
            return;
        else if (c == u'@')
            readIdentity(token);
        else if (isLetter(c))
            readWord(token);
        else
            readSymbol(token);
    }

    void readText(Token& token, char16_t quote)
    {
        token.kind = TokenKind::Text;
        for (++at_; at_ < sql_.size();) {
            const std::size_t stop = sql_.find(quote, at_);
            if (stop == std::u16string_view::npos)
                break;
            token.text.append(sql_, at_, stop - at_);
            at_ = stop + 1;
            if (peek() != quote || at_ == sql_.size()) { // not doubled: this one closes
                if (token.text.find(u'\0') != std::u16string::npos)
                    token.kind = TokenKind::OpenText;
                return;
            }
            token.text += quote;
            ++at_;
        }
        at_ = sql_.size();
        token.kind = TokenKind::OpenText;
    }

    // Up to the first closing sign: a name cannot hold one.
    void readName(Token& token, char16_t close)
    {
        const std::size_t stop = sql_.find(close, at_ + 1);
        if (stop == std::u16string_view::npos) {
            token.kind = TokenKind::OpenName;
            token.text = sql_.substr(at_ + 1);
            at_ = sql_.size();
            return;
        }
        token.kind = TokenKind::Name;
        token.text = sql_.substr(at_ + 1, stop - at_ - 1);
        at_ = stop + 1;
    }

    void readDate(Token& token)
    {
        const std::size_t stop = sql_.find(u'#', at_ + 1);
        const std::size_t end = stop == std::u16string_view::npos ? sql_.size() : stop + 1;
        token.text = sql_.substr(at_, end - at_);
        token.kind = TokenKind::BadDate;
        at_ = end;
        if (stop == std::u16string_view::npos)
            return;
        const std::u16string_view inside(token.text.data() + 1, token.text.size() - 2);
        if (const std::optional<Date> date = readDateText(inside, DateOrder::Literal)) {
            token.kind = TokenKind::Date;
            token.value = *date;
        }
    }

    // A Long where it is written without point and exponent and fits, else a Double. An E without digits
    // behind it is not part of the number.
    void readNumber(Token& token)
    {
        std::string digits;
        bool whole = true;
        while (isDigit(peek()))
            digits += static_cast<char>(sql_[at_++]);
        if (peek() == u'.') {
            whole = false;
            digits += '.';
            ++at_;
            while (isDigit(peek()))
                digits += static_cast<char>(sql_[at_++]);
        }
        if (peek() == u'E' || peek() == u'e') {
            const std::size_t sign = peek(1) == u'+' || peek(1) == u'-' ? 1 : 0;
            if (isDigit(peek(1 + sign))) {
                whole = false;
                digits += 'e';
                if (peek(1) == u'-')
                    digits += '-';
                at_ += 1 + sign;
                while (isDigit(peek()))
                    digits += static_cast<char>(sql_[at_++]);
            }
        }
        token.kind = TokenKind::Number;
        std::int32_t number = 0;
        const char* end = digits.data() + digits.size();
        if (whole && std::from_chars(digits.data(), end, number).ec == std::errc()) {
            token.value = number;
            return;
        }
        double real = 0;
        if (digits.front() == '.')
            digits.insert(0, "0");
        end = digits.data() + digits.size();
        if (std::from_chars(digits.data(), end, real).ec != std::errc()) {
            // Too large or too small for a Double: too small is 0, too large no number.
            const std::size_t exponent = digits.find("e-");
            if (exponent == std::string::npos)
                token.kind = TokenKind::BadCharacter;
            real = 0;
        }
        token.value = real;
    }

    // Up to 32 bits, which are those of a Long: &HFFFFFFFF is -1. False: the & is an operator.
    bool readRadixNumber(Token& token)
    {
        const char16_t letter = peek(1);
        const int base = letter == u'H' || letter == u'h' ? 16 : letter == u'O' || letter == u'o' ? 8 : 0;
        if (base == 0 || operandBefore() || digitOfBase(peek(2), base) < 0)
            return false;
        at_ += 2;
        std::uint64_t number = 0;
        token.kind = TokenKind::Number;
        for (int digit = 0; (digit = digitOfBase(peek(), base)) >= 0; ++at_) {
            number = number * static_cast<unsigned>(base) + static_cast<unsigned>(digit);
            if (number > std::numeric_limits<std::uint32_t>::max()) {
                token.kind = TokenKind::BadCharacter;
                number = 0;
            }
        }
        token.value = static_cast<std::int32_t>(static_cast<std::uint32_t>(number));
        return true;
    }

    void readIdentity(Token& token)
    {
        constexpr std::u16string_view kIdentity = u"@@IDENTITY";
        if (capitals(sql_.substr(at_, kIdentity.size())) == kIdentity &&
            !isNameCharacter(peek(kIdentity.size()))) {
            token.kind = TokenKind::Identity;
            at_ += kIdentity.size();
        } else {
            token.kind = TokenKind::BadCharacter;
            ++at_;
        }
    }

    void readWord(Token& token)
    {
        const std::size_t begin = at_;
        while (at_ < sql_.size() && isNameCharacter(sql_[at_]))
            ++at_;
        token.kind = TokenKind::Word;
        token.text = sql_.substr(begin, at_ - begin);
        token.keyword = capitals(token.text);
    }

    void readSymbol(Token& token)
    {
        const std::u16string_view two = sql_.substr(at_, 2);
        std::size_t length = 0;
        if (two == u"<>" || two == u"<=" || two == u">=")
            length = 2;
        else if (std::u16string_view(u"^-+*/\\&=<>(),;.!").find(sql_[at_]) != std::u16string_view::npos)
            length = 1;
        token.kind = length == 0 ? TokenKind::BadCharacter : TokenKind::Symbol;
        token.text = sql_.substr(at_, length == 0 ? 1 : length);
        at_ += token.text.size();
    }

    std::u16string_view sql_;
    std::size_t at_ = 0;
    std::vector<Token> tokens_;
};

} // namespace

std::vector<Token> tokenize(std::u16string_view sql)
{
    return Lexer(sql).run();
}

} // namespace vellums::jet::sql
