// One pass from left to right. Brackets that are still open lie on a stack of the parser's own (open_), each
// with the alternatives that are complete and the items of the one under way; so the parser does not recurse,
// and the limit on open brackets bounds how deep those may recurse who walk the tree later: four nodes for
// each bracket at most. Nodes are added when they are complete, hence children before parents.
//
// What a quantifier belongs to is known only when it comes: the last item is then wrapped in a Repeat, and
// may not be quantified again. What the search asks about a part of the pattern (the least length of a match,
// the groups inside, whether it has references or conditions) is summed up while the nodes are made.
#include "regexp/parse/regExpError.h"
#include "regexp/parse/tree.h"

#include <algorithm>
#include <cassert>
#include <map>
#include <optional>

namespace vellums::regexp {
namespace {

constexpr std::size_t kMostOpenGroups = 1000;
// Lengths stop here, so that sums and products of them cannot overflow.
constexpr std::uint64_t kMostLength = 1ULL << 60;

bool isDigit(char16_t c)
{
    return c >= u'0' && c <= u'9';
}

bool isOctal(char16_t c)
{
    return c >= u'0' && c <= u'7';
}

bool isLetter(char16_t c)
{
    return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
}

int hexValue(char16_t c)
{
    if (isDigit(c))
        return c - u'0';
    if (c >= u'a' && c <= u'f')
        return c - u'a' + 10;
    return c >= u'A' && c <= u'F' ? c - u'A' + 10 : -1;
}

std::uint64_t limited(std::uint64_t length)
{
    return std::min(length, kMostLength);
}

// What one item of a class is: a unit that may begin or end a range, or a set.
struct ClassItem {
    UnitSet set;
    std::optional<char16_t> unit;
};

// A bracket that is still open, the whole pattern being the outermost.
struct OpenGroup {
    std::size_t position = 0;
    Node node; // Group, Look, or Sequence for (?: )
    std::uint32_t groupsFrom = 0;
    std::vector<NodeNo> alternatives;
    std::vector<NodeNo> items;
    bool quantifiable = false; // the last item
};

class Parser {
public:
    Parser(std::u16string_view pattern, bool ignoreCase, bool multiline)
        : pattern_(pattern)
    {
        tree_.ignoreCase = ignoreCase;
        tree_.multiline = multiline;
        tree_.groupCount = countGroups();
    }

    Tree parse()
    {
        open_.push_back({});
        while (at_ < pattern_.size())
            parseNext();
        if (open_.size() > 1)
            fail(RegExpFault::OpenGroup, open_.back().position);
        tree_.root = closeAlternatives(open_.back());
        return std::move(tree_);
    }

private:
    [[noreturn]] static void fail(RegExpFault fault, std::size_t position)
    {
        throw RegExpError(fault, position);
    }

    // Left brackets that remember: a reference may name a group that stands further right.
    std::uint32_t countGroups() const
    {
        std::uint32_t count = 0;
        bool inClass = false;
        for (std::size_t i = 0; i < pattern_.size(); ++i) {
            const char16_t c = pattern_[i];
            if (c == u'\\')
                ++i;
            else if (inClass)
                inClass = c != u']';
            else if (c == u'[')
                inClass = true;
            else if (c == u'(' && peek(i + 1) != u'?')
                ++count;
        }
        return count;
    }

    char16_t peek(std::size_t position) const
    {
        return position < pattern_.size() ? pattern_[position] : u'\0';
    }

    void parseNext()
    {
        const std::size_t start = at_;
        const char16_t c = pattern_[at_++];
        switch (c) {
        case u'|':
            endAlternative(open_.back());
            return;
        case u'(':
            return openGroup(start);
        case u')':
            return closeGroup(start);
        case u'*':
            return quantify(start, 0, kNoLimit);
        case u'+':
            return quantify(start, 1, kNoLimit);
        case u'?':
            return quantify(start, 0, 1);
        case u'{':
            if (quantifyByCount(start))
                return;
            return addUnit(c);
        case u'^':
            return addAssertion(Assertion::Start);
        case u'$':
            return addAssertion(Assertion::End);
        case u'.':
            return addSet(UnitSet({{u'\n', u'\n'}}).complement());
        case u'[':
            return parseClass(start);
        case u'\\':
            return parseEscape(start);
        default:
            return addUnit(c);
        }
    }

