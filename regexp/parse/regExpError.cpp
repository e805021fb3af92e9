#include "regexp/parse/regExpError.h"

namespace vellums {
namespace {

const char16_t* sentenceOf(std::int32_t number)
{
    switch (number) {
    case 7:
        return u"Out of memory";
    case 28:
        return u"Out of stack space";
    case 5018:
        return u"Unexpected quantifier";
    case 5019:
        return u"Expected ']' in regular expression";
    case 5020:
        return u"Expected ')' in regular expression";
    case 5021:
        return u"Invalid range in character set";
    default:
        return u"Syntax error in regular expression";
    }
}

} // namespace

RegExpError::RegExpError(std::int32_t code, std::optional<std::size_t> where)
    : number(code)
    , description(sentenceOf(code))
    , position(where)
{
}

} // namespace vellums
