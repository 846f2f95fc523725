#include "mfcurves/engine/program.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "mfcurves/engine/evaluation.h"
#include "mfcurves/engine/functionTable.h"
#include "mfcurves/engine/values.h"

namespace mf::engine {
namespace {

constexpr std::uint32_t kNone = 0xffffffff;

// The constants of a stage, neutral until they are put.
struct StageConstants {
    static constexpr double kNeutral[kStageConstants] = {kNothing, 1.0, 1.0, kNothing};

    double c[kStageConstants] = {kNothing, 1.0, 1.0, kNothing};
    bool isNone = true;

    void addFirst(double number) { put(0, number); }
    void divide(double number) { put(1, number); }
    void multiply(double number) { put(2, number); }
    void addLast(double number) { put(3, number); }

    // The shortest form of a stage that comes after an operation. What is only
    // added may be added last.
    Stage outputForm()
    {
        if (isNone)
            return Stage::None;
        if (has(0) && !has(1) && !has(2) && !has(3))
            std::swap(c[0], c[3]);
        if (has(1))
            return Stage::General;
        return has(0) ? Stage::Shift : Stage::Scale;
    }

    // The shortest form of a stage that comes before one.
    Stage inputForm() const
    {
        if (isNone)
            return Stage::None;
        if (!has(1))
            return has(3) ? Stage::Shift : Stage::Times;
        return has(2) || has(3) ? Stage::General : Stage::Divide;
    }

    // For an angle one factor does for the division and the factor behind it, which
    // have as many roundings. A law's angle must keep its bits at the end of the
    // stretch, where its x has come to be the divisor.
    void joinFactors()
    {
        const double factor = c[2] / c[1];
        if (has(1) && has(2) && c[1] * factor == c[2]) {
            c[1] = 1.0;
            c[2] = factor;
        }
    }

private:
    bool has(std::size_t place) const
    {
        return std::bit_cast<std::uint64_t>(c[place]) != std::bit_cast<std::uint64_t>(kNeutral[place]);
    }
    void put(std::size_t place, double number)
    {
        c[place] = number;
        isNone = false;
    }
};

// A step that is not yet written down: its place in the program is open.
struct Draft {
    Instruction step;
    StageConstants input;
    StageConstants output;
    NodeId node;  // whose operation it is
};

bool isSine(const Instruction& step)
{
    return step.code == Code::Call1 && step.value1 == function(FunctionId::Sin).value1;
}

bool isCosine(const Instruction& step)
{
    return step.code == Code::Call1 && step.value1 == function(FunctionId::Cos).value1;
}

// Where both the sine and the cosine of a register are asked for, the step that
// comes first computes both. What is left of the other is its output stage.
void mergeSinesAndCosines(std::vector<Instruction>& code, std::uint32_t registers)
{
    if (std::ranges::none_of(code, isSine) || std::ranges::none_of(code, isCosine))
        return;
    thread_local std::vector<std::uint32_t>
        firstOn;  // by register: the first step that takes its sine or cosine
    firstOn.assign(registers, kNone);
    for (std::uint32_t i = 0; i < code.size(); ++i) {
        Instruction& step = code[i];
        if (!isSine(step) && !isCosine(step))
            continue;
        std::uint32_t& first = firstOn[step.input != Stage::None ? step.moved : step.a];
        if (first == kNone) {
            first = i;
            continue;
        }
        Instruction& both = code[first];
        if (both.code != Code::Call1 || isSine(both) == isSine(step))
            continue;
        both.code = isSine(both) ? Code::SinCos : Code::CosSin;
        both.b = step.value;
        step.code = Code::Move;
        step.input = Stage::None;
        step.a = step.value;
    }
    std::erase_if(code, [](const Instruction& step) {
        return step.code == Code::Move && step.input == Stage::None && step.output == Stage::None;
    });
}

void chooseRuns(std::vector<Instruction>& code)
{
    for (Instruction& step : code)
        step.run = runFor(step);
}

// A whole without steps gets one that changes nothing.
void finishWhole(Section& section)
{
    std::vector<Instruction>& whole = section.whole;
    if (whole.empty())
        whole.emplace_back();
    for (Instruction& step : whole)
        step.isLast = &step == &whole.back();
    chooseRuns(whole);
    section.runWhole = runForProgram(whole, section.result);
}

// Makes one section. The walk goes down the ids, so that all users of a node have
// spoken when its turn comes, and the steps come out last first.
//
// A step with one operand waits at that operand and runs right after it, or as
// part of the same step: there nothing can stand between them.
class SectionBuilder {
public:
    SectionBuilder(const Graph& graph, PerNode<std::uint32_t>& registerOf, std::uint32_t& registers)
        : graph_(graph), registerOf_(registerOf), registers_(registers)
    {
    }

