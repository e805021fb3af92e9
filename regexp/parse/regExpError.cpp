#include "regexp/parse/regExpError.h"

namespace vellums::regexp {
namespace {

const char16_t* sentenceOf(RegExpFault fault)
{
    switch (fault) {
    case RegExpFault::OutOfMemory:
        return u"Out of memory";
    case RegExpFault::NestedTooDeeply:
        return u"Out of stack space";
    case RegExpFault::Quantifier:
        return u"Unexpected quantifier";
    case RegExpFault::OpenClass:
        return u"Expected ']' in regular expression";
    case RegExpFault::OpenGroup:
        return u"Expected ')' in regular expression";
    case RegExpFault::Range:
        return u"Invalid range in character set";
    case RegExpFault::Syntax:
        break;
    }
    return u"Syntax error in regular expression";
}

} // namespace

RegExpError::RegExpError(RegExpFault fault, std::optional<std::size_t> where)
    : number(static_cast<std::int32_t>(fault))
    , description(sentenceOf(fault))
    , position(where)
{
}

} // namespace vellums::regexp
