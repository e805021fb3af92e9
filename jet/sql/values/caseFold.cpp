// Two tables of 65536 units, made at the first call. A unit folds in three steps: to its ordinary width,
// from katakana to hiragana, to its capital. The capital comes last, so that a wide small letter ends where
// the ordinary capital does. Surrogates fold to themselves.
#include "jet/sql/values/caseFold.h"

#include "text/letterCase.h"

#include <algorithm>
#include <cstdint>
#include <memory>

namespace vellums::jet::sql {

namespace {

// Half and full width katakana, from U+FF66 on, in their ordinary form.
constexpr std::u16string_view kHalfWidthKana =
    u"ヲァィゥェォャュョッーアイウエオカキクケコサシスセソタチツテトナニヌネノハヒフヘホマミムメモヤユヨラリ"
    u"ルレロワン\u3099\u309A";
// From U+FFE0 on; U+FFE7 is not assigned.
constexpr std::u16string_view kWideSigns = u"¢£¬¯¦¥₩\uFFE7│←↑→↓■○";

// From U+FF5F to U+FF65.
constexpr std::u16string_view kWidePunctuation = u"⦅⦆。「」、・";

// The vowels and consonants of Hangul; the gaps between the runs are not assigned.
char16_t halfWidthHangul(char16_t unit)
{
    if (unit == 0xFFA0)
        return 0x3164;
    if (unit <= 0xFFBE)
        return static_cast<char16_t>(unit - 0xFFA1 + 0x3131);
    const int column = unit & 7;
    if (column < 2 || unit < 0xFFC2 || unit > 0xFFDC)
        return unit;
    return static_cast<char16_t>(0x314F + (unit - 0xFFC2) / 8 * 6 + column - 2);
}

// The ordinary form of half and full width units.
char16_t ordinaryWidth(char16_t unit)
{
    if (unit == 0x3000)
        return u' ';
    if (unit >= 0xFF01 && unit <= 0xFF5E)
        return static_cast<char16_t>(unit - 0xFEE0);
    if (unit >= 0xFF5F && unit <= 0xFF65)
        return kWidePunctuation[unit - 0xFF5Fu];
    if (unit >= 0xFF66 && unit <= 0xFF9F)
        return kHalfWidthKana[unit - 0xFF66u];
    if (unit >= 0xFFA0 && unit <= 0xFFDC)
        return halfWidthHangul(unit);
    if (unit >= 0xFFE0 && unit <= 0xFFEE)
        return kWideSigns[unit - 0xFFE0u];
    return unit;
}

struct Tables {
    FoldTable fold;
    std::vector<char16_t> byFold; // all units, sorted by what they fold to
};

std::unique_ptr<Tables> makeTables()
{
    auto tables = std::make_unique<Tables>();
    for (std::uint32_t unit = 0; unit < 65536; ++unit) {
        char16_t plain = ordinaryWidth(static_cast<char16_t>(unit));
        if (plain >= 0x30A1 && plain <= 0x30F6)
            plain = static_cast<char16_t>(plain - 0x60);
        tables->fold[unit] = text::upperCase(plain);
        tables->byFold.push_back(static_cast<char16_t>(unit));
    }
    const FoldTable& fold = tables->fold;
    std::stable_sort(tables->byFold.begin(), tables->byFold.end(),
        [&](char16_t a, char16_t b) { return fold[a] < fold[b]; });
    return tables;
}

const Tables& tables()
{
    static const std::unique_ptr<const Tables> made = makeTables();
    return *made;
}

} // namespace

const FoldTable& foldTable()
{
    return tables().fold;
}

std::vector<char16_t> foldedAlike(char16_t unit)
{
    const FoldTable& fold = foldTable();
    const std::vector<char16_t>& all = tables().byFold;
    const auto [begin, end] = std::equal_range(
        all.begin(), all.end(), unit, [&](char16_t a, char16_t b) { return fold[a] < fold[b]; });
    return {begin, end};
}

} // namespace vellums::jet::sql
