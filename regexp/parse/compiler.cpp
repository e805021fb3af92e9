// Instructions are made from the end of the pattern to its beginning, so that each knows what follows it.
// Only the Split of a loop is made before what it leads to, and is completed afterwards.
//
// Counts are written out: x{2,4} becomes x x (x (x)?)?, both optional passes going on at the same place when
// they are skipped; x{2,} becomes x x x*. A text of n units cannot tell more than n passes apart: those
// beyond the fewest take something each, and of more than n that must be there the rest take nothing. So
// counts are cut to the longest text that is expected, and the pattern is compiled anew if a longer one
// comes. What is still too large is refused with number 7.
//
// A program is read in two ways. Forwards, `next` is preferred to `other`. Backwards, the tables `before` and
// `unitsBefore` lead from an instruction to those that lead to it. Only this second reading goes through the
// `other` of a BackReference: in its place stands what the group could have taken (relaxed_: without slots
// and without loops that count), so the automaton takes more for possible than is, never less.
#include "regexp/parse/program.h"
#include "regexp/parse/regExpError.h"

#include <algorithm>
#include <numeric>

namespace vellums::regexp {
namespace {

// The limits keep the largest program to some tens of megabytes, the tables by instruction and depth that
// Walk keeps among them.
constexpr std::size_t kMostInstructions = 300000;
constexpr std::uint64_t kMostDepths = 4000000; // instructions times loops around them

// Instructions are made from the end of the pattern to its beginning, so that each knows what follows it.
class Compiler {
public:
    Compiler(const Tree& tree, std::size_t countLimit)
        : tree_(tree)
        , sets_(tree.sets)
    {
        program_.countLimit = countLimit;
        program_.hasBackReference = tree.nodes[tree.root].hasBackReference;
        program_.multiline = tree.multiline;
        program_.ignoreCase = tree.ignoreCase;
        program_.minLength = tree.nodes[tree.root].minLength;
        if (program_.hasBackReference)
            program_.slots = 2 * (tree.groupCount + 1);
    }

    Program compile()
    {
        findGroups();
        anyUnit_ = static_cast<std::uint32_t>(sets_.size());
        if (program_.hasBackReference)
            sets_.push_back(UnitSet().complement());
        program_.start = emit(tree_.root, add({Op::Accept}));
        makeAlphabet();
        listPositions();
        listBefore();
        listUnitsBefore();
        return std::move(program_);
    }

private:
    void findGroups()
    {
        groups_.resize(tree_.groupCount + 1);
        for (NodeNo i = 0; i < tree_.nodes.size(); ++i)
            if (tree_.nodes[i].kind == NodeKind::Group)
                groups_[tree_.nodes[i].number] = i;
    }

    Place add(Instruction instruction)
    {
        instruction.graph = graph_;
        instruction.depth = std::max(instruction.depth, depth_);
        depths_ += instruction.depth;
        if (program_.instructions.size() >= kMostInstructions || depths_ > kMostDepths)
            throw RegExpError(RegExpFault::OutOfMemory, {});
        program_.deepest = std::max(program_.deepest, instruction.depth);
        program_.instructions.push_back(instruction);
        return static_cast<Place>(program_.instructions.size() - 1);
    }

    Place addValue(Op op, Place next, std::uint32_t value)
    {
        Instruction instruction{op};
        instruction.next = next;
        instruction.value = value;
        return add(instruction);
    }

    Place addSplit(bool lazy, Place inside, Place after)
    {
        Instruction split{Op::Split};
        split.next = lazy ? after : inside;
        split.other = lazy ? inside : after;
        return add(split);
    }

    // The first instruction of a node that `next` follows.
    Place emit(NodeNo number, Place next)
    {
        const Node& node = tree_.nodes[number];
        switch (node.kind) {
        case NodeKind::Unit:
            return addValue(Op::Unit, next, node.set);
        case NodeKind::Sequence:
            for (auto child = node.children.rbegin(); child != node.children.rend(); ++child)
                next = emit(*child, next);
            return next;
        case NodeKind::Either:
            return emitEither(node, next);
        case NodeKind::Repeat:
            return emitRepeat(node, next);
        case NodeKind::Group:
            if (program_.slots == 0 || relaxed_)
                return emit(node.children[0], next);
            next = addValue(Op::Save, next, 2 * node.number + 1);
            next = emit(node.children[0], next);
            return addValue(Op::Save, next, 2 * node.number);
        case NodeKind::Look:
            return emitLook(node, next);
        case NodeKind::BackReference:
            return emitBackReference(node, next);
        default:
            return emitAssertion(node, next);
        }
    }

