// SPDX-License-Identifier: MIT

// From a graph to the steps of a program.
//
// Each node whose value is needed gets a register. The walk goes down the ids of the
// nodes, from the root to the parameters, so that all users of a node come before it.
// The steps are written in reverse order and reversed at the end.
//
// Constants around an operation are not steps of their own: they become its stages.
// Therefore a step with one operand is not written at once. It waits at that operand,
// and when the walk reaches the operand, the two may become parts of one step.
// For example 3-8*(10*u^3-15*u^4) with u = (x-0.5)/1.75 is the graph
//
//      n1 = x - 0.5      n2 = n1 / 1.75      n3 = -80 n2^3 + 120 n2^4      n4 = 3 + n3
//
// and the walk goes
//
//      n4  only a constant around n3: a Move with an output stage, which waits at n3
//      n3  the operation itself: takes the stage of the Move, and waits at n2
//      n2  only constants around x: becomes the input stage of the step that waits, now at x
//      x   has a register, and nothing else can be joined: the step is written
//
// which leaves one step, where register r0 is x, r3 is n2, r2 is n3 and r1 is n4:
//
//      r3 = (r0 + -0.5) / 1.75 * 1 + -0; r2 = r3^3 * [-80, 120]; r1 = r2 * 1 + 3
//
// For the next order n2 already has a register, and only a polynomial of r3 is new:
//
//      r4 = r3^2 * [-137.143, 274.286]
//
// A program of several orders has the steps of all of them. In it a polynomial and its
// derivatives become one step, and so do the sine and the cosine of one register, where
// both are needed (merging.h).

#include "mfcurves/engine/translator.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "mfcurves/engine/functionTable.h"
#include "mfcurves/engine/merging.h"
#include "mfcurves/engine/openStage.h"
#include "mfcurves/engine/peeling.h"

namespace mf::engine {
namespace {

// Room that is enough for most texts: nodes of the value and its first derivatives, steps and numbers of
// the value, pending steps of one order.
constexpr std::size_t kUsualNodes = 64;
constexpr std::size_t kUsualSteps = 4;
constexpr std::size_t kUsualNumbers = 8;
constexpr std::size_t kUsuallyPending = 4;

// The operation of the step for a node. Constants and variables are registers and do not
// need one.
Code codeOf(Op op)
{
    static constexpr Code kCodes[] = {Code::Move,     Code::Move,       Code::Sum,        Code::Product,
                                      Code::Quotient, Code::Polynomial, Code::Chebyshev,  Code::Call1,
                                      Code::Call2,    Code::ChooseLess, Code::ChooseSign, Code::ChooseStep};
    static_assert(std::size(kCodes) == static_cast<std::size_t>(Op::ChooseStep) + 1);
    return kCodes[static_cast<std::size_t>(op)];
}

bool hasOneOperand(Code code)
{
    return code == Code::Polynomial || code == Code::Chebyshev || code == Code::Call1;
}

bool isCall(const Step& step, FunctionId id)
{
    return step.code == Code::Call1 && step.function == id;
}

// Writes the steps of one order. A step with one operand waits at that operand and runs
// right after it, or as part of the same step: nothing can come between them.
class OrderWriter {
public:
    OrderWriter(const Graph& graph, PerNode<NodePlace>& places, std::vector<PendingStep>& pending,
                Draft& draft)
        : graph_(graph),
          places_(places),
          pending_(pending),
          draft_(draft),
          order_(static_cast<int>(draft.results.size())),
          firstRegister_(draft.registers)
    {
        pending_.clear();
    }

    void write(NodeId root)
    {
        const auto firstEntry = std::ssize(draft_.entries);
        if (places_.size() < graph_.size())
            places_.resize(std::max(graph_.size(), kUsualNodes), NodePlace());
        draft_.results.push_back(use(root));
        for (std::uint32_t i = root.index + 1; i-- > lowest_;) {
            const NodeId id{i};
            if (isNew(id))
                translate(id);
            else if (places_[id].hasWaiting())
                write(takeWaiting(id), places_[id].number);
        }
        std::reverse(draft_.entries.begin() + firstEntry, draft_.entries.end());
    }

private:
    // Returns the register of a node and makes sure that it is computed before its user runs.
    std::uint32_t use(NodeId id)
    {
        NodePlace& place = places_[id];
        if (place.hasRegister())
            return place.number;
        const Node& node = graph_[id];
        if (node.op == Op::Variable)
            return place.number = node.index;
        place.number = draft_.registers++;
        if (node.op == Op::Constant)
            draft_.constants.push_back({node.number, place.number});
        else
            lowest_ = std::min(lowest_, id.index);
        return place.number;
    }

