#include "tests/regexp/reference.h"

#include <functional>

namespace vellums::regexp {
namespace {

struct TooLong { };

struct Capture {
    bool set = false;
    std::size_t from = 0;
    std::size_t to = 0;
};

// The state of the standard: where we are, and what the groups hold.
struct Progress {
    std::size_t end;
    std::vector<Capture> captures;
};

using Result = std::optional<Progress>;
using Continuation = std::function<Result(const Progress&)>;

class Reference {
public:
    Reference(const Tree& tree, std::u16string_view text)
        : tree_(tree)
        , text_(text)
    {
    }

    Result at(std::size_t start)
    {
        const Progress begin{start, std::vector<Capture>(tree_.groupCount + 1)};
        return match(tree_.root, begin, [](const Progress& x) { return x; });
    }

private:
    Result match(NodeNo number, const Progress& x, const Continuation& go)
    {
        constexpr int kMostSteps = 200000;
        if (++steps_ > kMostSteps)
            throw TooLong();
        const Node& node = tree_.nodes[number];
        switch (node.kind) {
        case NodeKind::Unit:
            if (x.end == text_.size() || !tree_.sets[node.set].contains(text_[x.end]))
                return {};
            return go({x.end + 1, x.captures});
        case NodeKind::Sequence:
            return sequence(node, 0, x, go);
        case NodeKind::Either:
            for (const NodeNo child : node.children)
                if (Result result = match(child, x, go))
                    return result;
            return {};
        case NodeKind::Repeat:
            return repeat(node, node.fewest, node.most, x, go);
        case NodeKind::Group:
            return match(node.children[0], x, [&](const Progress& y) {
                Progress z = y;
                z.captures[node.number] = {true, x.end, y.end};
                return go(z);
            });
        case NodeKind::Look: {
            const Result inner = match(node.children[0], x, [](const Progress& y) { return y; });
            if (node.negative)
                return inner ? Result() : go(x);
            return inner ? go({x.end, inner->captures}) : Result();
        }
        case NodeKind::BackReference:
            return backReference(x.captures[node.number], x, go);
        default:
            return holdsAt(node.assertion, x.end) ? go(x) : Result();
        }
    }

    Result sequence(const Node& node, std::size_t index, const Progress& x, const Continuation& go)
    {
        if (index == node.children.size())
            return go(x);
        return match(node.children[index], x,
            [&, index](const Progress& y) { return sequence(node, index + 1, y, go); });
    }

    Result repeat(
        const Node& node, std::uint32_t least, std::uint32_t most, const Progress& x, const Continuation& go)
    {
        if (most == 0)
            return go(x);
        const Continuation again = [&](const Progress& y) {
            if (least == 0 && y.end == x.end)
                return Result();
            return repeat(node, least == 0 ? 0 : least - 1, most == kNoLimit ? most : most - 1, y, go);
        };
        Progress cleared = x;
        for (std::uint32_t group = node.groupsFrom; group < node.groupsTo; ++group)
            cleared.captures[group] = {};
        if (least > 0)
            return match(node.children[0], cleared, again);
        if (node.lazy) {
            if (Result result = go(x))
                return result;
            return match(node.children[0], cleared, again);
        }
        if (Result result = match(node.children[0], cleared, again))
            return result;
        return go(x);
    }

    Result backReference(const Capture& capture, const Progress& x, const Continuation& go)
    {
        if (!capture.set)
            return go(x);
        const std::size_t length = capture.to - capture.from;
        if (x.end + length > text_.size())
            return {};
        for (std::size_t i = 0; i < length; ++i) {
            const char16_t a = text_[capture.from + i];
            const char16_t b = text_[x.end + i];
            if (tree_.ignoreCase ? folded(a) != folded(b) : a != b)
                return {};
        }
        return go({x.end + length, x.captures});
    }

    bool wordAt(std::size_t place) const
    {
        return place < text_.size() && wordUnits().contains(text_[place]);
    }

    bool lineEndAt(std::size_t place) const
    {
        return tree_.multiline && (text_[place] == u'\n' || text_[place] == u'\r');
    }

    bool holdsAt(Assertion assertion, std::size_t place) const
    {
        switch (assertion) {
        case Assertion::Start:
            return place == 0 || lineEndAt(place - 1);
        case Assertion::End:
            return place == text_.size() || lineEndAt(place);
        default:
            return ((place > 0 && wordAt(place - 1)) != wordAt(place)) == (assertion == Assertion::WordEdge);
        }
    }

    const Tree& tree_;
    std::u16string_view text_;
    int steps_ = 0;
};

} // namespace

std::optional<std::vector<std::pair<std::size_t, std::size_t>>> referenceMatches(
    const Tree& tree, std::u16string_view text, bool global)
{
    std::vector<std::pair<std::size_t, std::size_t>> matches;
    try {
        Reference reference(tree, text);
        for (std::size_t start = 0; start <= text.size(); ++start) {
            const Result result = reference.at(start);
            if (!result)
                continue;
            matches.emplace_back(start, result->end);
            if (!global)
                break;
            if (result->end > start)
                start = result->end - 1;
        }
    } catch (const TooLong&) {
        return std::nullopt;
    }
    return matches;
}

} // namespace vellums::regexp
