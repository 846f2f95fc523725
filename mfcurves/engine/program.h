#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "mfcurves/engine/graph.h"

namespace mf::engine {

enum class Code : std::uint8_t {
    Move,        // nothing: a goes from stage to stage
    Sum,         // k0 * a + k1 * b
    Product,     // a * b
    Quotient,    // a / (b + k0)
    Polynomial,  // a^lowest * (k0 + k1 a + ...), count coefficients
    Chebyshev,   // k0 T0(a) + k1 T1(a) + ..., count coefficients
    Call1,       // value1(a)
    Call2,       // value2(a, b)
    SinCos,      // the sine of a, and into b its cosine
    CosSin,      // the cosine of a, and into b its sine
    ChooseLess,  // on a list of four registers, as the node of that name
    ChooseSign,
    ChooseStep  // on a list of six registers
};

/// What constants do to a value v on its way. The last form is the general one;
/// the others leave out what would change no bit.
enum class Stage : std::uint8_t {
    None,
    Scale,   // v * c2 + c3
    Times,   // (v + c0) * c2
    Shift,   // (v + c0) * c2 + c3
    Divide,  // (v + c0) / c1
    General  // (v + c0) / c1 * c2 + c3
};

constexpr std::size_t kStageConstants = 4;

/// One step of a program: an input stage, an operation, an output stage. The laws
/// of motion are mostly constants around one operation on a shifted and scaled
/// x, so that one step does what would be six.
///
/// Operands and results are numbers of registers. Operand a passes through the
/// input stage, if there is one, and what comes out is kept in `moved`; the
/// operation's value is kept in `value`, and what the output stage makes of it in
/// `target`.
struct Instruction {
    using Run = void (*)(const Instruction& step, double* registers);

    Run run = nullptr;  // does the step on one point
    Code code = Code::Move;
    Stage input = Stage::None;
    Stage output = Stage::None;
    std::uint8_t lowest = 0;  // exponent of a polynomial's first coefficient
    bool isLast = false;      // of its program
    std::uint32_t count = 0;
    std::uint32_t a = 0;
    std::uint32_t b = 0;
    std::uint32_t moved = 0;
    std::uint32_t value = 0;
    std::uint32_t target = 0;
    // The operation's constants. Those of the output stage stand right before
    // them, those of the input stage before these.
    const double* constants = nullptr;
    union {
        double (*value1)(double) = nullptr;
        double (*value2)(double, double);
        const std::uint32_t* list;
    };

    const double* inputConstants() const { return constants - 2 * kStageConstants; }
    const double* outputConstants() const { return constants - kStageConstants; }
};

/// Runs a program at one point x, which is the number in register 0, and sets
/// `answer` to that in the register `result`. False, with `answer` untouched, if it is not finite.
using RunProgram = bool (*)(double x, const Instruction& first, double* registers, double& result,
                            double& answer);

/// The steps for one order of a family. Nothing in it changes once it is made.
struct Section {
    struct Constant {
        std::uint32_t target;
        double number;
    };

    std::vector<Instruction> code;    // this order, after the sections of the lower ones have run
    std::vector<Instruction> whole;   // all orders up to this one; not empty
    RunProgram runWhole = nullptr;    // runs the whole at one point, given its first step
    std::vector<Constant> constants;  // registers that hold a number and are filled once
    std::uint32_t result = 0;         // the register that holds the order's value
    std::uint32_t registers = 0;      // how many the sections up to this one use

    std::vector<double> numbers;       // what the constants of the steps point into
    std::vector<std::uint32_t> lists;  // what the lists of the steps point into
};

/// Translates roots of a graph into sections, one after the other. Register i
/// holds parameter i; every other value has a register of its own, so that a
/// section may use whatever those before it have computed.
class Translator {
public:
    void clear(std::uint32_t parameterCount);

    /// The section of the next order; `before` is that of the order below, or null.
    Section translate(const Graph& graph, NodeId root, const Section* before);

    std::size_t bytes() const { return registerOf_.bytes(); }

private:
    PerNode<std::uint32_t> registerOf_;  // kNone where a node has none yet
    std::uint32_t registers_ = 0;
};

}  // namespace mf::engine