    Section build(NodeId root)
    {
        if (registerOf_.size() < graph_.size())
            registerOf_.resize(graph_.size(), kNone);
        pending_.assign(root.index + 1, false);
        waitingAt_.assign(root.index + 1, kNone);
        drafts_.clear();
        section_.result = use(root);
        for (std::uint32_t i = root.index + 1; i-- > 0;) {
            const NodeId id{i};
            if (pending_[id])
                translate(id);
            else if (waitingAt_[id] != kNone)
                write(takeWaiting(id), registerOf_[id]);
        }
        finish();
        return std::move(section_);
    }

private:
    // Sees to it that the node has a register when its user runs, and answers it.
    std::uint32_t use(NodeId id)
    {
        std::uint32_t& place = registerOf_[id];
        if (place != kNone)
            return place;
        const Node& node = graph_[id];
        if (node.op == Op::Variable)
            return place = node.index;
        place = registers_++;
        if (node.op == Op::Constant)
            section_.constants.push_back({place, node.number});
        else
            pending_[id] = true;
        return place;
    }

    bool isConstant(NodeId id) const { return graph_[id].op == Op::Constant; }
    double number(NodeId id) const { return graph_[id].number; }

    // Takes the constants around a node off: what is left is answered. A part that
    // has a register already is left whole.
    NodeId peel(NodeId id, StageConstants& stage) const
    {
        if (graph_[id].op == Op::Sum && isConstant(graph_[id].a)) {
            const NodeId inner = graph_[id].b;
            if (graph_[inner].op != Op::Product && graph_[inner].op != Op::Quotient) {
                stage.addFirst(number(graph_[id].a));
                return inner;
            }
            stage.addLast(number(graph_[id].a));
            id = inner;
        }
        if (isOpen(id, stage) && graph_[id].op == Op::Product && isConstant(graph_[id].a)) {
            stage.multiply(number(graph_[id].a));
            id = graph_[id].b;
        }
        if (isOpen(id, stage) && graph_[id].op == Op::Quotient && isConstant(graph_[id].b)) {
            stage.divide(number(graph_[id].b));
            id = graph_[id].a;
        }
        if (isOpen(id, stage) && graph_[id].op == Op::Sum && isConstant(graph_[id].a)) {
            stage.addFirst(number(graph_[id].a));
            id = graph_[id].b;
            peelSign(id, stage);
        }
        return id;
    }

    // (c - v) * k + l is (v - c) * -k + l, bit for bit as long as l hides the sign
    // of a zero.
    void peelSign(NodeId& id, StageConstants& stage) const
    {
        const Node& node = graph_[id];
        if (node.op != Op::Product || !isConstant(node.a, -1.0) || stage.c[3] == 0.0)
            return;
        stage.c[0] = -stage.c[0];
        stage.c[2] = -stage.c[2];
        id = node.b;
    }

    bool isConstant(NodeId id, double value) const { return isConstant(id) && number(id) == value; }

    bool isOpen(NodeId id, const StageConstants& stage) const
    {
        return stage.isNone || registerOf_[id] == kNone;
    }