    // Nodes.

    NodeNo add(Node node)
    {
        tree_.nodes.push_back(std::move(node));
        return static_cast<NodeNo>(tree_.nodes.size() - 1);
    }

    void addItem(Node node, bool quantifiable)
    {
        open_.back().items.push_back(add(std::move(node)));
        open_.back().quantifiable = quantifiable;
    }

    Node bare(NodeKind kind) const
    {
        Node node;
        node.kind = kind;
        node.groupsFrom = node.groupsTo = groupsSeen_ + 1;
        return node;
    }

    void addAssertion(Assertion assertion)
    {
        Node node = bare(NodeKind::Assert);
        node.assertion = assertion;
        node.hasCondition = true;
        addItem(std::move(node), false);
    }

    // The set already has all that it takes without regard to case.
    void addFinishedSet(const UnitSet& set)
    {
        const auto [place, fresh] =
            setNumbers_.try_emplace(set, static_cast<std::uint32_t>(tree_.sets.size()));
        if (fresh)
            tree_.sets.push_back(set);
        Node node = bare(NodeKind::Unit);
        node.set = place->second;
        node.minLength = 1;
        addItem(std::move(node), true);
    }

    void addSet(const UnitSet& set) { addFinishedSet(tree_.ignoreCase ? set.withFolded() : set); }

    void addUnit(char16_t unit)
    {
        std::vector<UnitRange> ranges;
        if (tree_.ignoreCase)
            for (const char16_t same : sameFolded(unit))
                ranges.push_back({same, same});
        else
            ranges.push_back({unit, unit});
        addFinishedSet(UnitSet(std::move(ranges)));
    }

    // One child needs no list around it.
    NodeNo combine(NodeKind kind, std::vector<NodeNo> children)
    {
        if (children.size() == 1)
            return children[0];
        Node node = bare(kind);
        node.minLength = kind == NodeKind::Either ? kMostLength : 0;
        for (const NodeNo child : children) {
            const Node& part = tree_.nodes[child];
            node.minLength = kind == NodeKind::Either ? std::min(node.minLength, part.minLength)
                                                      : limited(node.minLength + part.minLength);
            node.hasBackReference = node.hasBackReference || part.hasBackReference;
            node.hasCondition = node.hasCondition || part.hasCondition;
        }
        if (!children.empty()) {
            node.groupsFrom = tree_.nodes[children.front()].groupsFrom;
            node.groupsTo = tree_.nodes[children.back()].groupsTo;
        }
        node.children = std::move(children);
        return add(std::move(node));
    }

    void endAlternative(OpenGroup& group)
    {
        group.alternatives.push_back(combine(NodeKind::Sequence, std::move(group.items)));
        group.items.clear();
        group.quantifiable = false;
    }

    NodeNo closeAlternatives(OpenGroup& group)
    {
        endAlternative(group);
        return combine(NodeKind::Either, std::move(group.alternatives));
    }

    // Brackets.

    void openGroup(std::size_t start)
    {
        if (open_.size() > kMostOpenGroups)
            fail(RegExpFault::NestedTooDeeply, start);
        OpenGroup group;
        group.position = start;
        group.groupsFrom = groupsSeen_ + 1;
        if (peek(at_) == u'?' && at_ < pattern_.size()) {
            const char16_t kind = peek(at_ + 1);
            if (kind != u':' && kind != u'=' && kind != u'!')
                fail(RegExpFault::Quantifier, start);
            at_ += 2;
            group.node.kind = kind == u':' ? NodeKind::Sequence : NodeKind::Look;
            group.node.negative = kind == u'!';
        } else {
            group.node.kind = NodeKind::Group;
            group.node.number = ++groupsSeen_;
        }
        open_.push_back(std::move(group));
    }

