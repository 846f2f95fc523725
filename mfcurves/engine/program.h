// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "mfcurves/engine/functionTable.h"

namespace mf::engine {

/// x + kNeutralAddend is x for every x, -0.0 included.
constexpr double kNeutralAddend = -0.0;

constexpr std::uint32_t kNoRegister = 0xffffffff;

/// The highest order that most hosts use. They nearly always use all orders up to it.
constexpr int kUsualOrder = 3;

enum class Code : std::uint8_t {
    Move,        // a
    Sum,         // k0 * a + k1 * b
    Product,     // a * b
    Quotient,    // a / (b + k0)
    Polynomial,  // a^lowest * (k0 + k1 a + ...), and derivatives of it
    Chebyshev,   // k0 T0(a) + k1 T1(a) + ...
    Call1,       // function(a)
    Call2,       // function(a, b)
    SinCos,      // the sine of a, and into b its cosine
    CosSin,      // the cosine of a, and into b its sine
    // On lists of three to six registers, here p, q, r, s:
    ProductPlus,      // k0 * (p * q) + k1 * r
    TwoProducts,      // k0 * (p * q) + k1 * (r * s)
    ProductOver,      // p * q / (r + k0)
    ProductPlusOver,  // (k0 * (p * q) + k1 * r) / (s + k2)
    ChooseLess,       // as the node of that name
    ChooseSign,
    ChooseStep
};

/// What constants do to a value v before an operation or after it. The last form is the
/// general one; the others leave out what would not change a bit.
enum class Stage : std::uint8_t {
    None,
    Linear,   // v * factor + last
    Shifted,  // (v + first) * factor + last
    General   // (v + first) / divisor * factor + last
};

struct StageConstants {
    double first = kNeutralAddend;
    double divisor = 1.0;
    double factor = 1.0;
    double last = kNeutralAddend;
};

/// One step of a program: an input stage, an operation, an output stage. Motion laws
/// are mostly constants around one operation on a shifted and scaled x, so one step
/// replaces six.
///
/// Operands and results are register numbers. If an operation has only one operand, the
/// operand passes through the input stage, if there is one, and the result goes to
/// `moved`. The operation's value goes to `value`, and the result of the output stage to
/// `target`; without an output stage these are the same register.
///
/// A polynomial may also compute its first derivatives with respect to its operand.
/// Their constants follow its own, in the same form; `list` has their registers.
struct Step {
    using Run = void (*)(const Step& step, double* registers);

    Run run = nullptr;  // does the step on one point
    Code code = Code::Move;
    Stage input = Stage::None;
    Stage output = Stage::None;
    FunctionId function{};         // of a call
    std::uint8_t lowest = 0;       // exponent of a polynomial's first term
    std::uint8_t derivatives = 0;  // that a polynomial computes as well
    std::uint32_t terms = 0;       // of a polynomial or a Chebyshev sum
    std::uint32_t a = 0;
    std::uint32_t b = 0;
    std::uint32_t moved = 0;
    std::uint32_t value = 0;
    std::uint32_t target = 0;
    const double* constants = nullptr;  // k0, k1, ...
    union {
        const std::uint32_t* list = nullptr;  // of registers
        double (*value1)(double);
        double (*value2)(double, double);
    };
    StageConstants before;
    StageConstants after;

    /// The register of the first operand after the input stage.
    std::uint32_t operand() const { return input == Stage::None ? a : moved; }
};

/// Number of terms and lowest exponent of a polynomial.
struct PolynomialForm {
    std::uint32_t terms;
    unsigned lowest;

    bool operator==(const PolynomialForm&) const = default;
    constexpr PolynomialForm derivative() const
    {
        return lowest == 0 ? PolynomialForm{terms - 1, 0} : PolynomialForm{terms, lowest - 1};
    }
};

/// Steps while they are written. Their tables of numbers and lists still grow, so entries
/// have positions in them instead of pointers.
struct Draft {
    struct Entry {
        Step step;
        int order = 0;  // the lowest that needs the step
        std::uint32_t firstNumber = 0;
        std::uint32_t numbers = 0;
        std::uint32_t firstInList = 0;
        std::uint32_t listed = 0;
    };
    struct Constant {
        double number;
        std::uint32_t target;
    };

    std::vector<Entry> entries;
    std::vector<double> numbers;
    std::vector<std::uint32_t> lists;
    std::vector<Constant> constants;     // registers that hold a number
    std::vector<std::uint32_t> results;  // by order: the register that holds its value
    std::uint32_t registers = 0;
    std::uint32_t parameters = 0;
};

/// The steps that compute the orders 0 to highestOrder() of one expression. Register i
/// holds parameter i; each other value has a register of its own.
///
/// Threads: a program never changes, so any number of threads may run it, each with
/// registers of its own.
class Program {
public:
    explicit Program(const Draft& draft);
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    int highestOrder() const { return static_cast<int>(orders_.size()) - 1; }
    std::uint32_t parameterCount() const { return parameters_; }
    std::uint32_t registerCount() const { return registers_; }

    /// The steps that compute the orders up to this one.
    std::span<const Step> steps(int order) const { return steps_.first(orders_[order].steps); }
    /// The register of an order's value. Steps write it, unless it belongs to a parameter
    /// or a constant.
    std::uint32_t result(int order) const { return orders_[order].result; }
    /// Whether a step writes the register of an order's value.
    bool isComputed(int order) const;

    /// Numbers that have to be in their registers before the steps run. No step changes them.
    std::span<const Draft::Constant> constants() const { return constants_; }

    /// Bytes that the program holds.
    std::size_t bytes() const { return sizeof *this + size_; }

private:
    struct Order {
        std::uint32_t steps;
        std::uint32_t result;
    };

    std::unique_ptr<std::byte[]> memory_;  // of all that follows
    std::span<const Step> steps_;
    std::span<const Order> orders_;
    std::span<const Draft::Constant> constants_;
    std::uint32_t registers_;
    std::uint32_t parameters_;
    std::size_t size_;
};

/// The programs of one expression. Its value has a program of its own, because it is
/// requested most often.
struct Programs {
    std::shared_ptr<const Program> value;
    std::shared_ptr<const Program> all;  // of all orders

    /// The one that computes the orders 0 to `order`.
    const Program& upTo(int order) const { return order == 0 ? *value : *all; }
    std::size_t bytes() const { return value->bytes() + (all == value ? 0 : all->bytes()); }
};

}  // namespace mf::engine
