#include "mfcurves/engine/graph.h"

#include <algorithm>
#include <bit>

#include "mfcurves/engine/limits.h"

namespace mf::engine {
namespace {

constexpr std::size_t kSmallestTable = 128;

constexpr std::uint64_t mix(std::uint64_t hash, std::uint64_t value)
{
    hash = (hash ^ value) * 0x9e3779b97f4a7c15ULL;
    return hash ^ (hash >> 32);
}

std::uint64_t headHash(const Node& node)
{
    const auto kind = static_cast<std::uint64_t>(node.op) | static_cast<std::uint64_t>(node.function) << 8 |
                      static_cast<std::uint64_t>(node.lowest) << 16 |
                      static_cast<std::uint64_t>(node.count) << 32;
    return mix(mix(kind, std::bit_cast<std::uint64_t>(node.number)), node.a);
}

// Numbers are compared by their bits: 0.0 and -0.0 are two constants, and a NaN
// is equal to itself.
bool sameHead(const Node& x, const Node& y)
{
    return x.op == y.op && x.a == y.a && x.function == y.function && x.lowest == y.lowest &&
           x.count == y.count &&
           std::bit_cast<std::uint64_t>(x.number) == std::bit_cast<std::uint64_t>(y.number);
}

}  // namespace

void Graph::clear()
{
    nodes_.clear();
    operands_.clear();
    coefficients_.clear();
    table_.assign(kSmallestTable, kNoNode);
    lookups_ = 0;
    full_ = false;
    folding = Folding::KeepText;
}

std::uint64_t Graph::iHash(const Node& node) const
{
    std::uint64_t hash = headHash(node);
    if (node.op == Op::Polynomial || node.op == Op::Chebyshev) {
        for (const double c : coefficients(node))
            hash = mix(hash, std::bit_cast<std::uint64_t>(c));
    } else if (node.count != 0) {
        for (const NodeId operand : operands(node))
            hash = mix(hash, operand);
    } else {
        hash = mix(hash, node.b);
    }
    return hash;
}

NodeId* Graph::iSlot(std::uint64_t hash, const auto& isEqual)
{
    const std::size_t mask = table_.size() - 1;
    std::size_t i = hash & mask;
    for (; table_[i] != kNoNode && !isEqual(nodes_[table_[i]]); ++lookups_)
        i = (i + 1) & mask;
    full_ |= lookups_ >= kMostLookups;
    return &table_[i];
}

void Graph::iGrowTable()
{
    table_.assign(table_.size() * 4, kNoNode);
    for (NodeId id = 0; id < nodes_.size(); ++id)
        *iSlot(iHash(nodes_[id]), [](const Node&) { return false; }) = id;
}

NodeId Graph::iAppend(const Node& node, NodeId& slot)
{
    const auto id = static_cast<NodeId>(nodes_.size());
    nodes_.push_back(node);
    slot = id;
    if (nodes_.size() * 2 > table_.size())
        iGrowTable();
    full_ |= nodes_.size() + operands_.size() + coefficients_.size() >= kMostNodes;
    return id;
}

NodeId Graph::intern(const Node& node)
{
    if (full_)
        return 0;
    const std::uint64_t hash = mix(headHash(node), node.b);
    NodeId* slot = iSlot(hash, [&](const Node& other) { return sameHead(node, other) && node.b == other.b; });
    return *slot != kNoNode ? *slot : iAppend(node, *slot);
}

NodeId Graph::intern(Node node, std::span<const NodeId> list)
{
    if (full_)
        return 0;
    node.count = static_cast<std::uint32_t>(list.size());
    node.b = static_cast<std::uint32_t>(operands_.size());
    operands_.insert(operands_.end(), list.begin(), list.end());
    lookups_ += list.size();
    NodeId* slot = iSlot(iHash(node), [&](const Node& other) {
        return sameHead(node, other) && std::ranges::equal(operands(other), list);
    });
    if (*slot == kNoNode)
        return iAppend(node, *slot);
    operands_.resize(node.b);
    return *slot;
}

NodeId Graph::intern(Node node, std::span<const double> list)
{
    if (full_)
        return 0;
    node.count = static_cast<std::uint32_t>(list.size());
    node.b = static_cast<std::uint32_t>(coefficients_.size());
    coefficients_.insert(coefficients_.end(), list.begin(), list.end());
    lookups_ += list.size();
    NodeId* slot = iSlot(iHash(node), [&](const Node& other) {
        return sameHead(node, other) &&
               std::ranges::equal(coefficients(other), list, {}, std::bit_cast<std::uint64_t, double>,
                                  std::bit_cast<std::uint64_t, double>);
    });
    if (*slot == kNoNode)
        return iAppend(node, *slot);
    coefficients_.resize(node.b);
    return *slot;
}

std::size_t Graph::bytes() const
{
    return nodes_.capacity() * sizeof(Node) + operands_.capacity() * sizeof(NodeId) +
           coefficients_.capacity() * sizeof(double) + table_.capacity() * sizeof(NodeId);
}

}  // namespace mf::engine