    // Whether this order has to compute the node: an earlier one did not need it.
    bool isNew(NodeId id) const
    {
        const NodePlace& place = places_[id];
        return place.hasRegister() && place.number >= firstRegister_ && !isConstant(id);
    }

    bool isConstant(NodeId id) const { return graph_[id].op == Op::Constant; }
    double number(NodeId id) const { return graph_[id].number; }

    void translate(NodeId id)
    {
        PendingStep pending;
        pending.node = id;
        const NodeId base = peel(graph_, places_, id, pending.output);
        if (base == id)
            translateOperation(pending);
        else
            translateStage(pending, base);
    }

    // A node that is only constants around another one becomes the input stage of the step
    // that waits for it, or else the output stage of the step that computes the other node.
    void translateStage(PendingStep& pending, NodeId base)
    {
        const NodePlace& place = places_[pending.node];
        if (place.hasWaiting() && pending_[place.waiting].input.isNone) {
            PendingStep user = takeWaiting(pending.node);
            user.input = pending.output;
            user.moved = place.number;
            waitAt(base, user);
            return;
        }
        if (place.hasWaiting())
            write(takeWaiting(pending.node), place.number);
        pending.target = place.number;
        waitAt(base, pending);
    }

    void translateOperation(PendingStep& pending)
    {
        const Node& node = graph_[pending.node];
        pending.value = places_[pending.node].number;
        if (places_[pending.node].hasWaiting())
            joinWaiting(pending);
        pending.code = codeOf(node.op);
        pending.function = node.function;
        if (hasOneOperand(pending.code))
            waitAt(node.a, pending);
        else
            write(pending, kNoRegister);
    }

    // Adopts the stage of a waiting step that only moves what this one computes. Any other
    // waiting step is written.
    void joinWaiting(PendingStep& pending)
    {
        const PendingStep waiting = takeWaiting(pending.node);
        if (waiting.code == Code::Move && waiting.input.isNone) {
            pending.output = waiting.output;
            pending.target = waiting.target;
        } else {
            write(waiting, pending.value);
        }
    }

    // If another step already waits there, this one is written now.
    void waitAt(NodeId operand, const PendingStep& pending)
    {
        const std::uint32_t place = use(operand);
        if (places_[operand].hasWaiting()) {
            write(pending, place);
            return;
        }
        lowest_ = std::min(lowest_, operand.index);
        places_[operand].waiting = static_cast<std::uint32_t>(pending_.size());
        pending_.push_back(pending);
    }

    PendingStep takeWaiting(NodeId operand)
    {
        return pending_[std::exchange(places_[operand].waiting, NodePlace::kNone)];
    }

    // `operand` is the register of the operand of a step that has one.
    void write(const PendingStep& pending, std::uint32_t operand)
    {
        Draft::Entry& entry = draft_.entries.emplace_back();
        entry.step.code = pending.code;
        entry.step.function = pending.function;
        entry.step.a = operand;
        entry.step.moved = pending.moved;
        entry.step.value = pending.value;
        entry.step.target = pending.target;
        entry.order = order_;
        entry.firstNumber = static_cast<std::uint32_t>(draft_.numbers.size());
        entry.firstInList = static_cast<std::uint32_t>(draft_.lists.size());
        writeStages(pending, entry.step);
        writeOperands(graph_[pending.node], entry.step);
        entry.numbers = static_cast<std::uint32_t>(draft_.numbers.size()) - entry.firstNumber;
        entry.listed = static_cast<std::uint32_t>(draft_.lists.size()) - entry.firstInList;
    }

    static void writeStages(const PendingStep& pending, Step& step)
    {
        OpenStage input = pending.input;
        OpenStage output = pending.output;
        // A step that only moves has its one stage as the input stage.
        if (step.code == Code::Move && input.isNone) {
            input = std::exchange(output, OpenStage());
            step.moved = step.target;
        }
        if (step.code == Code::Move)
            step.value = step.moved;
        if (isCall(step, FunctionId::Sin) || isCall(step, FunctionId::Cos))
            input.joinFactors();
        step.input = input.form();
        step.before = input.constants;
        step.output = output.form();
        step.after = output.constants;
        if (output.isNone)
            step.target = step.value;
    }

