#include "jet/sql/likePattern.h"

#include "jet/sql/caseFold.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace vellums::jet::sql {

namespace {

constexpr std::size_t kNotFound = static_cast<std::size_t>(-1);

// A text of one byte per character.
struct NarrowUnits {
    using Unit = std::uint8_t;
    const std::byte* data;
    std::size_t size;

    char16_t operator[](std::size_t i) const { return static_cast<char16_t>(data[i]); }
};

// A text in UTF-16, not necessarily aligned.
struct WideUnits {
    using Unit = std::uint16_t;
    const std::byte* data;
    std::size_t size;

    char16_t operator[](std::size_t i) const
    {
        char16_t unit = 0;
        std::memcpy(&unit, data + 2 * i, 2);
        return unit;
    }
};

template <typename Unit>
constexpr std::size_t kLanes = 8 / sizeof(Unit);
template <typename Unit>
constexpr int kLaneBits = 8 * sizeof(Unit);
// 1 in every lane.
template <typename Unit>
constexpr std::uint64_t kOnes = ~std::uint64_t{0} / static_cast<Unit>(~Unit{0});

template <typename Units>
std::uint64_t loadLanes(const Units& text, std::size_t at)
{
    std::uint64_t lanes = 0;
    std::memcpy(&lanes, text.data + at * sizeof(typename Units::Unit), sizeof lanes);
    return lanes;
}

// The top bit of each lane that passes one of the tests. A lane above a passing one may be marked too;
// what is found is looked at closely anyway.
template <typename Unit>
inline std::uint64_t hits(std::uint64_t lanes, const LikePattern::Anchor& anchor)
{
    constexpr std::uint64_t kTops = kOnes<Unit> << (kLaneBits<Unit> - 1);
    std::uint64_t found = 0;
    for (std::size_t i = 0; i < anchor.count; ++i) {
        const std::uint64_t rest = (lanes | anchor.masks[i]) ^ anchor.values[i];
        found |= (rest - kOnes<Unit>)&~rest & kTops;
    }
    return found;
}

// How often a unit is met in texts, roughly: the scan looks for the rarest.
int commonness(char16_t folded)
{
    constexpr std::u16string_view kByFrequency = u"ZQXJKVBPYGFWMUCLDRHSNIOATE ";
    const std::size_t place = kByFrequency.find(folded);
    if (place != std::u16string_view::npos)
        return 10 + static_cast<int>(place);
    return folded < 0x80 ? 12 : 0;
}

// Puts the units into as few tests as possible: two that differ in one bit share one. False: too many.
template <typename Unit>
bool makeTests(std::vector<char16_t> units, LikePattern::Anchor& anchor)
{
    while (!units.empty()) {
        if (anchor.count == anchor.masks.size())
            return false;
        const char16_t unit = units.back();
        units.pop_back();
        const auto partner = std::find_if(units.begin(), units.end(),
            [&](char16_t other) { return std::popcount(static_cast<unsigned>(unit ^ other)) == 1; });
        const unsigned mask = partner == units.end() ? 0u : static_cast<unsigned>(unit ^ *partner);
        if (partner != units.end())
            units.erase(partner);
        anchor.masks[anchor.count] = mask * kOnes<Unit>;
        anchor.values[anchor.count] = (unit | mask) * kOnes<Unit>;
        ++anchor.count;
    }
    return true;
}

// Chooses the two units that cost least to look for.
template <typename Unit>
std::array<LikePattern::Anchor, 2> chooseAnchors(const LikePattern::Piece& piece)
{
    struct Choice {
        int cost;
        LikePattern::Anchor anchor;
    };
    std::vector<Choice> choices;
    for (std::size_t i = 0; i < piece.elements.size(); ++i) {
        const LikePattern::Element& element = piece.elements[i];
        if (element.kind != LikePattern::Element::Kind::Unit)
            continue;
        std::vector<char16_t> units = foldedAlike(element.unit);
        if constexpr (sizeof(Unit) == 1)
            std::erase_if(units, [](char16_t unit) { return unit > 0xFF; });
        LikePattern::Anchor anchor;
        anchor.offset = i;
        if (!units.empty() && makeTests<Unit>(std::move(units), anchor))
            choices.push_back({commonness(element.unit) + 6 * static_cast<int>(anchor.count), anchor});
    }
    std::stable_sort(
        choices.begin(), choices.end(), [](const Choice& a, const Choice& b) { return a.cost < b.cost; });
    std::array<LikePattern::Anchor, 2> chosen;
    for (std::size_t i = 0; i < std::min(choices.size(), chosen.size()); ++i)
        chosen[i] = choices[i].anchor;
    return chosen;
}

bool inList(const LikePattern::List& list, char16_t folded)
{
    for (const LikePattern::Range& range : list.ranges)
        if (folded >= range.first && folded <= range.last)
            return !list.negated;
    return list.negated;
}

} // namespace

LikePattern::LikePattern(std::u16string_view pattern)
{
    Piece piece;
    const auto closePiece = [&] {
        if (!piece.elements.empty())
            finishPiece(piece);
        piece = {};
    };
    bool first = true; // nothing but `[]` was met so far
    for (std::size_t i = 0; i < pattern.size();) {
        const char16_t c = pattern[i];
        if (c == u'[') {
            const std::size_t before = piece.elements.size();
            i = readList(pattern, i, piece);
            first = first && piece.elements.size() == before;
            openEnd_ = openEnd_ && piece.elements.size() == before;
            continue;
        }
        ++i;
        if (c == u'%') {
            hasPercent_ = true;
            openStart_ = openStart_ || first;
            openEnd_ = true;
            closePiece();
        } else {
            openEnd_ = false;
            if (c == u'_')
                piece.elements.push_back({Element::Kind::Any});
            else
                piece.elements.push_back({Element::Kind::Unit, foldTable()[c]});
        }
        first = false;
    }
    closePiece();
}