    void translate(NodeId id)
    {
        Draft draft;
        draft.node = id;
        const NodeId base = peel(id, draft.output);
        if (base == id)
            translateOperation(draft);
        else
            translateStage(draft, base);
    }

    // A node that is only constants around another: the input stage of the step
    // that waits for it, or else the output stage of the one it waits for.
    void translateStage(Draft& draft, NodeId base)
    {
        const std::uint32_t waiting = waitingAt_[draft.node];
        if (waiting != kNone && !drafts_[waiting].input.isNone)
            write(takeWaiting(draft.node), registerOf_[draft.node]);
        else if (waiting != kNone) {
            Draft user = takeWaiting(draft.node);
            user.input = draft.output;
            user.step.moved = registerOf_[draft.node];
            waitAt(base, user);
            return;
        }
        draft.step.code = Code::Move;
        draft.step.target = registerOf_[draft.node];
        waitAt(base, draft);
    }

    void translateOperation(Draft& draft)
    {
        const Node& node = graph_[draft.node];
        Instruction& step = draft.step;
        step.value = registerOf_[draft.node];
        if (waitingAt_[draft.node] != kNone) {
            Draft& waiting = drafts_[waitingAt_[draft.node]];
            if (waiting.step.code == Code::Move && waiting.input.isNone) {
                draft.output = waiting.output;
                step.target = waiting.step.target;
                waitingAt_[draft.node] = kNone;
            } else {
                write(takeWaiting(draft.node), step.value);
            }
        }
        switch (node.op) {
            case Op::Constant:
            case Op::Variable:
                return;
            case Op::Sum:
                step.code = Code::Sum;
                break;
            case Op::Product:
                step.code = Code::Product;
                break;
            case Op::Quotient:
                step.code = Code::Quotient;
                break;
            case Op::Polynomial:
                step.code = Code::Polynomial;
                break;
            case Op::Chebyshev:
                step.code = Code::Chebyshev;
                break;
            case Op::Call1:
                step.code = Code::Call1;
                step.value1 = function(node.function).value1;
                break;
            case Op::Call2:
                step.code = Code::Call2;
                step.value2 = function(node.function).value2;
                break;
            case Op::ChooseLess:
                step.code = Code::ChooseLess;
                break;
            case Op::ChooseSign:
                step.code = Code::ChooseSign;
                break;
            case Op::ChooseStep:
                step.code = Code::ChooseStep;
                break;
        }
        const bool one = node.op == Op::Polynomial || node.op == Op::Chebyshev || node.op == Op::Call1;
        if (one)
            waitAt(node.a, draft);
        else
            write(draft, kNone);
    }

    // Where another step waits already, this one is written down at its own place.
    void waitAt(NodeId operand, const Draft& draft)
    {
        const std::uint32_t place = use(operand);
        if (waitingAt_[operand] != kNone) {
            write(draft, place);
            return;
        }
        waitingAt_[operand] = static_cast<std::uint32_t>(drafts_.size());
        drafts_.push_back(draft);
    }

    Draft takeWaiting(NodeId operand)
    {
        const Draft draft = drafts_[waitingAt_[operand]];
        waitingAt_[operand] = kNone;
        return draft;
    }

    // A product with a constant is done by the sum that uses it.
    std::uint32_t useScaled(NodeId id, double& factor)
    {
        const Node& node = graph_[id];
        const bool scaled = node.op == Op::Product && isConstant(node.a) && registerOf_[id] == kNone;
        factor = scaled ? number(node.a) : 1.0;
        return use(scaled ? node.b : id);
    }

    // A constant added to a divisor is added by the quotient.
    std::uint32_t useShifted(NodeId id, double& shift)
    {
        const Node& node = graph_[id];
        if (node.op != Op::Sum || !isConstant(node.a) || registerOf_[id] != kNone)
            return use(id);
        shift = number(node.a);
        return use(node.b);
    }

