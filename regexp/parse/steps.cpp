// The tree is laid out from left to right; the first node that is more than a row of units (alternatives,
// look-aheads, repeats of more than one unit) ends the attempt. Then every run whose length is open is held
// against what may follow it. If that could begin with one of the run's own units, taking fewer might lead to
// a match where taking all does not, and the pattern leaves a choice. The sets alone decide, so the answer is
// sometimes too careful; then nothing is lost but speed, as the automaton takes any pattern.
//
// Each run is compared with the steps behind it, at most kMostSteps times kMostSteps comparisons in all.
#include "regexp/parse/steps.h"

#include "regexp/parse/beginnings.h"

#include <algorithm>

namespace vellums::regexp {
namespace {

constexpr int kDeepestStep = 100;
constexpr std::size_t kMostSteps = 64;

// Lays the tree out as steps. They are of use only if no choice is left.
class StepMaker {
public:
    explicit StepMaker(const Tree& tree)
        : tree_(tree)
        , refers_(tree.nodes[tree.root].hasBackReference)
        , closed_(tree.groupCount + 1, false)
    {
    }

    std::optional<Steps> make()
    {
        if (tree_.nodes[tree_.root].minLength == 0 || !add(tree_.root, 0))
            return {};
        for (std::size_t i = 0; i < steps_.list.size(); ++i)
            if (leavesChoice(i))
                return {};
        steps_.beginnings = beginningsOf(tree_);
        return std::move(steps_);
    }

private:
    const UnitSet& setOf(const Step& step) const { return steps_.sets[step.set]; }

    // False: the node is more than a row of steps.
    bool add(NodeNo number, int depth)
    {
        const Node& node = tree_.nodes[number];
        if (depth > kDeepestStep)
            return false;
        switch (node.kind) {
        case NodeKind::Unit:
            return addRun(node.set, 1, 1, false);
        case NodeKind::Sequence:
            return std::all_of(node.children.begin(), node.children.end(),
                [&](NodeNo child) { return add(child, depth + 1); });
        case NodeKind::Group:
            return addGroup(node, depth);
        case NodeKind::Repeat:
            return addRepeat(node);
        case NodeKind::BackReference:
            return closed_[node.number] && addStep({Step::Kind::Reference, {}, 0, node.number});
        case NodeKind::Assert:
            return addStep({Step::Kind::Assert, node.assertion});
        default:
            return false;
        }
    }

    bool addStep(const Step& step)
    {
        steps_.list.push_back(step);
        lazy_.resize(steps_.list.size(), false);
        return steps_.list.size() <= kMostSteps;
    }

    bool addGroup(const Node& node, int depth)
    {
        if (!refers_)
            return add(node.children[0], depth + 1);
        if (!addStep({Step::Kind::Open, {}, 0, node.number}) || !add(node.children[0], depth + 1))
            return false;
        closed_[node.number] = true;
        return addStep({Step::Kind::Close, {}, 0, node.number});
    }

    // Where references ask, a repeated group would have to be remembered with each pass, which is no single
    // step.
    bool addRepeat(const Node& node)
    {
        const Node* inner = &tree_.nodes[node.children[0]];
        while (!refers_ && inner->kind == NodeKind::Group)
            inner = &tree_.nodes[inner->children[0]];
        if (inner->kind != NodeKind::Unit)
            return false;
        return addRun(inner->set, node.fewest, node.most == kNoLimit ? kNoMost : node.most, node.lazy);
    }

    bool addRun(std::uint32_t treeSet, std::size_t fewest, std::size_t most, bool lazy)
    {
        if (most == 0)
            return true;
        const UnitSet& set = tree_.sets[treeSet];
        const auto found = std::find(steps_.sets.begin(), steps_.sets.end(), set);
        const auto number = static_cast<std::uint32_t>(found - steps_.sets.begin());
        if (found == steps_.sets.end())
            steps_.sets.push_back(set);
        if (!addStep({Step::Kind::Run, {}, number, 0, fewest, most}))
            return false;
        lazy_.back() = lazy;
        return true;
    }

    // Whether the run might do well to take less than it can: whether something that follows could go on
    // where the next unit is one of the run's own. What follows is looked at up to the first step that must
    // take a unit or hold; steps that may take nothing are seen through.
    bool leavesChoice(std::size_t index) const
    {
        const Step& run = steps_.list[index];
        if (run.kind != Step::Kind::Run || run.fewest == run.most)
            return false;
        for (std::size_t i = index + 1; i < steps_.list.size(); ++i) {
            const Step& step = steps_.list[i];
            switch (step.kind) {
            case Step::Kind::Run:
                if (setOf(step).meets(setOf(run)))
                    return true;
                if (step.fewest > 0)
                    return false;
                break;
            case Step::Kind::Assert:
                return !failsInside(step.assertion, run);
            case Step::Kind::Reference:
                return true;
            default:
                break;
            }
        }
        return lazy_[index]; // nothing more is asked, so the longest run is the preferred one
    }

    // Whether the assertion fails at every place where the run could stop early. There, both neighbours are
    // units of the run; a word edge between them is ruled out if the set is of one kind. Before its first
    // unit a run that may take nothing has a neighbour that is not its own.
    bool failsInside(Assertion assertion, const Step& run) const
    {
        const UnitSet& set = setOf(run);
        if (assertion == Assertion::End)
            return !tree_.multiline || !set.meets(lineEnds());
        if (assertion == Assertion::WordEdge)
            return run.fewest > 0 && (!set.meets(wordUnits()) || !set.meets(wordUnits().complement()));
        return false;
    }

    const Tree& tree_;
    const bool refers_;
    std::vector<bool> closed_; // by group: it has ended
    std::vector<bool> lazy_;   // by step
    Steps steps_;
};

} // namespace

std::optional<Steps> stepsOf(const Tree& tree)
{
    return StepMaker(tree).make();
}

} // namespace vellums::regexp
