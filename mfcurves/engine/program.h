#pragma once

#include "mfcurves/engine/graph.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace mf::engine
{

enum class Code : std::uint8_t {
    Affine,      // (a + c0) * c1 + c2
    Sum,         // c0 * a + c1 * b
    Product,     // (a * b) * c0
    Quotient,    // (a / b) * c0
    Polynomial,  // c0 + c1 * (a^lowest * (k0 + k1 a + ...))
    Chebyshev,   // k0 T0(a) + k1 T1(a) + ...
    Call1,       // value1(a)
    Call2,       // value2(a, b)
    SinCos,      // the sine of a, and into b its cosine
    ChooseLess,  // list of four registers, as the node of that name
    ChooseSign,
    ChooseStep  // list of six registers
};

/// One step of a program. Operands and target are numbers of registers.
struct Instruction {
    Code code = Code::Affine;
    std::uint16_t lowest = 0;
    std::uint32_t target = 0;
    std::uint32_t a = 0;
    std::uint32_t b = 0;
    std::uint32_t first = 0;  // of the coefficients, or of the registers of a list
    std::uint32_t count = 0;  // of the coefficients
    union {
        double c[3] = {};
        double (*value1)(double);
        double (*value2)(double, double);
    };
};

/// The steps that compute one order of a family, after the sections of the lower
/// orders have run. Nothing in it changes once it is made.
struct Section {
    struct Constant {
        std::uint32_t target;
        double number;
    };

    std::vector<Instruction> code;
    std::vector<double> coefficients;
    std::vector<std::uint32_t> lists;
    std::vector<Constant> constants;  // registers that hold a number and are filled once
    std::uint32_t result = 0;         // the register that holds the order's value
    std::uint32_t registers = 0;      // how many the sections up to this one use
};

/// Translates roots of a graph into sections, one after the other. Register i
/// holds parameter i; every other value has a register of its own, so that a
/// section may use whatever those before it have computed.
class Translator
{
public:
    void clear(std::uint32_t parameterCount);

    Section translate(const Graph& graph, NodeId root);

    std::size_t bytes() const { return registerOf_.capacity() * sizeof(std::uint32_t); }

private:
    std::vector<std::uint32_t> registerOf_;  // by node, kNoRegister where it has none yet
    std::uint32_t registers_ = 0;
};

}  // namespace mf::engine