    void write(const Draft& draft, std::uint32_t operand)
    {
        Instruction step = draft.step;
        const Node& node = graph_[draft.node];
        std::vector<double>& numbers = section_.numbers;

        // A step that only moves has its one stage as the input stage.
        const bool onlyMoves = step.code == Code::Move;
        const bool hasOneStage = onlyMoves && draft.input.isNone;
        StageConstants input = hasOneStage ? draft.output : draft.input;
        if (isSine(step) || isCosine(step))
            input.joinFactors();
        StageConstants output = hasOneStage ? StageConstants() : draft.output;
        if (hasOneStage)
            step.moved = step.target;
        if (onlyMoves)
            step.value = step.moved;
        step.input = input.inputForm();
        step.output = output.outputForm();
        if (!input.isNone)
            numbers.insert(numbers.end(), input.c, input.c + kStageConstants);
        if (!input.isNone || !output.isNone)
            numbers.insert(numbers.end(), output.c, output.c + kStageConstants);
        step.a = operand;
        step.constants = nullptr;
        const std::size_t first = numbers.size();

        switch (step.code) {
            case Code::Sum: {
                double factors[2];
                step.a = useScaled(node.a, factors[0]);
                step.b = useScaled(node.b, factors[1]);
                numbers.insert(numbers.end(), factors, factors + 2);
                break;
            }
            case Code::Quotient:
                step.a = use(node.a);
                numbers.push_back(kNothing);
                step.b = useShifted(node.b, numbers.back());
                break;
            case Code::Product:
            case Code::Call2:
                step.a = use(node.a);
                step.b = use(node.b);
                break;
            case Code::Polynomial:
            case Code::Chebyshev: {
                const auto coefficients = graph_.coefficients(node);
                step.count = node.count;
                step.lowest = static_cast<std::uint8_t>(node.lowest);
                numbers.insert(numbers.end(), coefficients.begin(), coefficients.end());
                break;
            }
            case Code::ChooseLess:
            case Code::ChooseSign:
            case Code::ChooseStep:
                step.a = 0;
                firstInList_.push_back(section_.lists.size());
                for (const NodeId id : graph_.operands(node))
                    section_.lists.push_back(use(id));
                break;
            default:
                break;
        }
        firstNumber_.push_back(first);
        section_.code.push_back(step);
    }

    // Puts the steps into the order in which they run and, now that the tables of
    // numbers and lists stand still, points them there.
    void finish()
    {
        std::size_t list = 0;
        for (std::size_t i = 0; i < section_.code.size(); ++i) {
            Instruction& step = section_.code[i];
            step.constants = section_.numbers.data() + firstNumber_[i];
            const bool chooses = step.code == Code::ChooseLess || step.code == Code::ChooseSign ||
                                 step.code == Code::ChooseStep;
            if (chooses)
                step.list = section_.lists.data() + firstInList_[list++];
        }
        std::ranges::reverse(section_.code);
        mergeSinesAndCosines(section_.code, registers_);
        section_.registers = registers_;
    }

    const Graph& graph_;
    PerNode<std::uint32_t>& registerOf_;
    std::uint32_t& registers_;
    PerNode<bool> pending_;             // its turn will come in this section
    PerNode<std::uint32_t> waitingAt_;  // the draft that waits for it
    std::vector<Draft> drafts_;
    std::vector<std::size_t> firstNumber_;  // by step
    std::vector<std::size_t> firstInList_;  // by choosing step
    Section section_;
};

}  // namespace

void Translator::clear(std::uint32_t parameterCount)
{
    registerOf_.clear();
    registers_ = parameterCount;
}

Section Translator::translate(const Graph& graph, NodeId root, const Section* before)
{
    Section section = SectionBuilder(graph, registerOf_, registers_).build(root);
    chooseRuns(section.code);
    if (before != nullptr)
        section.whole = before->whole;
    section.whole.insert(section.whole.end(), section.code.begin(), section.code.end());
    mergeSinesAndCosines(section.whole, registers_);
    finishWhole(section);
    return section;
}

}  // namespace mf::engine