    Place emitAssertion(const Node& node, Place next)
    {
        const Place place = addValue(Op::Assert, next, 0);
        program_.instructions[place].assertion = node.assertion;
        if (node.assertion != Assertion::End)
            program_.asksBefore = true;
        if (node.assertion == Assertion::WordEdge || node.assertion == Assertion::NoWordEdge)
            asksWords_ = true;
        return place;
    }

    Place emitEither(const Node& node, Place next)
    {
        Place result = emit(node.children.back(), next);
        for (std::size_t i = node.children.size() - 1; i-- > 0;)
            result = addSplit(false, emit(node.children[i], next), result);
        return result;
    }

    Place emitLook(const Node& node, Place next)
    {
        const std::uint32_t number = static_cast<std::uint32_t>(program_.lookAheads.size());
        program_.lookAheads.push_back({0, node.negative, node.negative && node.hasBackReference});
        const std::uint32_t outer = graph_;
        graph_ = number + 1;
        const Place end = add({Op::Accept});
        const Place entry = emit(node.children[0], end);
        graph_ = outer;
        program_.lookAheads[number].entry = entry;
        return addValue(Op::Look, next, number);
    }

    // Read backwards, a reference takes any text of its group, or any text at all where that is not simple.
    // It may also take nothing, as `next` is among the places that follow it: a group that is unset holds the
    // empty text.
    Place emitBackReference(const Node& node, Place next)
    {
        const Node& group = tree_.nodes[groups_[node.number]];
        const bool before = relaxed_;
        relaxed_ = true;
        Place inner = next;
        if (group.hasBackReference || group.hasCondition) {
            inner = addSplit(false, next, next);
            program_.instructions[inner].next = addValue(Op::Unit, inner, anyUnit_);
        } else {
            inner = emit(group.children[0], next);
        }
        relaxed_ = before;
        const Place place = addValue(Op::BackReference, next, node.number);
        program_.instructions[place].other = inner;
        return place;
    }

    // Repeats.

    Place emitRepeat(const Node& node, Place next)
    {
        const std::uint64_t limit = program_.countLimit;
        std::uint64_t fewest = node.fewest;
        std::uint64_t more = node.most == kNoLimit ? kNoLimit : node.most - node.fewest;
        if (fewest > limit + 1) {
            fewest = limit + 1;
            program_.countsCut = true;
        }
        if (more != kNoLimit && more > limit) {
            more = kNoLimit;
            program_.countsCut = true;
        }
        if (more == kNoLimit) {
            next = emitLoop(node, next);
        } else {
            const Place after = next;
            for (; more > 0; --more)
                next = addSplit(node.lazy, emitOptionalPass(node, next), after);
        }
        for (; fewest > 0; --fewest)
            next = emitForget(node, emit(node.children[0], next));
        return next;
    }

    Place emitLoop(const Node& node, Place next)
    {
        const Place split = addSplit(node.lazy, next, next);
        const Place pass = emitOptionalPass(node, split);
        (node.lazy ? program_.instructions[split].other : program_.instructions[split].next) = pass;
        return split;
    }

    // A pass beyond the fewest counts only if it takes something. Loops that stand side by side share a
    // number, as no place lies in both; that keeps the numbers as low as the nesting is deep.
    Place emitOptionalPass(const Node& node, Place next)
    {
        if (relaxed_ || tree_.nodes[node.children[0]].minLength > 0)
            return emitForget(node, emit(node.children[0], next));
        ++depth_;
        const Place leave = addValue(Op::Leave, next, depth_);
        const Place body = emit(node.children[0], leave);
        const Place enter = addValue(Op::Enter, body, depth_);
        --depth_;
        return emitForget(node, enter);
    }

    // Every pass begins with the groups inside it empty.
    Place emitForget(const Node& node, Place next)
    {
        if (relaxed_ || program_.slots == 0 || node.groupsFrom == node.groupsTo)
            return next;
        const Place place = addValue(Op::Forget, next, 2 * node.groupsFrom);
        program_.instructions[place].other = 2 * node.groupsTo;
        return place;
    }

