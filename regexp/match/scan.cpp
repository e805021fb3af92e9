// A literal is looked for by two of its units, the rarest by what is common in texts: eight places are
// compared with both at their distances at once, and only where both fit is the whole literal compared. Two
// units in place of one leave hardly any false alarms. Without regard to case a unit serves only if its two
// forms differ in one bit: setting that bit in the text makes one comparison do for both. A literal without
// any such unit makes the scan unusable, and the search takes another way.
//
// The comparison gives two bits for each unit (_mm_movemask_epi8 counts bytes); hence the halving in
// firstLane, and the double `bits &= bits - 1`, which removes one unit.
#include "regexp/match/scan.h"

#include "regexp/parse/literals.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cassert>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace vellums::regexp {
namespace {

constexpr std::size_t kLanes = 8;

#ifdef __SSE2__

__m128i load(std::u16string_view text, std::size_t place)
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + place));
}

__m128i spread(std::uint32_t value)
{
    return _mm_set1_epi16(static_cast<short>(value));
}

// Two bits for each unit.
unsigned bitsOf(__m128i lanes)
{
    return static_cast<unsigned>(_mm_movemask_epi8(lanes));
}

std::size_t firstLane(unsigned bits)
{
    return static_cast<std::size_t>(std::countr_zero(bits)) / 2;
}

#endif

} // namespace

std::size_t findLineEnd(std::u16string_view text, std::size_t from)
{
    std::size_t place = from;
#ifdef __SSE2__
    const __m128i wanted = spread(u'\r');
    for (; place + kLanes < text.size(); place += kLanes) {
        unsigned bits = bitsOf(_mm_cmpeq_epi16(load(text, place), wanted));
        for (; bits != 0; bits &= bits - 1, bits &= bits - 1)
            if (text[place + firstLane(bits) + 1] == u'\n')
                return place + firstLane(bits);
    }
#endif
    for (; place + 1 < text.size(); ++place)
        if (text[place] == u'\r' && text[place + 1] == u'\n')
            return place;
    return text.size();
}

LiteralScan::LiteralScan(std::vector<std::u16string> literals, bool ignoreCase)
    : literals_(std::move(literals))
    , fold_(ignoreCase ? foldTable() : nullptr)
{
    for (const std::u16string& literal : literals_) {
        assert(!literal.empty());
        usable_ = usable_ && addProbe(literal);
    }
    usable_ = usable_ && !literals_.empty();
}

// The two rarest units whose cases differ in one bit at most.
bool LiteralScan::addProbe(const std::u16string& literal)
{
    struct Candidate {
        int common;
        std::uint32_t offset;
        std::uint16_t value;
        std::uint16_t bits;
    };
    std::vector<Candidate> candidates;
    for (std::uint32_t i = 0; i < literal.size(); ++i) {
        const auto same = fold_ != nullptr ? sameFolded(literal[i]) : std::vector<char16_t>{literal[i]};
        const std::uint16_t bits = static_cast<std::uint16_t>(same.front() ^ same.back());
        if (same.size() <= 2 && std::popcount(bits) <= 1)
            candidates.push_back(
                {commonness(literal[i]), i, static_cast<std::uint16_t>(same.front() | bits), bits});
    }
    if (candidates.empty())
        return false;
    std::stable_sort(candidates.begin(), candidates.end(),
        [](const Candidate& a, const Candidate& b) { return a.common < b.common; });
    const Candidate& a = candidates[0];
    const Candidate& b = candidates[candidates.size() > 1 ? 1 : 0];
    probes_.push_back({{a.offset, b.offset}, {a.value, b.value}, {a.bits, b.bits}});
    reach_ = std::max<std::size_t>(reach_, std::max(a.offset, b.offset));
    return true;
}

std::size_t LiteralScan::lengthAt(std::u16string_view text, std::size_t place) const
{
    for (const std::u16string& literal : literals_) {
        if (literal.size() > text.size() - place)
            continue;
        std::size_t i = 0;
        if (fold_ == nullptr)
            while (i < literal.size() && text[place + i] == literal[i])
                ++i;
        else
            while (i < literal.size() && fold_[text[place + i]] == literal[i])
                ++i;
        if (i == literal.size())
            return i;
    }
    return 0;
}

#ifdef __SSE2__

// A probe as the processor compares it with the text, eight places at once.
struct LiteralScan::Lanes {
    Lanes() = default;
    Lanes(std::u16string_view text, const Probe& probe)
        : start{text.data() + probe.offset[0], text.data() + probe.offset[1]}
        , value{spread(probe.value[0]), spread(probe.value[1])}
        , bits{spread(probe.bits[0]), spread(probe.bits[1])}
    {
    }

    __m128i fits(std::size_t place) const { return _mm_and_si128(fits(0, place), fits(1, place)); }

