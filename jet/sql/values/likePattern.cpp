// Why a piece may be taken at its leftmost place: what lies behind it is then the longest rest that it can
// leave, and a later piece that fits into a shorter rest fits into a longer one too. So nothing is ever
// tried twice over, and a match costs at most the length of the text times that of the longest piece.
//
// Most texts do not hold the piece at all, so the search for it is what counts. Of its units the two that
// are rarest and cheapest to test are looked for at sixteen bytes of text a step; a place is looked at
// closely only where both stand where they should. Folding does not touch the text: each unit that folds to
// the wanted one is a test of its own, and two that differ in one bit, as most capital and small letters do,
// share one, in which that bit is set on both sides:
//
//   (text | 20) == 'a'   for a and A
//
// A text of one byte for each unit is searched as it is, as bytes. It cannot hold a unit above FF, so a
// pattern that asks for one that nothing below folds to is answered without looking.
#include "jet/sql/values/likePattern.h"

#include "jet/sql/values/caseFold.h"

#include <algorithm>
#include <bit>
#include <cassert>
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

// Sixteen bytes of text, compared at once; the compiler uses the machine's vector instructions.
template <typename Unit>
struct Vector {
    using Type [[gnu::vector_size(16)]] = Unit;
};
template <typename Unit>
using Lanes = typename Vector<Unit>::Type;
template <typename Unit>
constexpr std::size_t kLanes = 16 / sizeof(Unit);

template <typename Unit>
bool anyLane(const Lanes<Unit>& lanes)
{
    std::array<std::uint64_t, 2> halves;
    std::memcpy(halves.data(), &lanes, sizeof halves);
    return (halves[0] | halves[1]) != 0;
}

// The tests of an anchor, each in all lanes.
template <typename Unit>
class AnchorScan {
public:
    explicit AnchorScan(const LikePattern::Anchor& anchor)
        : offset_(anchor.offset)
        , count_(anchor.count)
    {
        for (std::size_t i = 0; i < count_; ++i) {
            masks_[i] = Lanes<Unit>{} + static_cast<Unit>(anchor.masks[i]);
            values_[i] = Lanes<Unit>{} + static_cast<Unit>(anchor.values[i]);
        }
    }

    // Sets all bits of the lanes where the piece may begin. The text reaches far enough. (Vectors are not
    // given back: not every machine can.)
    template <typename Units>
    void find(const Units& text, std::size_t at, Lanes<Unit>& found) const
    {
        Lanes<Unit> lanes;
        std::memcpy(&lanes, text.data + (at + offset_) * sizeof(Unit), sizeof lanes);
        found = (Lanes<Unit>)((lanes | masks_[0]) == values_[0]);
        for (std::size_t i = 1; i < count_; ++i)
            found |= (Lanes<Unit>)((lanes | masks_[i]) == values_[i]);
    }

private:
    std::size_t offset_;
    std::size_t count_;
    std::array<Lanes<Unit>, 4> masks_{};
    std::array<Lanes<Unit>, 4> values_{};
};

// How often a unit is met in texts, roughly: the scan looks for the rarest. Letters by their frequency in
// English, blanks most of all; digits and signs count as seldom, and what is outside of ASCII as never met.
int commonness(char16_t folded)
{
    constexpr std::u16string_view kByFrequency = u"ZQXJKVBPYGFWMUCLDRHSNIOATE ";
    const std::size_t place = kByFrequency.find(folded);
    if (place != std::u16string_view::npos)
        return 10 + static_cast<int>(place);
    return folded < 0x80 ? 12 : 0;
}

// Puts the units into as few tests as possible: two that differ in one bit share one. False: too many.
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
        anchor.masks[anchor.count] = static_cast<char16_t>(mask);
        anchor.values[anchor.count] = static_cast<char16_t>(unit | mask);
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
        if (!units.empty() && makeTests(std::move(units), anchor))
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

// `[]` stands for nothing at all, so a `%` behind it still is at the start, and one in front of it at the
// end.
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

// Reads what begins with the bracket at `open`; gives the place behind it. A `!` or `^` alone is itself, a
// range that runs backwards is empty, and a list of one unit becomes that unit, which the scan can look for.
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
    assert(at + piece.elements.size() <= text.size);
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
    assert(from <= end && end <= text.size);
    if (end - from < piece.elements.size())
        return kNotFound;
    const std::size_t behind = end - piece.elements.size() + 1; // behind the last place
    const std::array<Anchor, 2>& anchors = sizeof(Unit) == 1 ? piece.narrow : piece.wide;
    std::size_t at = from;
    if (anchors[0].count != 0 && behind - from >= kStep) {
        const AnchorScan<Unit> one(anchors[0]);
        const AnchorScan<Unit> two(anchors[anchors[1].count != 0 ? 1 : 0]);
        // The last step may go over places again that were looked at before: so all are.
        for (bool last = false; !last; at += kStep) {
            last = at + kStep >= behind;
            at = last ? behind - kStep : at;
            Lanes<Unit> found;
            one.find(text, at, found);
            if (!anyLane<Unit>(found))
                continue;
            Lanes<Unit> both;
            two.find(text, at, both);
            both &= found;
            if (!anyLane<Unit>(both))
                continue;
            for (std::size_t lane = 0; lane < kStep; ++lane)
                if (both[lane] != 0 && pieceAt(piece, text, at + lane))
                    return at + lane;
        }
        return kNotFound;
    }
    for (; at < behind; ++at)
        if (pieceAt(piece, text, at))
            return at;
    return kNotFound;
}

// The pieces at the ends are tied there first, where there is no % at that end; what is left between them is
// for the others. A text that is shorter than all pieces together is refused before, so they cannot overlap.
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
