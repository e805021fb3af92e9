// Texts as keys, and texts compared as their keys would be.
//
//   primary weights | 01 | diacritics | 01 01 | kana | FF | 01 | signs | 00
//
// A level says less than those in front of it, and what says nothing is left out: plain diacritics at the
// end, the kana level where there are no kana (with the FF, which separates it from signs), the signs where
// there are none (with their 01), and both together with the 01 01 in front. So `Note` is four weights, 01
// and 00. Case, width and the kind of kana have no weight at all. Hyphens, apostrophes and control
// characters are signs: they count last, by the number of weights in front of them.
//
// Descending keys are the complement of all that, 00 included, and have a 00 of their own behind it.
//
// A key of an index is bounded: 255 units, positions in two bytes, units without a place in the order
// refused. Comparison knows no such bounds; its keys are wider and never go into a file.
#include "jet/index/collation.h"

#include "jet/index/textWeights.h"

#include <algorithm>
#include <cassert>

namespace vellums::jet {
namespace {

constexpr std::size_t kKeyUnits = 255;       // code units of a text that count in an index
constexpr std::size_t kLongestTextKey = 500; // flag byte and terminator included
constexpr std::byte kSeparator{0x01};
constexpr std::byte kEnd{0x00};

std::u16string_view withoutTrailingBlanks(std::u16string_view text)
{
    const std::size_t last = text.find_last_not_of(u' ');
    return text.substr(0, last == std::u16string_view::npos ? 0 : last + 1);
}

// Orders in which the Latin letters lie as in General legacy but ideographs are numbered by lists
// of their own.
bool sharesLatinOnly(SortOrder order)
{
    return order.version == 0 && (order.lcid == 2052 || order.lcid == 1028 || order.lcid == 1041);
}

bool isSharedLatin(char16_t unit)
{
    return (unit >= u'0' && unit <= u'9') || (unit >= u'A' && unit <= u'Z') ||
        (unit >= u'a' && unit <= u'z') ||
        std::u16string_view(u" ()./_~").find(unit) != std::u16string_view::npos;
}

// Puts the four levels of a key together: primary weights, diacritics, kana details, positions of
// signs without weight.
class KeyBuilder {
public:
    // `wide`: positions take four bytes, for texts of any length, and unknown units get a weight of
    // their own behind all others. Such keys serve comparison only.
    KeyBuilder(const TextWeights& weights, bool wide)
        : weights_(weights)
        , wide_(wide)
    {
    }

    // False: the unit has no place in the sort order.
    bool add(char16_t unit)
    {
        switch (weights_.kind(unit)) {
        case WeightKind::Ignored:
            return true;
        case WeightKind::Kana:
            kana_.push_back(weights_.detail(unit));
            [[fallthrough]];
        case WeightKind::Weight:
            append(primary_, weights_.primary(unit));
            append(diacritics_, weights_.diacritics(unit));
            return true;
        case WeightKind::Modifier:
            addModifier(weights_.detail(unit));
            return true;
        case WeightKind::Punctuation:
            addSign(weights_.detail(unit));
            return true;
        case WeightKind::Unknown:
            break;
        }
        if (!wide_)
            return false;
        // Behind every other weight, in the order of the units themselves.
        const std::byte weight[] = {std::byte{0xFF}, std::byte{0xFF}, static_cast<std::byte>(unit >> 8),
            static_cast<std::byte>(unit & 0xFF)};
        append(primary_, ByteView(weight));
        diacritics_.push_back(std::byte{kPlainDiacritic});
        return true;
    }

    // The key without its terminator.
    Bytes finish()
    {
        Bytes key = std::move(primary_);
        key.push_back(kSeparator);
        while (!diacritics_.empty() && diacritics_.back() <= std::byte{kPlainDiacritic})
            diacritics_.pop_back();
        append(key, ByteView(diacritics_));
        if (kana_.empty() && signs_.empty())
            return key;
        key.insert(key.end(), 2, kSeparator);
        if (!kana_.empty()) {
            appendKana(key);
            if (!signs_.empty())
                key.push_back(std::byte{0xFF});
        }
        if (!signs_.empty()) {
            key.push_back(kSeparator);
            append(key, ByteView(signs_));
        }
        return key;
    }

private:
    // A mark in front of every weight opens the diacritics but counts for no position.
    void addModifier(std::uint8_t value)
    {
        if (diacritics_.empty()) {
            diacritics_.push_back(std::byte{value});
            leading_ = 1;
        } else {
            std::byte& last = diacritics_.back();
            last = static_cast<std::byte>(std::to_integer<unsigned>(last) + value);
        }
    }

    // The position, 06 and the sign's value. Positions count weights, not units: an expansion such as that
    // of a sharp s counts twice.
    void addSign(std::uint8_t value)
    {
        const auto place = static_cast<std::uint32_t>(7 + 4 * (diacritics_.size() - leading_));
        const std::uint32_t number = wide_ ? 0x80000000U | place : 0x8000U | place;
        for (int shift = wide_ ? 24 : 8; shift >= 0; shift -= 8)
            signs_.push_back(static_cast<std::byte>(number >> shift & 0xFF));
        signs_.push_back(std::byte{0x06});
        signs_.push_back(std::byte{value});
    }

