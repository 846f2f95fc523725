#include "mfcurves/engine/program.h"

#include "mfcurves/engine/functionTable.h"
#include "mfcurves/engine/values.h"

#include <algorithm>

namespace mf::engine
{
namespace
{

constexpr std::uint32_t kNoRegister = 0xffffffff;

// factor * node, of which only the node needs a register.
struct Operand {
    NodeId node;
    double factor = 1.0;
};

// Makes one section. The walk goes down the ids, so that all users of a node have
// spoken when its turn comes, and the steps come out last first.
class SectionBuilder
{
public:
    SectionBuilder(const Graph& graph, std::vector<std::uint32_t>& registerOf, std::uint32_t& registers)
        : graph_(graph), registerOf_(registerOf), registers_(registers)
    {
    }

    Section build(NodeId root)
    {
        if (registerOf_.size() < graph_.size())
            registerOf_.resize(graph_.size(), kNoRegister);
        stepOf_.assign(root + 1, kNoRegister);
        section_.result = use(root);
        for (NodeId id = root + 1; id-- > 0;) {
            if (stepOf_[id] != kNoRegister)
                translate(id);
        }
        std::erase_if(section_.code, [](const Instruction& step) { return step.target == kNoRegister; });
        std::ranges::reverse(section_.code);
        section_.registers = registers_;
        return std::move(section_);
    }

private:
    // Sees to it that the node has a register when its user runs, and answers it.
    std::uint32_t use(NodeId id)
    {
        std::uint32_t& place = registerOf_[id];
        if (place != kNoRegister)
            return place;
        const Node& node = graph_[id];
        if (node.op == Op::Variable)
            return place = node.a;
        place = registers_++;
        if (node.op == Op::Constant)
            section_.constants.push_back({place, node.number});
        else
            stepOf_[id] = kPending;
        return place;
    }

    bool isConstant(NodeId id) const { return graph_[id].op == Op::Constant; }

    // A product with a constant is done by whoever uses it.
    Operand scaled(NodeId id) const
    {
        const Node& node = graph_[id];
        if (node.op == Op::Product && isConstant(node.a))
            return {node.b, graph_[node.a].number};
        return {id};
    }

    void translate(NodeId id)
    {
        const Node& node = graph_[id];
        Instruction step;
        step.target = registerOf_[id];
        switch (node.op) {
            case Op::Constant:
            case Op::Variable:
                return;
            case Op::Sum:
                translateSum(node, step);
                break;
            case Op::Product:
                translateProduct(node, step);
                break;
            case Op::Quotient:
                step.code = Code::Quotient;
                step.a = use(node.a);
                step.b = use(node.b);
                step.c[0] = 1.0;
                break;
            case Op::Polynomial:
                translatePolynomial(node, step, kNothing, 1.0);
                break;
            case Op::Chebyshev:
                step.code = Code::Chebyshev;
                step.a = use(node.a);
                copyCoefficients(node, step);
                break;
            case Op::Call1:
                translateCall1(node, step);
                break;
            case Op::Call2:
                step.code = Code::Call2;
                step.a = use(node.a);
                step.b = use(node.b);
                step.value2 = function(node.function).value2;
                break;
            case Op::ChooseLess:
                translateChoice(Code::ChooseLess, node, step);
                break;
            case Op::ChooseSign:
                translateChoice(Code::ChooseSign, node, step);
                break;
            case Op::ChooseStep:
                translateChoice(Code::ChooseStep, node, step);
                break;
        }
        stepOf_[id] = static_cast<std::uint32_t>(section_.code.size());
        section_.code.push_back(step);
    }

    // c2 + c1 * inner, where inner may be v + c0 or a polynomial
    void translateAffine(double c1, double c2, NodeId inner, Instruction& step)
    {
        const Node& node = graph_[inner];
        if (node.op == Op::Polynomial && registerOf_[inner] == kNoRegister) {
            translatePolynomial(node, step, c2, c1);
            return;
        }
        step.code = Code::Affine;
        step.c[0] = kNothing;
        step.c[1] = c1;
        step.c[2] = c2;
        if (node.op == Op::Sum && isConstant(node.a) && registerOf_[inner] == kNoRegister) {
            step.c[0] = graph_[node.a].number;
            inner = node.b;
        }
        step.a = use(inner);
    }

