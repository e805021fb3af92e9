#include "jet/catalogue/objectName.h"

#include "jet/index/collation.h"

#include <algorithm>

namespace vellums::jet {
namespace {

constexpr std::size_t kMaxNameUnits = 64;

bool startsWith(std::u16string_view name, std::u16string_view lowerPrefix)
{
    return name.size() >= lowerPrefix.size() &&
        std::equal(lowerPrefix.begin(), lowerPrefix.end(), name.begin(), [](char16_t wanted, char16_t c) {
            return (c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c) == wanted;
        });
}

// Not those signs that separate or enclose names in a statement.
bool mayStandInName(char16_t unit)
{
    return unit >= u' ' && std::u16string_view(u".![]`").find(unit) == std::u16string_view::npos;
}

[[noreturn]] void throwInvalidName(std::u16string_view name)
{
    throw Error(3125, kErrorsInCommand,
        u"'" + std::u16string(name) +
            u"' is not a valid name. Make sure that it does not include invalid characters or punctuation "
            u"and "
            u"that it is not too long.");
}

} // namespace

std::u16string checkedName(std::u16string_view name)
{
    const std::size_t last = name.find_last_not_of(u' ');
    const std::u16string_view kept = name.substr(0, last == std::u16string_view::npos ? 0 : last + 1);
    if (kept.empty() || kept.size() > kMaxNameUnits || kept.front() == u' ' ||
        !std::all_of(kept.begin(), kept.end(), mayStandInName))
        throwInvalidName(name);
    return std::u16string(kept);
}

std::u16string checkedTableName(std::u16string_view name, SortOrder order)
{
    std::u16string kept = checkedName(name);
    if (startsWith(kept, u"msys") || kept.front() == u'~')
        throwInvalidName(name);
    // The name goes into an index of the catalogue, so a key must exist for it.
    Bytes key;
    if (!appendTextKey(key, kept, order, true))
        throwUnsupported(u"The name '" + kept +
            u"' cannot be used in this database: its sort order is not known to this engine for all "
            u"characters "
            u"of the name.");
    return kept;
}

bool isSystemName(std::u16string_view name)
{
    return startsWith(name, u"msys") || startsWith(name, u"usys") || startsWith(name, u"~");
}

} // namespace vellums::jet