    void writeOperands(const Node& node, Step& step)
    {
        switch (step.code) {
            case Code::Sum:
                writeSum(node, step);
                break;
            case Code::Quotient:
                writeQuotient(node, step);
                break;
            case Code::Product:
                step.a = use(node.a);
                step.b = use(node.b);
                break;
            case Code::Call1:
                step.value1 = function(node.function).value1;
                break;
            case Code::Call2:
                step.a = use(node.a);
                step.b = use(node.b);
                step.value2 = function(node.function).value2;
                break;
            case Code::Polynomial:
            case Code::Chebyshev:
                writeCoefficients(node, step);
                break;
            case Code::ChooseLess:
            case Code::ChooseSign:
            case Code::ChooseStep:
                step.a = 0;
                for (const NodeId id : graph_.operands(node))
                    draft_.lists.push_back(use(id));
                break;
            case Code::Move:
            case Code::SinCos:
            case Code::CosSin:
            case Code::ProductPlus:
            case Code::TwoProducts:
            case Code::ProductOver:
            case Code::ProductPlusOver:
                break;  // only stages, or not written but merged
        }
    }

    // A sum computes the products with constants that it uses.
    void writeSum(const Node& node, Step& step)
    {
        double factors[2];
        step.a = useScaled(node.a, factors[0]);
        step.b = useScaled(node.b, factors[1]);
        draft_.numbers.insert(draft_.numbers.end(), factors, factors + 2);
    }

    std::uint32_t useScaled(NodeId id, double& factor)
    {
        const Node& node = graph_[id];
        const bool scaled = node.op == Op::Product && isConstant(node.a) && !places_[id].hasRegister();
        factor = scaled ? number(node.a) : 1.0;
        return use(scaled ? node.b : id);
    }

    // A quotient adds the constant of a divisor that is a sum.
    void writeQuotient(const Node& node, Step& step)
    {
        step.a = use(node.a);
        const Node& divisor = graph_[node.b];
        const bool shifted = divisor.op == Op::Sum && isConstant(divisor.a) && !places_[node.b].hasRegister();
        step.b = use(shifted ? divisor.b : node.b);
        draft_.numbers.push_back(shifted ? number(divisor.a) : kNeutralAddend);
    }

    void writeCoefficients(const Node& node, Step& step)
    {
        const auto coefficients = graph_.coefficients(node);
        step.terms = node.count;
        step.lowest = static_cast<std::uint8_t>(node.lowest);
        draft_.numbers.insert(draft_.numbers.end(), coefficients.begin(), coefficients.end());
    }

    const Graph& graph_;
    PerNode<NodePlace>& places_;
    std::vector<PendingStep>& pending_;
    Draft& draft_;
    const int order_;
    const std::uint32_t firstRegister_;     // of those that this order adds
    std::uint32_t lowest_ = kNoNode.index;  // of the nodes to translate or to write steps at
};

Draft merged(Draft draft)
{
    mergeSinesAndCosines(draft);
    mergeDerivatives(draft);
    mergeProducts(draft);
    return draft;
}

}  // namespace

Translator::Translator(std::uint32_t parameterCount)
{
    draft_.registers = parameterCount;
    draft_.parameters = parameterCount;
    draft_.results.reserve(kUsualOrder + 1);
    draft_.entries.reserve(kUsualSteps);
    draft_.numbers.reserve(kUsualNumbers);
    pending_.reserve(kUsuallyPending);
}

// Most derivatives take about as many steps as the value.
void Translator::add(const Graph& graph, NodeId root)
{
    if (highestOrder() == 0) {
        draft_.entries.reserve((kUsualOrder + 1) * draft_.entries.size());
        draft_.numbers.reserve((kUsualOrder + 1) * draft_.numbers.size());
    }
    OrderWriter(graph, places_, pending_, draft_).write(root);
}

Draft Translator::draft() const&
{
    return merged(draft_);
}

Draft Translator::draft() &&
{
    return merged(std::move(draft_));
}

std::size_t Translator::bytes() const
{
    return places_.bytes() + pending_.capacity() * sizeof(PendingStep) +
           draft_.entries.capacity() * sizeof(Draft::Entry) + draft_.numbers.capacity() * sizeof(double) +
           draft_.lists.capacity() * sizeof(std::uint32_t) +
           draft_.constants.capacity() * sizeof(Draft::Constant);
}

}  // namespace mf::engine