// Reads what begins with the bracket at `open`; gives the place behind it.
std::size_t LikePattern::readList(std::u16string_view pattern, std::size_t open, Piece& piece)
{
    const FoldTable& fold = foldTable();
    const std::size_t close = pattern.find(u']', open);
    if (close == std::u16string_view::npos) {
        piece.elements.push_back({Element::Kind::Unit, u'['});
        return open + 1;
    }
    std::u16string_view inside = pattern.substr(open + 1, close - open - 1);
    if (inside.empty())
        return close + 1;
    List list;
    if (inside.size() > 1 && (inside.front() == u'!' || inside.front() == u'^')) {
        list.negated = true;
        inside.remove_prefix(1);
    }
    for (std::size_t i = 0; i < inside.size();) {
        const bool isRange = i + 2 < inside.size() && inside[i + 1] == u'-';
        const char16_t first = fold[inside[i]];
        const char16_t last = fold[inside[isRange ? i + 2 : i]];
        if (first <= last)
            list.ranges.push_back({first, last});
        i += isRange ? 3 : 1;
    }
    if (!list.negated && list.ranges.size() == 1 && list.ranges[0].first == list.ranges[0].last) {
        piece.elements.push_back({Element::Kind::Unit, list.ranges[0].first});
    } else {
        piece.elements.push_back({Element::Kind::List, 0, lists_.size()});
        lists_.push_back(std::move(list));
    }
    return close + 1;
}

void LikePattern::finishPiece(Piece& piece)
{
    for (const Element& element : piece.elements) {
        if (element.kind != Element::Kind::Unit)
            continue;
        const std::vector<char16_t> units = foldedAlike(element.unit);
        piece.fitsNarrow = piece.fitsNarrow && units.front() <= 0xFF;
    }
    piece.narrow = chooseAnchors<std::uint8_t>(piece);
    piece.wide = chooseAnchors<std::uint16_t>(piece);
    shortest_ += piece.elements.size();
    fitsNarrow_ = fitsNarrow_ && piece.fitsNarrow;
    pieces_.push_back(std::move(piece));
}

template <typename Units>
bool LikePattern::pieceAt(const Piece& piece, const Units& text, std::size_t at) const
{
    const FoldTable& fold = foldTable();
    for (const Element& element : piece.elements) {
        const char16_t unit = fold[text[at++]];
        if (element.kind == Element::Kind::Unit
                ? unit != element.unit
                : element.kind == Element::Kind::List && !inList(lists_[element.list], unit))
            return false;
    }
    return true;
}

// The leftmost place of the piece inside [from, end), or kNotFound.
template <typename Units>
std::size_t LikePattern::findPiece(
    const Piece& piece, const Units& text, std::size_t from, std::size_t end) const
{
    using Unit = typename Units::Unit;
    constexpr std::size_t kStep = kLanes<Unit>;
    if (end - from < piece.elements.size())
        return kNotFound;
    const std::size_t behind = end - piece.elements.size() + 1; // behind the last place
    const std::array<Anchor, 2>& anchors = sizeof(Unit) == 1 ? piece.narrow : piece.wide;
    const Anchor one = anchors[0];
    const Anchor two = anchors[1].count != 0 ? anchors[1] : anchors[0];
    std::size_t at = from;
    if (one.count != 0) {
        // Both words of lanes lie inside the text while kStep places are left.
        for (; at + kStep <= behind; at += kStep) {
            std::uint64_t found = hits<Unit>(loadLanes(text, at + one.offset), one);
            if (found == 0)
                continue;
            found &= hits<Unit>(loadLanes(text, at + two.offset), two);
            for (; found != 0; found &= found - 1) {
                const std::size_t place =
                    at + static_cast<std::size_t>(std::countr_zero(found)) / kLaneBits<Unit>;
                if (pieceAt(piece, text, place))
                    return place;
            }
        }
    }
    for (; at < behind; ++at)
        if (pieceAt(piece, text, at))
            return at;
    return kNotFound;
}

template <typename Units>
bool LikePattern::matchUnits(const Units& text) const
{
    if (text.size < shortest_)
        return false;
    if (pieces_.empty())
        return hasPercent_ || text.size == 0;
    if (!hasPercent_)
        return text.size == shortest_ && pieceAt(pieces_.front(), text, 0);
    std::size_t first = 0;
    std::size_t last = pieces_.size();
    std::size_t at = 0;
    std::size_t end = text.size;
    if (!openStart_) {
        if (!pieceAt(pieces_[first], text, 0))
            return false;
        at = pieces_[first++].elements.size();
    }
    if (!openEnd_ && first < last) {
        const Piece& piece = pieces_[--last];
        end -= piece.elements.size();
        if (!pieceAt(piece, text, end))
            return false;
    }
    for (; first < last; ++first) {
        const std::size_t place = findPiece(pieces_[first], text, at, end);
        if (place == kNotFound)
            return false;
        at = place + pieces_[first].elements.size();
    }
    return true;
}

bool LikePattern::matches(std::u16string_view text) const
{
    return matchUnits(WideUnits{reinterpret_cast<const std::byte*>(text.data()), text.size()});
}

bool LikePattern::matches(const StoredText& text) const
{
    if (!text.latin)
        return matchUnits(WideUnits{text.bytes.data(), text.bytes.size() / 2});
    return fitsNarrow_ && matchUnits(NarrowUnits{text.bytes.data(), text.bytes.size()});
}

} // namespace vellums::jet::sql
