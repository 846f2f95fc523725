// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>

#include "mfcurves/engine/graph.h"

namespace mf::engine {

/// What simplification may change. KeepText, for the value: the result stays that of the
/// text for every x, failures included. Free, for derivatives, which have no text of
/// their own: `0 * f` is 0 even where f is not defined.
enum class Folding : std::uint8_t { KeepText, Free };

class Term;

/// Makes the terms of one graph under one folding rule. It must outlive its terms.
class TermMaker {
public:
    TermMaker(Graph& graph, Folding folding) : graph_(graph), folding_(folding) {}
    TermMaker(const TermMaker&) = delete;
    TermMaker& operator=(const TermMaker&) = delete;

    Term constant(double number);
    Term variable(std::uint32_t number);
    /// The term of a node that is already in the graph.
    Term term(NodeId id);
    /// The term of a node as it is, without simplification.
    Term make(const Node& node);
    Term make(const Node& node, std::span<const NodeId> operands);
    Term make(const Node& node, std::span<const double> coefficients);

    Graph& graph() { return graph_; }
    bool isFree() const { return folding_ == Folding::Free; }

private:
    Graph& graph_;
    Folding folding_;
};

/// A node together with its maker, so that formulas of nodes read as formulas.
///
/// Each operator and function below returns the simplest term that the folding rule
/// allows: constants are folded by the functions that evaluate them, neutral elements are
/// dropped, and monomials in one inner variable are gathered into polynomials.
///
/// KeepText costs no accuracy: it allows only changes that are exact, or that round in
/// the same places as the text. The sign of a zero may change; only a division by the
/// zero shows it.
class Term {
public:
    Term(TermMaker& maker, NodeId id) : maker_(&maker), id_(id) {}

    NodeId id() const { return id_; }
    TermMaker& maker() const { return *maker_; }
    bool isFree() const { return maker_->isFree(); }

    /// Valid until the next node is made.
    const Node& node() const { return maker_->graph()[id_]; }
    Op op() const { return node().op; }
    Term a() const { return {*maker_, node().a}; }
    Term b() const { return {*maker_, node().b}; }
    Term operand(std::size_t i) const { return {*maker_, maker_->graph().operands(node())[i]}; }
    std::span<const double> coefficients() const { return maker_->graph().coefficients(node()); }

    bool isConstant() const { return op() == Op::Constant; }
    bool isConstant(double number) const { return isConstant() && node().number == number; }
    /// The number of a constant.
    double number() const { return node().number; }

    /// A constant of the same maker.
    Term constant(double number) const { return maker_->constant(number); }

    /// Whether both are the same node.
    friend bool operator==(Term x, Term y) { return x.id_ == y.id_; }

private:
    TermMaker* maker_;
    NodeId id_;
};

inline Term TermMaker::term(NodeId id)
{
    return {*this, id};
}

inline Term TermMaker::make(const Node& node)
{
    return term(graph_.intern(node));
}

inline Term TermMaker::make(const Node& node, std::span<const NodeId> operands)
{
    return term(graph_.intern(node, operands));
}

inline Term TermMaker::make(const Node& node, std::span<const double> coefficients)
{
    return term(graph_.intern(node, coefficients));
}

Term operator+(Term a, Term b);
Term operator+(double a, Term b);
Term operator-(Term a);
Term operator-(Term a, Term b);
Term operator-(double a, Term b);
Term operator*(Term a, Term b);
Term operator*(double factor, Term a);
Term operator/(Term a, Term b);
Term operator/(double a, Term b);

Term power(Term base, Term exponent);
Term power(Term base, double exponent);
Term square(Term a);

/// u^lowest * (c0 + c1 u + c2 u^2 + ...)
Term polynomial(Term u, int lowest, std::span<const double> coefficients);
/// c0 T0(h) + c1 T1(h) + ... with the Chebyshev polynomials T of the first kind.
Term chebyshev(Term h, std::span<const double> coefficients);

Term call(FunctionId function, Term a);
Term call(FunctionId function, Term a, Term b);

/// `ifLess` where p < q, else `otherwise`.
Term chooseLess(Term p, Term q, Term ifLess, Term otherwise);
/// One of three terms by the sign of c.
Term chooseSign(Term c, Term ifNegative, Term ifZero, Term ifPositive);
/// `before` up to x0, `after` from x1 on, else `between`; undefined where x1 is not above x0.
Term chooseStep(Term x, Term x0, Term x1, Term before, Term between, Term after);

}  // namespace mf::engine
