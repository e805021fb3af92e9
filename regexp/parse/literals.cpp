// Two questions are asked of a node. exact(): which texts can it match, all of them, if they are few? And
// needed(): of which texts is one part of every match? In a sequence, neighbours with exact answers are
// joined into ever longer texts; where that breaks off, the joined texts and what the other children need
// compete (worth), for one set of texts is all that is scanned for. Anything uncertain is answered with "not
// known", which costs time in the search and never a match.
//
// The answers stay small: at most kMostTexts texts, classes of at most kMostLetters letters, and no descent
// below kDeepest, so the work grows with the length of the pattern alone.
#include "regexp/parse/literals.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

namespace vellums::regexp {
namespace {

using Texts = std::vector<std::u16string>;

constexpr std::size_t kMostTexts = 12;
constexpr std::size_t kMostLetters = 4; // in a class
constexpr std::size_t kLongest = 100000;
constexpr std::size_t kLongEnough = 50; // what is longer is found no sooner
constexpr int kDeepest = 100;

// The longer and the rarer, the better.
int worth(const Texts& texts)
{
    constexpr int kPerUnit = 10;
    int least = texts.empty() ? 0 : 1000;
    for (const std::u16string& text : texts) {
        int value = 0;
        for (const char16_t unit : text)
            value += std::max(1, kPerUnit - commonness(unit) / 8);
        least = std::min(least, value);
    }
    return least - 2 * static_cast<int>(texts.size());
}

class Finder {
public:
    explicit Finder(const Tree& tree)
        : tree_(tree)
    {
    }

    // All texts that the node can match, in order of preference; nothing when they are too many.
    std::optional<Texts> exact(NodeNo number, int depth) const
    {
        const Node& node = tree_.nodes[number];
        if (depth > kDeepest)
            return {};
        switch (node.kind) {
        case NodeKind::Unit:
            return letters(tree_.sets[node.set]);
        case NodeKind::Sequence: {
            std::optional<Texts> all = Texts{u""};
            for (const NodeNo child : node.children)
                if (all)
                    all = joined(std::move(*all), exact(child, depth + 1));
            return all;
        }
        case NodeKind::Either:
            return anyOf(node, depth, [this](NodeNo child, int d) { return exact(child, d); });
        case NodeKind::Group:
            return exact(node.children[0], depth + 1);
        default:
            return {};
        }
    }

    // Texts one of which is part of every match of the node. A node that takes at least one unit goes through
    // each of its repeats once at least, so what the repeated node needs is needed.
    std::optional<Texts> needed(NodeNo number, int depth) const
    {
        const Node& node = tree_.nodes[number];
        if (depth > kDeepest || node.minLength == 0)
            return {};
        switch (node.kind) {
        case NodeKind::Unit:
            return exact(number, depth);
        case NodeKind::Sequence:
            return neededInSequence(node, depth);
        case NodeKind::Either:
            return anyOf(node, depth, [this](NodeNo child, int d) { return needed(child, d); });
        case NodeKind::Group:
        case NodeKind::Repeat:
            return needed(node.children[0], depth + 1);
        default:
            return {};
        }
    }

private:
    // Folded texts stand for all units of a folded form, so without regard to case a class serves only if it
    // has all of them.
    std::optional<Texts> letters(const UnitSet& set) const
    {
        Texts result;
        std::size_t units = 0;
        for (const UnitRange& range : set.ranges()) {
            for (std::uint32_t i = range.first; i <= range.last; ++i) {
                const char16_t unit = static_cast<char16_t>(i);
                const std::u16string letter(1, tree_.ignoreCase ? folded(unit) : unit);
                if (std::find(result.begin(), result.end(), letter) != result.end())
                    continue;
                if (result.size() == kMostLetters)
                    return {};
                units += tree_.ignoreCase ? sameFolded(unit).size() : 1;
                result.push_back(letter);
            }
        }
        if (units != set.size() || result.empty())
            return {};
        return result;
    }

    static std::optional<Texts> joined(Texts left, const std::optional<Texts>& right)
    {
        if (!right || left.size() * right->size() > kMostTexts)
            return {};
        if (right->size() == 1 && left.size() == 1 && left[0].size() + right->front().size() <= kLongest) {
            left[0] += right->front();
            return left;
        }
        Texts result;
        for (const std::u16string& a : left) {
            for (const std::u16string& b : *right) {
                if (a.size() + b.size() > kLongest)
                    return {};
                result.push_back(a + b);
            }
        }
        return result;
    }

    template <typename Find>
    static std::optional<Texts> anyOf(const Node& node, int depth, Find find)
    {
        Texts all;
        for (const NodeNo child : node.children) {
            const std::optional<Texts> some = find(child, depth + 1);
            if (!some || all.size() + some->size() > kMostTexts)
                return {};
            all.insert(all.end(), some->begin(), some->end());
        }
        return all;
    }

    std::optional<Texts> neededInSequence(const Node& node, int depth) const
    {
        Texts best;
        const auto consider = [&best](const Texts& texts) {
            const bool usable =
                std::none_of(texts.begin(), texts.end(), [](const auto& text) { return text.empty(); });
            if (usable && !texts.empty() && (best.empty() || worth(texts) > worth(best)))
                best = texts;
        };
        Texts run = {u""};
        for (const NodeNo child : node.children) {
            const std::optional<Texts> plain = exact(child, depth + 1);
            if (!plain)
                if (const std::optional<Texts> inside = needed(child, depth + 1))
                    consider(*inside);
            std::optional<Texts> longer = plain ? joined(std::move(run), plain) : std::nullopt;
            run = longer ? std::move(*longer) : plain.value_or(Texts{u""});
            if (run.front().size() <= kLongEnough)
                consider(run);
        }
        if (best.empty())
            return {};
        return best;
    }

    const Tree& tree_;
};

} // namespace

int commonness(char16_t unit)
{
    // Letters of English by frequency, in both cases alike.
    constexpr std::u16string_view kLetters = u"etaoinsrhldcumfpgwybvkxjqz";
    constexpr int kShares[] = {
        95, 70, 62, 58, 55, 54, 50, 47, 36, 32, 30, 27, 22, 20, 17, 17, 14, 13, 12, 11, 8, 5, 2, 2, 1, 1};
    if (unit == u' ')
        return 170;
    const char16_t lower = unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
    if (const std::size_t place = kLetters.find(lower); place != kLetters.npos)
        return kShares[place];
    if (unit == u'\r' || unit == u'\n' || unit == u'-' || unit == u'.' || unit == u',')
        return 20;
    return unit < 0x80 ? 6 : 2;
}

Literals neededLiterals(const Tree& tree)
{
    const Finder finder(tree);
    const auto hasEmpty = [](const Texts& texts) {
        return std::any_of(texts.begin(), texts.end(), [](const auto& text) { return text.empty(); });
    };
    if (const auto exact = finder.exact(tree.root, 0); exact && !exact->empty() && !hasEmpty(*exact))
        return {*exact, true};
    const auto needed = finder.needed(tree.root, 0);
    if (!needed || hasEmpty(*needed))
        return {};
    return {*needed, false};
}

} // namespace vellums::regexp
