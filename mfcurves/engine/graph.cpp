// SPDX-License-Identifier: MIT

#include "mfcurves/engine/graph.h"

#include <algorithm>
#include <bit>

#include "mfcurves/engine/limits.h"

namespace mf::engine {
namespace {

// Room that is enough for the value and three derivatives of most texts. The table is at most half full.
constexpr std::size_t kReservedNodes = 128;
constexpr std::size_t kReservedCoefficients = 64;
constexpr std::size_t kSmallestTable = 256;
constexpr std::uint32_t kFree = 0xffffffff;

// Numbers are compared by their bits: 0.0 and -0.0 are two constants, and a NaN
// is equal to itself.
std::uint64_t bitsOf(double number)
{
    return std::bit_cast<std::uint64_t>(number);
}

std::uint64_t bitsOf(NodeId id)
{
    return id.index;
}

constexpr std::uint64_t mix(std::uint64_t hash, std::uint64_t value)
{
    hash = (hash ^ value) * 0x9e3779b97f4a7c15ULL;
    return hash ^ (hash >> 32);
}

std::uint64_t operationOf(const Node& node)
{
    return static_cast<std::uint64_t>(node.op) | static_cast<std::uint64_t>(node.function) << 8;
}

// A node without a list has operands, a number or an index.
std::uint64_t hashWithoutList(const Node& node)
{
    const std::uint64_t content = bitsOf(node.number) ^ bitsOf(node.a) << 32 ^ (bitsOf(node.b) + node.index);
    return mix(mix(0, content), operationOf(node));
}

// Without the elements of its list.
std::uint64_t hashOfHead(const Node& node)
{
    const std::uint64_t shape =
        static_cast<std::uint64_t>(node.lowest) << 16 | static_cast<std::uint64_t>(node.count) << 32;
    return mix(operationOf(node) | shape, bitsOf(node.a));
}

bool sameHead(const Node& x, const Node& y)
{
    return x.op == y.op && x.a == y.a && x.function == y.function && x.lowest == y.lowest &&
           x.count == y.count && bitsOf(x.number) == bitsOf(y.number);
}

}  // namespace

Graph::Graph() : table_(kSmallestTable, kFree)
{
    nodes_.reserve(kReservedNodes);
    coefficients_.reserve(kReservedCoefficients);
}

std::uint64_t Graph::iHash(const Node& node) const
{
    if (node.count == 0)
        return hashWithoutList(node);
    std::uint64_t hash = hashOfHead(node);
    if (node.op == Op::Polynomial || node.op == Op::Chebyshev) {
        for (const double c : coefficients(node))
            hash = mix(hash, bitsOf(c));
    } else {
        for (const NodeId operand : operands(node))
            hash = mix(hash, bitsOf(operand));
    }
    return hash;
}

std::uint32_t* Graph::iSlot(std::uint64_t hash, const auto& isEqual)
{
    const std::size_t mask = table_.size() - 1;
    std::size_t i = hash & mask;
    for (; table_[i] != kFree && !isEqual(nodes_[table_[i]]); ++lookups_)
        i = (i + 1) & mask;
    full_ |= lookups_ >= kMostLookups;
    return &table_[i];
}

void Graph::iGrowTable()
{
    table_.assign(table_.size() * 4, kFree);
    for (std::uint32_t i = 0; i < nodes_.size(); ++i)
        *iSlot(iHash(nodes_[i]), [](const Node&) { return false; }) = i;
}

NodeId Graph::iAppend(const Node& node, std::uint32_t& slot)
{
    const NodeId id{static_cast<std::uint32_t>(nodes_.size())};
    nodes_.push_back(node);
    slot = id.index;
    if (nodes_.size() * 2 > table_.size())
        iGrowTable();
    full_ |= nodes_.size() + operands_.size() + coefficients_.size() >= kMostNodes;
    return id;
}

NodeId Graph::intern(const Node& node)
{
    if (full_)
        return NodeId{0};
    std::uint32_t* slot = iSlot(hashWithoutList(node), [&](const Node& other) {
        return sameHead(node, other) && node.b == other.b && node.index == other.index;
    });
    return *slot != kFree ? NodeId{*slot} : iAppend(node, *slot);
}

template <class Element>
NodeId Graph::iInternWithList(Node node, std::span<const Element> list, std::vector<Element>& lists)
{
    if (full_)
        return NodeId{0};
    node.count = static_cast<std::uint32_t>(list.size());
    node.index = static_cast<std::uint32_t>(lists.size());
    lists.insert(lists.end(), list.begin(), list.end());
    lookups_ += list.size();
    std::uint32_t* slot = iSlot(iHash(node), [&](const Node& other) {
        return sameHead(node, other) &&
               std::equal(list.begin(), list.end(), lists.begin() + other.index,
                          [](const Element& x, const Element& y) { return bitsOf(x) == bitsOf(y); });
    });
    if (*slot == kFree)
        return iAppend(node, *slot);
    lists.resize(node.index);
    return NodeId{*slot};
}

NodeId Graph::intern(const Node& node, std::span<const NodeId> operands)
{
    return iInternWithList(node, operands, operands_);
}

NodeId Graph::intern(const Node& node, std::span<const double> coefficients)
{
    return iInternWithList(node, coefficients, coefficients_);
}

std::size_t Graph::bytes() const
{
    return nodes_.capacity() * sizeof(Node) + operands_.capacity() * sizeof(NodeId) +
           coefficients_.capacity() * sizeof(double) + table_.capacity() * sizeof(std::uint32_t);
}

}  // namespace mf::engine