    void closeGroup(std::size_t start)
    {
        if (open_.size() == 1)
            fail(RegExpFault::Syntax, start);
        OpenGroup group = std::move(open_.back());
        open_.pop_back();
        const NodeNo inner = closeAlternatives(group);
        if (group.node.kind == NodeKind::Sequence) {
            open_.back().items.push_back(inner);
            open_.back().quantifiable = true;
            return;
        }
        Node node = std::move(group.node);
        node.minLength = node.kind == NodeKind::Look ? 0 : tree_.nodes[inner].minLength;
        node.hasBackReference = tree_.nodes[inner].hasBackReference;
        node.hasCondition = node.kind == NodeKind::Look || tree_.nodes[inner].hasCondition;
        node.groupsFrom = group.groupsFrom;
        node.groupsTo = groupsSeen_ + 1;
        node.children = {inner};
        addItem(std::move(node), true);
    }

    // Quantifiers.

    std::uint32_t number()
    {
        std::uint64_t value = 0;
        for (; isDigit(peek(at_)); ++at_)
            value = std::min<std::uint64_t>(value * 10 + (pattern_[at_] - u'0'), kMostCount);
        return static_cast<std::uint32_t>(value);
    }

    // False: the bracket begins none of {n}, {n,}, {n,m}, and stands for itself.
    bool quantifyByCount(std::size_t start)
    {
        if (!isDigit(peek(at_)))
            return false;
        const std::uint32_t fewest = number();
        std::uint32_t most = fewest;
        if (peek(at_) == u',') {
            ++at_;
            most = isDigit(peek(at_)) ? number() : kNoLimit;
        }
        if (peek(at_) != u'}') {
            at_ = start + 1;
            return false;
        }
        ++at_;
        if (fewest > most)
            fail(RegExpFault::Syntax, start);
        quantify(start, fewest, most);
        return true;
    }

    void quantify(std::size_t start, std::uint32_t fewest, std::uint32_t most)
    {
        OpenGroup& group = open_.back();
        if (!group.quantifiable)
            fail(RegExpFault::Quantifier, start);
        assert(!group.items.empty());
        Node node = bare(NodeKind::Repeat);
        node.fewest = fewest;
        node.most = most;
        if (at_ < pattern_.size() && pattern_[at_] == u'?') {
            node.lazy = true;
            ++at_;
        }
        const NodeNo child = group.items.back();
        const Node& atom = tree_.nodes[child];
        // A count has 31 bits: what is cut to kMostLength >> 31 beforehand can be multiplied.
        node.minLength = limited(std::min(atom.minLength, kMostLength >> 31) * fewest);
        node.hasBackReference = atom.hasBackReference;
        node.hasCondition = atom.hasCondition;
        node.groupsFrom = atom.groupsFrom;
        node.groupsTo = atom.groupsTo;
        node.children = {child};
        group.items.back() = add(std::move(node));
        group.quantifiable = false;
    }

    // Escapes.

    void parseEscape(std::size_t start)
    {
        if (at_ == pattern_.size())
            fail(RegExpFault::Syntax, start);
        const char16_t c = pattern_[at_];
        if (c == u'b' || c == u'B') {
            ++at_;
            return addAssertion(c == u'b' ? Assertion::WordEdge : Assertion::NoWordEdge);
        }
        if (const std::uint32_t group = backReference(); group != 0) {
            Node node = bare(NodeKind::BackReference);
            node.number = group;
            node.hasBackReference = true;
            return addItem(std::move(node), true);
        }
        const ClassItem item = escaped();
        if (item.unit)
            addUnit(*item.unit);
        else
            addSet(item.set);
    }

    // The number of the group that is meant; 0: none, and nothing is passed over. Two digits mean one group
    // if the whole pattern has so many, otherwise the first digit alone does; failing that, they are no
    // reference.
    std::uint32_t backReference()
    {
        if (peek(at_) < u'1' || !isDigit(peek(at_)))
            return 0;
        const std::uint32_t one = static_cast<std::uint32_t>(pattern_[at_] - u'0');
        if (isDigit(peek(at_ + 1))) {
            const std::uint32_t two = one * 10 + static_cast<std::uint32_t>(pattern_[at_ + 1] - u'0');
            if (two <= tree_.groupCount) {
                at_ += 2;
                return two;
            }
        }
        if (one > tree_.groupCount)
            return 0;
        ++at_;
        return one;
    }

    ClassItem escaped()
    {
        const char16_t c = pattern_[at_++];
        switch (c) {
        case u'd':
            return {digits(), {}};
        case u'D':
            return {digits().complement(), {}};
        case u'w':
            return {wordUnits(), {}};
        case u'W':
            return {wordUnits().complement(), {}};
        case u's':
            return {blanks(), {}};
        case u'S':
            return {blanks().complement(), {}};
        default:
            return {{}, escapedUnit(c)};
        }
    }