    void translateSum(const Node& node, Instruction& step)
    {
        const Operand second = scaled(node.b);
        if (isConstant(node.a)) {
            translateAffine(second.factor, graph_[node.a].number, second.node, step);
            return;
        }
        const Operand first = scaled(node.a);
        step.code = Code::Sum;
        step.a = use(first.node);
        step.b = use(second.node);
        step.c[0] = first.factor;
        step.c[1] = second.factor;
    }

    void translateProduct(const Node& node, Instruction& step)
    {
        if (!isConstant(node.a)) {
            setBinary(Code::Product, node, 1.0, step);
            return;
        }
        const double factor = graph_[node.a].number;
        const Node& inner = graph_[node.b];
        if (inner.op == Op::Product && !isConstant(inner.a))
            setBinary(Code::Product, inner, factor, step);
        else if (inner.op == Op::Quotient)
            setBinary(Code::Quotient, inner, factor, step);
        else
            translateAffine(factor, kNothing, node.b, step);
    }

    void setBinary(Code code, const Node& node, double factor, Instruction& step)
    {
        step.code = code;
        step.a = use(node.a);
        step.b = use(node.b);
        step.c[0] = factor;
    }

    void translatePolynomial(const Node& node, Instruction& step, double offset, double factor)
    {
        step.code = Code::Polynomial;
        step.a = use(node.a);
        step.lowest = node.lowest;
        copyCoefficients(node, step);
        step.c[0] = offset;
        step.c[1] = factor;
    }

    void copyCoefficients(const Node& node, Instruction& step)
    {
        const auto coefficients = graph_.coefficients(node);
        step.first = static_cast<std::uint32_t>(section_.coefficients.size());
        step.count = node.count;
        section_.coefficients.insert(section_.coefficients.end(), coefficients.begin(), coefficients.end());
    }

    // Where a section asks for the sine and the cosine of one argument, the step
    // that runs first computes both and the other one goes.
    void translateCall1(const Node& node, Instruction& step)
    {
        step.code = Code::Call1;
        step.a = use(node.a);
        step.value1 = function(node.function).value1;
        const bool isSine = node.function == FunctionId::Sin;
        if (!isSine && node.function != FunctionId::Cos)
            return;
        Node other = node;
        other.derivative = kNoNode;
        other.function = isSine ? FunctionId::Cos : FunctionId::Sin;
        const NodeId partner = graph_.find(other);
        if (partner >= stepOf_.size() || stepOf_[partner] >= kPending)
            return;
        Instruction& later = section_.code[stepOf_[partner]];
        step.code = Code::SinCos;
        step.b = isSine ? later.target : step.target;
        step.target = isSine ? step.target : later.target;
        later.target = kNoRegister;
    }

    void translateChoice(Code code, const Node& node, Instruction& step)
    {
        step.code = code;
        step.first = static_cast<std::uint32_t>(section_.lists.size());
        for (const NodeId operand : graph_.operands(node))
            section_.lists.push_back(use(operand));
    }

    static constexpr std::uint32_t kPending = 0xfffffffe;  // used, its turn has not come

    const Graph& graph_;
    std::vector<std::uint32_t>& registerOf_;
    std::uint32_t& registers_;
    std::vector<std::uint32_t> stepOf_;  // by node: its step in this section
    Section section_;
};

}  // namespace

void Translator::clear(std::uint32_t parameterCount)
{
    registerOf_.clear();
    registers_ = parameterCount;
}

Section Translator::translate(const Graph& graph, NodeId root)
{
    return SectionBuilder(graph, registerOf_, registers_).build(root);
}

}  // namespace mf::engine
