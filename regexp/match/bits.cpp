#include "regexp/match/bits.h"

#include <algorithm>
#include <cassert>
#include <iterator>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace vellums::regexp {

#ifdef __SSE2__

UnitBits::UnitBits(const UnitSet& set)
{
    const UnitSet rest = set.complement();
    complement_ = rest.ranges().size() < set.ranges().size();
    const std::vector<UnitRange>& ranges = complement_ ? rest.ranges() : set.ranges();
    usable_ = ranges.size() <= kMostRanges;
    if (!usable_)
        return;
    for (const UnitRange& range : ranges) {
        Lanes& lanes = lanes_.emplace_back();
        std::fill(std::begin(lanes.first), std::end(lanes.first), static_cast<char16_t>(range.first));
        std::fill(std::begin(lanes.length), std::end(lanes.length),
            static_cast<char16_t>(range.last - range.first));
    }
}

// Each comparison leaves 0 or -1 in a lane of 16 bits, packing turns them into bytes, and the sign of each
// byte is a bit of the row.
unsigned UnitBits::of(const char16_t* units) const
{
    assert(usable_);
    const auto load = [](const void* lanes) { return _mm_loadu_si128(static_cast<const __m128i*>(lanes)); };
    const __m128i none = _mm_setzero_si128();
    const __m128i left = load(units);
    const __m128i right = load(units + kLanes);
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
    const auto met = static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(leftMet, rightMet)));
    return complement_ ? met ^ 0xFFFF : met;
}

#else

UnitBits::UnitBits(const UnitSet&)
    : complement_(false)
{
}

unsigned UnitBits::of(const char16_t*) const
{
    assert(usable_);
    return complement_;
}

#endif

} // namespace vellums::regexp
