// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace mf::engine {

enum class FunctionId : std::uint8_t;

/// Position of a node in its graph. The operands of a node have lower positions, so
/// a walk over ascending ids meets every operand before its users and no stage has
/// to recurse. A type of its own, so that it cannot be mistaken for a number.
struct NodeId {
    std::uint32_t index = 0;

    friend bool operator==(NodeId, NodeId) = default;
    friend bool operator<(NodeId a, NodeId b) { return a.index < b.index; }
};

/// No node. The limits keep every graph smaller than this.
constexpr NodeId kNoNode{0xffffffff};

/// A table with one entry per node, for the first nodes of a graph.
template <class T>
class PerNode {
public:
    void assign(std::size_t count, const T& entry) { entries_.assign(count, entry); }
    void resize(std::size_t count, const T& entry) { entries_.resize(count, entry); }
    std::size_t size() const { return entries_.size(); }
    std::size_t bytes() const { return entries_.capacity() * sizeof(T); }

    decltype(auto) operator[](NodeId id) { return entries_[id.index]; }
    decltype(auto) operator[](NodeId id) const { return entries_[id.index]; }

private:
    std::vector<T> entries_;
};

enum class Op : std::uint8_t {
    Constant,    // number
    Variable,    // index: number of the parameter
    Sum,         // a + b
    Product,     // a * b
    Quotient,    // a / b
    Polynomial,  // u^lowest * (c0 + c1 u + ...), u = a, coefficients from index on
    Chebyshev,   // c0 T0(h) + c1 T1(h) + ..., h = a, coefficients from index on
    Call1,       // function(a)
    Call2,       // function(a, b)
    ChooseLess,  // four operands p, q, r, s from index on: r where p < q, else s
    ChooseSign,  // four operands c, n, z, p from index on: by the sign of c
    ChooseStep   // six operands x, x0, x1, before, between, after from index on
};

struct Node {
    double number = 0.0;
    NodeId a = {};
    NodeId b = {};
    std::uint32_t index = 0;      // of the parameter, or of the first element of its list
    std::uint32_t count = 0;      // of coefficients or operands in its list
    NodeId derivative = kNoNode;  // set once it is known
    std::uint16_t lowest = 0;     // exponent of a polynomial's first coefficient
    Op op = Op::Constant;
    FunctionId function{};
};

/// The expressions of one text as nodes. Equal subexpressions are the same node.
///
/// Errors: a graph that exceeds kMostNodes or kMostLookups takes no more nodes and
/// returns node 0 for every request; `full` is then true.
class Graph {
public:
    Graph();

    /// Returns the node equal to `node`, which is added if it is new. Nodes with a list
    /// of operands get it from `operands`, polynomials get theirs from `coefficients`;
    /// the position of the list is filled in here.
    NodeId intern(const Node& node);
    NodeId intern(const Node& node, std::span<const NodeId> operands);
    NodeId intern(const Node& node, std::span<const double> coefficients);

    const Node& operator[](NodeId id) const { return nodes_[id.index]; }
    void setDerivative(NodeId id, NodeId derivative) { nodes_[id.index].derivative = derivative; }
    std::size_t size() const { return nodes_.size(); }

    std::span<const NodeId> operands(const Node& node) const { return {&operands_[node.index], node.count}; }
    std::span<const double> coefficients(const Node& node) const
    {
        return {&coefficients_[node.index], node.count};
    }

    /// Calls visit(operand) for each operand of a node, from lists too.
    void forEachOperand(const Node& node, auto&& visit) const
    {
        switch (node.op) {
            case Op::Constant:
            case Op::Variable:
                break;
            case Op::Sum:
            case Op::Product:
            case Op::Quotient:
            case Op::Call2:
                visit(node.a);
                visit(node.b);
                break;
            case Op::Polynomial:
            case Op::Chebyshev:
            case Op::Call1:
                visit(node.a);
                break;
            case Op::ChooseLess:
            case Op::ChooseSign:
            case Op::ChooseStep:
                for (const NodeId operand : operands(node))
                    visit(operand);
                break;
        }
    }

    bool full() const { return full_; }
    /// Bytes that the graph holds.
    std::size_t bytes() const;

private:
    template <class Element>
    NodeId iInternWithList(Node node, std::span<const Element> list, std::vector<Element>& lists);
    std::uint32_t* iSlot(std::uint64_t hash, const auto& isEqual);
    NodeId iAppend(const Node& node, std::uint32_t& slot);
    void iGrowTable();
    std::uint64_t iHash(const Node& node) const;

    std::vector<Node> nodes_;
    std::vector<NodeId> operands_;
    std::vector<double> coefficients_;
    std::vector<std::uint32_t> table_;  // positions of nodes; open addressing
    std::size_t lookups_ = 0;
    bool full_ = false;
};

}  // namespace mf::engine
