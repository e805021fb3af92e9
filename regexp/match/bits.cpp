#include "regexp/match/bits.h"

#include <algorithm>
#include <iterator>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace vellums::regexp {
namespace {

std::uint64_t lowest(std::size_t count)
{
    return count < kRow ? (std::uint64_t{1} << count) - 1 : ~std::uint64_t{0};
}

} // namespace

UnitBits::UnitBits(const UnitSet& set)
    : ranges_(set.ranges())
    , complement_(false)
{
    const UnitSet rest = set.complement();
    if (rest.ranges().size() < ranges_.size()) {
        ranges_ = rest.ranges();
        complement_ = true;
    }
    if (ranges_.size() <= kMostRanges) {
        for (const UnitRange& range : ranges_) {
            Lanes& lanes = lanes_.emplace_back();
            std::fill(std::begin(lanes.first), std::end(lanes.first), static_cast<char16_t>(range.first));
            std::fill(std::begin(lanes.length), std::end(lanes.length),
                static_cast<char16_t>(range.last - range.first));
        }
        return;
    }
    listed_.resize(kUnits);
    for (const UnitRange& range : ranges_)
        std::fill(listed_.begin() + range.first, listed_.begin() + range.last + 1, std::uint8_t{1});
}

bool UnitBits::listed(char16_t unit) const
{
    if (!listed_.empty())
        return listed_[unit] != 0;
    return std::any_of(ranges_.begin(), ranges_.end(),
        [unit](const UnitRange& range) { return unit >= range.first && unit <= range.last; });
}

#ifdef __SSE2__

// Sixteen units give sixteen bits: each comparison leaves 0 or -1 in a lane of 16 bits, packing turns them
// into bytes, and the sign of each byte is a bit of the row.
std::uint64_t UnitBits::wholeRow(const char16_t* units) const
{
    const auto load = [](const void* lanes) { return _mm_loadu_si128(static_cast<const __m128i*>(lanes)); };
    const __m128i none = _mm_setzero_si128();
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < kRow; i += 2 * kLanes) {
        const __m128i left = load(units + i);
        const __m128i right = load(units + i + kLanes);
        __m128i leftMet = none;
        __m128i rightMet = none;
        for (const Lanes& range : lanes_) {
            // A unit lies in a range if, counted from its first one, it is not above the length.
            const __m128i first = load(range.first);
            const __m128i length = load(range.length);
            const __m128i leftAbove = _mm_subs_epu16(_mm_sub_epi16(left, first), length);
            const __m128i rightAbove = _mm_subs_epu16(_mm_sub_epi16(right, first), length);
            leftMet = _mm_or_si128(leftMet, _mm_cmpeq_epi16(leftAbove, none));
            rightMet = _mm_or_si128(rightMet, _mm_cmpeq_epi16(rightAbove, none));
        }
        const int both = _mm_movemask_epi8(_mm_packs_epi16(leftMet, rightMet));
        bits |= std::uint64_t{static_cast<unsigned>(both)} << i;
    }
    return bits;
}

#endif

std::uint64_t UnitBits::at(std::u16string_view text, std::size_t from) const
{
    const std::size_t count = std::min(kRow, text.size() - from);
    std::uint64_t bits = 0;
#ifdef __SSE2__
    if (listed_.empty() && count == kRow) {
        bits = wholeRow(text.data() + from);
        return complement_ ? ~bits : bits;
    }
#endif
    for (std::size_t i = 0; i < count; ++i)
        bits |= std::uint64_t{listed(text[from + i])} << i;
    return (complement_ ? ~bits : bits) & lowest(count);
}

} // namespace vellums::regexp