    __m128i fits(std::size_t k, std::size_t place) const
    {
        const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(start[k] + place));
        return _mm_cmpeq_epi16(_mm_or_si128(units, bits[k]), value[k]);
    }

    const char16_t* start[2];
    __m128i value[2];
    __m128i bits[2];
};

// The first of the lanes at `place` where a literal stands. A call of its own would take what is compared out
// of the registers, in the loops below, and cost a quarter of their time.
[[gnu::always_inline]] inline LiteralScan::Hit LiteralScan::hitIn(
    std::u16string_view text, std::size_t place, unsigned bits) const
{
    for (; bits != 0; bits &= bits - 1, bits &= bits - 1)
        if (const std::size_t length = lengthAt(text, place + firstLane(bits)); length != 0)
            return {place + firstLane(bits), length};
    return {};
}

// Passes over places that do not have both units of the only probe, sixteen at a time.
LiteralScan::Hit LiteralScan::nextOfOne(std::u16string_view text, std::size_t place) const
{
    const Lanes lanes(text, probes_[0]);
    for (; place + 2 * kLanes + reach_ <= text.size(); place += 2 * kLanes) {
        const __m128i a = lanes.fits(place);
        const __m128i b = lanes.fits(place + kLanes);
        if (bitsOf(_mm_or_si128(a, b)) == 0)
            continue;
        if (const Hit hit = hitIn(text, place, bitsOf(a) | bitsOf(b) << 16); hit.length != 0)
            return hit;
    }
    return {place, 0};
}

// Leftmost place first, whichever literal it is. lengthAt() then prefers the first in order, as alternatives
// do.
LiteralScan::Hit LiteralScan::nextOfSeveral(std::u16string_view text, std::size_t place) const
{
    std::array<Lanes, kMostProbes> lanes;
    const std::size_t count = probes_.size();
    for (std::size_t i = 0; i < count; ++i)
        lanes[i] = Lanes(text, probes_[i]);
    for (; place + kLanes + reach_ <= text.size(); place += kLanes) {
        __m128i all = _mm_setzero_si128();
        for (std::size_t i = 0; i < count; ++i)
            all = _mm_or_si128(all, lanes[i].fits(place));
        if (const Hit hit = hitIn(text, place, bitsOf(all)); hit.length != 0)
            return hit;
    }
    return {place, 0};
}

#endif

LiteralScan::Hit LiteralScan::next(std::u16string_view text, std::size_t from) const
{
    Hit hit{from, 0};
#ifdef __SSE2__
    if (probes_.size() == 1)
        hit = nextOfOne(text, hit.place);
    if (hit.length == 0 && probes_.size() <= kMostProbes)
        hit = nextOfSeveral(text, hit.place);
#endif
    if (hit.length != 0)
        return hit;
    for (std::size_t place = hit.place; place < text.size(); ++place)
        if (const std::size_t length = lengthAt(text, place); length != 0)
            return {place, length};
    return {};
}

UnitScan::UnitScan(const UnitSet& set)
    : has_(kUnits)
{
    for (const UnitRange& range : set.ranges())
        std::fill(has_.begin() + range.first, has_.begin() + range.last + 1, std::uint8_t{1});
    if (set.ranges().size() <= kMostRanges)
        ranges_ = set.ranges();
}

std::size_t UnitScan::next(std::u16string_view text, std::size_t from) const
{
    std::size_t place = from;
    // Where the set is common it is met at once.
    for (const std::size_t end = std::min(text.size(), from + kLanes); place < end; ++place)
        if (has_[text[place]] != 0)
            return place;
#ifdef __SSE2__
    if (!ranges_.empty()) {
        // A unit lies in a range if, counted from its first one, it is not above the length.
        __m128i first[kMostRanges];
        __m128i length[kMostRanges];
        for (std::size_t i = 0; i < kMostRanges; ++i) {
            const UnitRange& range = ranges_[std::min(i, ranges_.size() - 1)];
            first[i] = spread(range.first);
            length[i] = spread(range.last - range.first);
        }
        for (; place + kLanes <= text.size(); place += kLanes) {
            const __m128i units = load(text, place);
            __m128i met = _mm_setzero_si128();
            for (std::size_t i = 0; i < ranges_.size(); ++i)
                met = _mm_or_si128(met,
                    _mm_cmpeq_epi16(
                        _mm_subs_epu16(_mm_sub_epi16(units, first[i]), length[i]), _mm_setzero_si128()));
            if (const unsigned bits = bitsOf(met); bits != 0)
                return place + firstLane(bits);
        }
    }
#endif
    for (; place < text.size(); ++place)
        if (has_[text[place]] != 0)
            return place;
    return kNowhere;
}

} // namespace vellums::regexp
