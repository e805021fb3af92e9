#include "store/records/headingQuery.h"

#include "store/records/sqlText.h"
#include "text/decimal.h"
#include "text/pieces.h"

namespace vellums {

using text::replaceAll;

std::u16string searchPattern(std::u16string_view words)
{
    return replaceAll(replaceAll(text::trimBlanks(words), u" ", u"%"), u"*", u"%");
}

std::u16string headingStatement(const HeadingQuery& query)
{
    constexpr std::size_t kLastOr = 4;
    std::u16string condition;
    for (const std::u16string& column : query.columns)
        condition += u"[" + column + u"] LIKE '%" + sqlQuoted(query.pattern) + u"%' OR ";
    // The last OR goes. An empty pattern, and one with a wildcard at an end, has left "%%", which means the
    // same as "%" to every provider.
    if (condition.size() >= kLastOr)
        condition = replaceAll(condition.substr(0, condition.size() - kLastOr), u"%%", u"%");
    // VLTYPE comes first: it is the stamp of sticky records and empty for all others. ID comes last, so that
    // no two rows are equal: a provider's TOP would otherwise give all rows that tie at the border.
    return u"SELECT TOP " + text::decimal(kMaxListed) + u" ID,VLHEAD FROM [" + query.table + u"] WHERE (" +
        condition + u") ORDER BY VLTYPE DESC,  " + (query.byTitle ? u"VLHEAD ASC, " : u"") + u"VLDATE " +
        (query.ascending ? u"ASC" : u"DESC") + u", ID DESC";
}

} // namespace vellums