    // Tables for reading backwards.

    void makeAlphabet()
    {
        std::vector<UnitSet> told = sets_;
        if (asksWords_)
            told.push_back(wordUnits());
        if (program_.multiline)
            told.push_back(lineEnds());
        Alphabet& alphabet = program_.alphabet;
        alphabet.tellApart(told);
        for (const UnitSet& set : sets_) {
            std::vector<bool> holds(alphabet.size());
            for (const ClassNo number : alphabet.classesOf(set))
                holds[number] = true;
            program_.setHolds.push_back(std::move(holds));
        }
        program_.besideOfClass.assign(alphabet.size(), Beside::Other);
        if (asksWords_)
            for (const ClassNo number : alphabet.classesOf(wordUnits()))
                program_.besideOfClass[number] = Beside::Word;
        if (program_.multiline)
            for (const ClassNo number : alphabet.classesOf(lineEnds()))
                program_.besideOfClass[number] = Beside::LineEnd;
    }

    void listPositions()
    {
        const auto& instructions = program_.instructions;
        for (Place i = 0; i < instructions.size(); ++i)
            if (instructions[i].op == Op::Unit)
                program_.positions.push_back(i);
        std::stable_sort(program_.positions.begin(), program_.positions.end(),
            [&](Place a, Place b) { return instructions[a].graph > instructions[b].graph; });
        program_.positionOf.assign(instructions.size(), 0);
        for (std::uint32_t i = 0; i < program_.positions.size(); ++i)
            program_.positionOf[program_.positions[i]] = i;
    }

    // The places that an instruction leads to without taking a unit.
    template <typename Visit>
    static void forEachNext(const Instruction& instruction, Visit visit)
    {
        if (instruction.op == Op::Unit || instruction.op == Op::Accept)
            return;
        visit(instruction.next);
        if (instruction.op == Op::Split || instruction.op == Op::BackReference)
            visit(instruction.other);
    }

    void listBefore()
    {
        const auto& instructions = program_.instructions;
        std::vector<std::uint32_t>& first = program_.firstBefore;
        first.assign(instructions.size() + 1, 0);
        for (const Instruction& instruction : instructions)
            forEachNext(instruction, [&](Place next) { ++first[next + 1]; });
        std::partial_sum(first.begin(), first.end(), first.begin());
        program_.before.resize(first.back());
        std::vector<std::uint32_t> fill(first.begin(), first.end() - 1);
        for (Place i = 0; i < instructions.size(); ++i)
            forEachNext(instructions[i], [&](Place next) { program_.before[fill[next]++] = i; });
    }

    void listUnitsBefore()
    {
        std::vector<std::uint32_t>& first = program_.firstUnitBefore;
        first.assign(program_.instructions.size() + 1, 0);
        for (const Place unit : program_.positions)
            ++first[program_.instructions[unit].next + 1];
        std::partial_sum(first.begin(), first.end(), first.begin());
        program_.unitsBefore.resize(first.back());
        std::vector<std::uint32_t> fill(first.begin(), first.end() - 1);
        for (std::uint32_t i = 0; i < program_.positions.size(); ++i)
            program_.unitsBefore[fill[program_.instructions[program_.positions[i]].next]++] = i;
    }

    const Tree& tree_;
    std::vector<UnitSet> sets_;
    Program program_;
    std::vector<NodeNo> groups_;
    std::uint32_t anyUnit_ = 0;
    std::uint32_t graph_ = 0;
    std::uint32_t depth_ = 0;
    std::uint64_t depths_ = 0;
    bool relaxed_ = false;
    bool asksWords_ = false;
};

} // namespace

bool holds(Assertion assertion, bool multiline, Beside left, Beside right)
{
    switch (assertion) {
    case Assertion::Start:
        return left == Beside::Nothing || (multiline && left == Beside::LineEnd);
    case Assertion::End:
        return right == Beside::Nothing || (multiline && right == Beside::LineEnd);
    case Assertion::WordEdge:
        return (left == Beside::Word) != (right == Beside::Word);
    default:
        return (left == Beside::Word) == (right == Beside::Word);
    }
}

Program compile(const Tree& tree, std::size_t countLimit)
{
    return Compiler(tree, countLimit).compile();
}

} // namespace vellums::regexp