    char16_t escapedUnit(char16_t c)
    {
        constexpr std::u16string_view kLetters = u"tnvfr";
        constexpr std::u16string_view kMeant = u"\t\n\v\f\r";
        if (const std::size_t place = kLetters.find(c); place != kLetters.npos)
            return kMeant[place];
        if (c == u'c' && isLetter(peek(at_)))
            return static_cast<char16_t>(pattern_[at_++] % 32);
        if (c == u'x')
            return byDigits(c, 2);
        if (c == u'u')
            return byDigits(c, 4);
        return isOctal(c) ? octal(c) : c;
    }

    // Exactly so many hexadecimal digits, or else the letter itself.
    char16_t byDigits(char16_t letter, std::size_t count)
    {
        int value = 0;
        for (std::size_t i = 0; i < count; ++i) {
            const int digit = at_ + i < pattern_.size() ? hexValue(pattern_[at_ + i]) : -1;
            if (digit < 0)
                return letter;
            value = value * 16 + digit;
        }
        at_ += count;
        return static_cast<char16_t>(value);
    }

    char16_t octal(char16_t first)
    {
        constexpr int kMost = 0377;
        int value = first - u'0';
        for (int digits = 1; digits < 3 && isOctal(peek(at_)); ++digits) {
            const int more = value * 8 + (pattern_[at_] - u'0');
            if (more > kMost)
                break;
            value = more;
            ++at_;
        }
        return static_cast<char16_t>(value);
    }

    // Classes.

    ClassItem classItem(std::size_t start)
    {
        const char16_t c = pattern_[at_++];
        if (c != u'\\')
            return {{}, c};
        if (at_ == pattern_.size())
            fail(RegExpFault::OpenClass, start);
        if (pattern_[at_] == u'b') {
            ++at_;
            return {{}, u'\b'};
        }
        return escaped();
    }

    void parseClass(std::size_t start)
    {
        const bool negative = peek(at_) == u'^';
        if (negative)
            ++at_;
        std::vector<UnitRange> ranges;
        while (true) {
            if (at_ >= pattern_.size())
                fail(RegExpFault::OpenClass, start);
            if (pattern_[at_] == u']')
                break;
            parseClassPart(start, ranges);
        }
        ++at_;
        // The complement comes last: without regard to case [^a] takes neither "a" nor "A".
        UnitSet set(std::move(ranges));
        if (tree_.ignoreCase)
            set = set.withFolded();
        addFinishedSet(negative ? set.complement() : set);
    }

    // A range needs a unit on both sides. Beside a set, such as \d, the hyphen is a member of the class like
    // the others; first or last in the class it is one anyway.
    void parseClassPart(std::size_t start, std::vector<UnitRange>& ranges)
    {
        const std::size_t itemStart = at_;
        const ClassItem first = classItem(start);
        if (peek(at_) != u'-' || at_ + 1 >= pattern_.size() || pattern_[at_ + 1] == u']')
            return addTo(ranges, first);
        ++at_;
        const ClassItem last = classItem(start);
        if (first.unit && last.unit) {
            if (*first.unit > *last.unit)
                fail(RegExpFault::Range, itemStart);
            ranges.push_back({*first.unit, *last.unit});
            return;
        }
        addTo(ranges, first);
        addTo(ranges, last);
        ranges.push_back({u'-', u'-'});
    }

    static void addTo(std::vector<UnitRange>& ranges, const ClassItem& item)
    {
        if (item.unit)
            ranges.push_back({*item.unit, *item.unit});
        ranges.insert(ranges.end(), item.set.ranges().begin(), item.set.ranges().end());
    }

    std::u16string_view pattern_;
    std::size_t at_ = 0;
    Tree tree_;
    std::map<UnitSet, std::uint32_t> setNumbers_;
    std::uint32_t groupsSeen_ = 0;
    std::vector<OpenGroup> open_;
};

} // namespace

Tree parsePattern(std::u16string_view pattern, bool ignoreCase, bool multiline)
{
    return Parser(pattern, ignoreCase, multiline).parse();
}

} // namespace vellums::regexp
