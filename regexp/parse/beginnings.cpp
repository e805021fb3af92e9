#include "regexp/parse/beginnings.h"

namespace vellums::regexp {
namespace {

constexpr int kDeepestBeginning = 100;

// The units that a match of the node may begin with, if it takes any.
UnitSet beginnings(const Tree& tree, NodeNo number, int depth)
{
    const Node& node = tree.nodes[number];
    if (depth > kDeepestBeginning)
        return UnitSet().complement();
    UnitSet result;
    switch (node.kind) {
    case NodeKind::Unit:
        return tree.sets[node.set];
    case NodeKind::BackReference:
        return UnitSet().complement();
    case NodeKind::Assert:
    case NodeKind::Look:
        return {};
    case NodeKind::Sequence:
        for (const NodeNo child : node.children) {
            result = result.with(beginnings(tree, child, depth + 1));
            if (tree.nodes[child].minLength > 0)
                break;
        }
        return result;
    default:
        for (const NodeNo child : node.children)
            result = result.with(beginnings(tree, child, depth + 1));
        return result;
    }
}

} // namespace

UnitSet beginningsOf(const Tree& tree)
{
    return beginnings(tree, tree.root, 0);
}

} // namespace vellums::regexp
