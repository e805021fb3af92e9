// The rows come sorted by digest and then by date, so equal digests stand together and the oldest of each
// leads its group: every further row of a group is a duplicate. What is remembered between two rows is one
// digest, and the list of IDs to be deleted; the texts themselves are never read. Records without a digest
// come first and form no group, as nothing says that their texts are alike.
#include "maint/delDupRec.h"

#include "store/records/records.h"
#include "text/decimal.h"

#include <cstdio>
#include <utility>
#include <vector>

namespace vellums {
namespace {

using text::decimal;

struct Found {
    std::vector<std::int32_t> ids; // to be deleted
    std::size_t total = 0;
};

Found findDuplicates(Connection& connection, const std::u16string& table)
{
    Found found;
    std::u16string previous; // the digest of the row before, if it had one
    const auto rows = connection.query(u"SELECT ID, VLMD5 FROM [" + table + u"] ORDER BY VLMD5 ASC, VLDATE");
    while (rows->next()) {
        ++found.total;
        const auto* id = std::get_if<std::int32_t>(&rows->value(0));
        std::u16string digest = textOf(rows->value(1));
        if (id != nullptr && !digest.empty() && digest == previous)
            found.ids.push_back(*id);
        previous = std::move(digest);
    }
    return found;
}

std::u16string twoDecimals(double value)
{
    char digits[64];
    const int length = std::snprintf(digits, sizeof digits, "%.2f", value);
    return std::u16string(digits, digits + length);
}

// "2 duplicates removed from total 3 records (66.67%)."
std::u16string duplicatesText(const Notebook& notebook, std::size_t removed, std::size_t total)
{
    const std::u16string n = decimal(static_cast<std::int64_t>(removed));
    const std::u16string t = decimal(static_cast<std::int64_t>(total));
    const std::u16string share =
        twoDecimals(static_cast<double>(removed) * 100.0 / static_cast<double>(total));
    return notebook.say(n + u" duplicate" + (removed >= 2 ? u"s" : u"") + u" removed from total " + t +
            u" records (" + share + u"%).",
        u"已从 " + t + u" 条记录中删除 " + n + u" 条重复项 (" + share + u"%)");
}

} // namespace

Duplicates delDupRec(const Notebook& notebook, const BulkUser& user)
{
    Found found;
    try {
        found = findDuplicates(*notebook.connect(), notebook.dbTable);
    } catch (const ProviderError& e) {
        notebook.status.failed(u"delDupRec - " + notebook.dbTable + u" (" + e.description + u")");
        return {};
    }
    Duplicates result;
    result.total = found.total;
    const ChangedRecords deleted = deleteRecords(notebook, found.ids, user, SafetyCopy::Always);
    result.done = deleted.whole();
    result.removed = deleted.ids.size();
    result.withoutCopy = deleted.result.withoutCopy;
    if (deleted.result.failed())
        notebook.status.failed(u"delDupRec - " +
            (result.withoutCopy.empty()
                    ? notebook.dbTable
                    : notebook.say(u"The duplicates are left in place", u"未删除重复项")) +
            u" (" + deleted.result.reason(notebook) + u")");
    if (result.removed > 0)
        notebook.status.done(duplicatesText(notebook, result.removed, result.total));
    return result;
}

} // namespace vellums