    // Three flags of two bits to a byte, under a set top bit; small kana differ from plain ones (3), which
    // are left out at the end. What follows is the same in every key.
    void appendKana(Bytes& key)
    {
        std::vector<std::uint8_t> flags = kana_;
        while (!flags.empty() && flags.back() == 3)
            flags.pop_back();
        for (std::size_t i = 0; i < flags.size(); i += 3) {
            assert(flags[i] <= 3);
            unsigned packed = 0x80U | static_cast<unsigned>(flags[i]) << 4;
            if (i + 1 < flags.size())
                packed |= static_cast<unsigned>(flags[i + 1]) << 2;
            if (i + 2 < flags.size())
                packed |= flags[i + 2];
            key.push_back(static_cast<std::byte>(packed));
        }
        for (const unsigned value : {0xFFU, 0x02U, 0x80U, 0xFFU, 0x80U})
            key.push_back(static_cast<std::byte>(value));
    }

    const TextWeights& weights_;
    bool wide_;
    Bytes primary_;
    Bytes diacritics_;
    std::size_t leading_ = 0;
    std::vector<std::uint8_t> kana_;
    Bytes signs_;
};

// The primary weights of a text, byte by byte, without making a key.
class PrimaryStream {
public:
    PrimaryStream(std::u16string_view text, const TextWeights& weights)
        : text_(text)
        , weights_(weights)
    {
    }

    // The next byte; at the end of the text the separator that a key has there. A few weights contain
    // that value as well, so only ended() tells.
    std::byte next()
    {
        while (at_ == current_.size()) {
            if (text_.empty()) {
                ended_ = true;
                return kSeparator;
            }
            const char16_t unit = text_.front();
            text_.remove_prefix(1);
            at_ = 0;
            if (weights_.kind(unit) == WeightKind::Unknown) {
                unknown_ = {std::byte{0xFF}, std::byte{0xFF}, static_cast<std::byte>(unit >> 8),
                    static_cast<std::byte>(unit & 0xFF)};
                current_ = unknown_;
            } else {
                current_ = weights_.primary(unit);
            }
        }
        return current_[at_++];
    }
    bool ended() const { return ended_; }

private:
    std::u16string_view text_;
    const TextWeights& weights_;
    ByteView current_;
    std::size_t at_ = 0;
    bool ended_ = false;
    std::array<std::byte, 4> unknown_{};
};

} // namespace

bool canEncodeTexts(SortOrder order)
{
    return (order.lcid == 1033 && order.version <= 1) || sharesLatinOnly(order);
}

bool appendTextKey(Bytes& key, std::u16string_view text, SortOrder order, bool ascending)
{
    if (!canEncodeTexts(order))
        return false;
    text = withoutTrailingBlanks(text.substr(0, kKeyUnits));
    if (sharesLatinOnly(order) && !std::all_of(text.begin(), text.end(), isSharedLatin))
        return false;
    KeyBuilder builder(TextWeights::of(order), false);
    for (const char16_t unit : text)
        if (!builder.add(unit))
            return false;
    Bytes part = builder.finish();
    if (!ascending) {
        part.push_back(kEnd);
        for (std::byte& b : part)
            b = ~b;
    }
    part.push_back(kEnd);
    if (part.size() + 1 > kLongestTextKey)
        return false;
    append(key, ByteView(part));
    return true;
}

// Most texts differ in a primary weight, so these are compared first, from the first code unit that differs;
// the finer levels, which depend on the whole text, are looked at on a tie only. That gives what whole keys
// would give, since a unit's primary weights do not depend on its neighbours.
std::strong_ordering compareTexts(std::u16string_view a, std::u16string_view b, SortOrder order)
{
    a = withoutTrailingBlanks(a);
    b = withoutTrailingBlanks(b);
    const auto [inA, inB] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    if (inA == a.end() && inB == b.end())
        return std::strong_ordering::equal;
    const TextWeights& weights = TextWeights::of(order);
    const auto same = static_cast<std::size_t>(inA - a.begin());
    PrimaryStream streamA(a.substr(same), weights);
    PrimaryStream streamB(b.substr(same), weights);
    while (!streamA.ended() && !streamB.ended()) {
        const std::byte byteA = streamA.next();
        const std::byte byteB = streamB.next();
        if (byteA != byteB)
            return byteA <=> byteB;
    }
    return comparisonKey(a, order) <=> comparisonKey(b, order);
}

Bytes comparisonKey(std::u16string_view text, SortOrder order)
{
    KeyBuilder builder(TextWeights::of(order), true);
    for (const char16_t unit : withoutTrailingBlanks(text))
        builder.add(unit);
    Bytes key = builder.finish();
    key.push_back(kEnd);
    return key;
}

} // namespace vellums::jet
