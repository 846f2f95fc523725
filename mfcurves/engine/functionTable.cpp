#include "mfcurves/engine/functionTable.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "mfcurves/engine/functionRules.h"
#include "mfcurves/engine/values.h"

namespace mf::engine {
namespace {

using namespace rules;

constexpr const char* kStepFailure = "Fails where x1 is not above x0.";

constexpr Function kFunctions[] = {
    {.id = FunctionId::Sin,
     .name = "sin",
     .arguments = "x",
     .formula = "sine of x",
     .remarks = "x in radians.",
     .value1 = std::sin,
     .slope1 = slopeOfSin},
    {.id = FunctionId::Cos,
     .name = "cos",
     .arguments = "x",
     .formula = "cosine of x",
     .remarks = "x in radians.",
     .value1 = std::cos,
     .slope1 = slopeOfCos},
    {.id = FunctionId::Tan,
     .name = "tan",
     .arguments = "x",
     .formula = "tangent of x",
     .remarks = "x in radians.",
     .value1 = std::tan,
     .slope1 = slopeOfTan},
    {.id = FunctionId::Asin,
     .name = "asin",
     .arguments = "x",
     .formula = "angle from -pi/2 to pi/2 whose sine is x",
     .remarks = "In radians; fails outside -1 to 1.",
     .value1 = std::asin,
     .slope1 = slopeOfAsin},
    {.id = FunctionId::Acos,
     .name = "acos",
     .arguments = "x",
     .formula = "angle from 0 to pi whose cosine is x",
     .remarks = "In radians; fails outside -1 to 1.",
     .value1 = std::acos,
     .slope1 = slopeOfAcos},
    {.id = FunctionId::Atan,
     .name = "atan",
     .arguments = "x",
     .formula = "angle from -pi/2 to pi/2 whose tangent is x",
     .remarks = "In radians.",
     .value1 = std::atan,
     .slope1 = slopeOfAtan},
    {.id = FunctionId::Atan2,
     .name = "atan2",
     .arguments = "y, x",
     .fewest = 2,
     .most = 2,
     .formula = "angle of the point (x, y), from -pi to pi",
     .remarks = "In radians; pi on the left half of the x axis.",
     .value2 = angleValue,
     .slope2 = slopeOfAtan2},
    {.id = FunctionId::Sinh,
     .name = "sinh",
     .arguments = "x",
     .formula = "hyperbolic sine of x",
     .value1 = std::sinh,
     .slope1 = slopeOfSinh},
    {.id = FunctionId::Cosh,
     .name = "cosh",
     .arguments = "x",
     .formula = "hyperbolic cosine of x",
     .value1 = std::cosh,
     .slope1 = slopeOfCosh},
    {.id = FunctionId::Tanh,
     .name = "tanh",
     .arguments = "x",
     .formula = "hyperbolic tangent of x",
     .value1 = std::tanh,
     .slope1 = slopeOfTanh},
    {.id = FunctionId::Exp,
     .name = "exp",
     .arguments = "x",
     .formula = "e to the power of x",
     .value1 = std::exp,
     .slope1 = slopeOfExp},
    {.id = FunctionId::Ln,
     .name = "ln",
     .arguments = "x",
     .formula = "natural logarithm of x",
     .remarks = "Fails where x is not above 0.",
     .expand = expandLn},
    {.id = FunctionId::Log,
     .name = "log",
     .arguments = "x",
     .formula = "natural logarithm of x, the same as ln",
     .remarks = "Fails where x is not above 0.",
     .value1 = std::log,
     .slope1 = slopeOfLog},
    {.id = FunctionId::Log10,
     .name = "log10",
     .arguments = "x",
     .formula = "logarithm of x to the base 10",
     .remarks = "Fails where x is not above 0.",
     .value1 = std::log10,
     .slope1 = slopeOfLog10},
    {.id = FunctionId::Sqrt,
     .name = "sqrt",
     .arguments = "x",
     .formula = "square root of x",
     .remarks = "Fails below 0.",
     .value1 = std::sqrt,
     .slope1 = slopeOfSqrt},
    {.id = FunctionId::Cbrt,
     .name = "cbrt",
     .arguments = "x",
     .formula = "cube root of x",
     .remarks = "With the sign of x.",
     .value1 = std::cbrt,
     .slope1 = slopeOfCbrt},
    {.id = FunctionId::Hypot,
     .name = "hypot",
     .arguments = "a, b",
     .fewest = 2,
     .most = 2,
     .formula = "sqrt(a^2 + b^2)",
     .remarks = "Without overflow on the way.",
     .value2 = std::hypot,
     .slope2 = slopeOfHypot},
    {.id = FunctionId::Abs,
     .name = "abs",
     .arguments = "x",
     .formula = "x without its sign",
     .remarks = "The derivative at 0 is 0.",
     .value1 = std::fabs,
     .slope1 = slopeOfAbs},
    {.id = FunctionId::Sign,
     .name = "sign",
     .arguments = "x",
     .formula = "-1, 0 or 1, the sign of x",
     .value1 = signValue,
     .slope1 = slopeOfPieces},
    {.id = FunctionId::SignOf,
     .name = "sign",
     .arguments = "a, b",
     .fewest = 2,
     .most = 2,
     .formula = "a without its sign, with the sign of b",
     .remarks = "0 counts as plus.",
     .value2 = signOfValue,
     .slope2 = slopeOfSignOf},
    {.id = FunctionId::Min,
     .name = "min",
     .arguments = "a, b, ...",
     .fewest = 2,
     .most = kAnyNumber,
     .formula = "the least of its arguments",
     .remarks = "Of equal ones the first gives the derivative.",
     .value2 = minValue,
     .slope2 = slopeOfMin,
     .expand = expandMin},
    {.id = FunctionId::Max,
     .name = "max",
     .arguments = "a, b, ...",
     .fewest = 2,
     .most = kAnyNumber,
     .formula = "the greatest of its arguments",
     .remarks = "Of equal ones the first gives the derivative.",
     .value2 = maxValue,
     .slope2 = slopeOfMax,
     .expand = expandMax},
    {.id = FunctionId::Mod,
     .name = "mod",
     .arguments = "a, b",
     .fewest = 2,
     .most = 2,
     .formula = "remainder of a / b with the sign of a, the same as a % b",
     .remarks = "Exact; fails where b is 0.",
     .value2 = std::fmod,
     .slope2 = slopeOfMod},
    {.id = FunctionId::Dim,
     .name = "dim",
     .arguments = "a, b",
     .fewest = 2,
     .most = 2,
     .formula = "a - b where that is above 0, else 0",
     .remarks = "Where a is b the derivative is that of a - b.",
     .value2 = dimValue,
     .slope2 = slopeOfDim},
    {.id = FunctionId::Int,
     .name = "int",
     .arguments = "x",
     .formula = "x without its fraction",
     .remarks = "Rounds toward 0.",
     .value1 = std::trunc,
     .slope1 = slopeOfPieces},
    {.id = FunctionId::Nint,
     .name = "nint",
     .arguments = "x",
     .formula = "the whole number nearest to x",
     .remarks = "Halves round away from 0.",
     .value1 = std::round,
     .slope1 = slopeOfPieces},
    {.id = FunctionId::Floor,
     .name = "floor",
     .arguments = "x",
     .formula = "the largest whole number not above x",
     .value1 = std::floor,
     .slope1 = slopeOfPieces},
    {.id = FunctionId::Ceil,
     .name = "ceil",
     .arguments = "x",
     .formula = "the smallest whole number not below x",
     .value1 = std::ceil,
     .slope1 = slopeOfPieces},
    {.id = FunctionId::If,
     .name = "if",
     .arguments = "c: n, z, p",
     .fewest = 4,
     .most = 4,
     .formula = "n where c < 0, z where c = 0, p where c > 0",
     .remarks = "Only the piece that answers is looked at. A comma may stand for the colon.",
     .expand = expandIf},
    {.id = FunctionId::Step,
     .name = "step",
     .arguments = "x, x0, h0, x1, h1",
     .fewest = 5,
     .most = 5,
     .formula = "h0 before x0, h1 after x1, between h0 + (h1 - h0) (3 u^2 - 2 u^3)",
     .remarks = kStepFailure,
     .expand = expandStep},
    {.id = FunctionId::Step5,
     .name = "step5",
     .arguments = "x, x0, h0, x1, h1",
     .fewest = 5,
     .most = 5,
     .formula = "h0 before x0, h1 after x1, between h0 + (h1 - h0) (10 u^3 - 15 u^4 + 6 u^5)",
     .remarks = kStepFailure,
     .expand = expandStep5},
    {.id = FunctionId::Havsin,
     .name = "havsin",
     .arguments = "x, x0, h0, x1, h1",
     .fewest = 5,
     .most = 5,
     .formula = "h0 before x0, h1 after x1, between h0 + (h1 - h0) (1 - cos(pi u)) / 2",
     .remarks = kStepFailure,
     .expand = expandHavsin},
    {.id = FunctionId::Poly,
     .name = "poly",
     .arguments = "x, x0, a0, a1, ...",
     .fewest = 3,
     .most = kAnyNumber,
     .formula = "a0 + a1 h + a2 h^2 + ...",
     .expand = expandPoly},
    {.id = FunctionId::Cheby,
     .name = "cheby",
     .arguments = "x, x0, a0, a1, ...",
     .fewest = 3,
     .most = kAnyNumber,
     .formula = "a0 T0(h) + a1 T1(h) + ...",
     .remarks = "Tj is the Chebyshev polynomial of the first kind.",
     .expand = expandCheby},
    {.id = FunctionId::Shf,
     .name = "shf",
     .arguments = "x, x0, a, w, phi, b",
     .fewest = 6,
     .most = 6,
     .formula = "a sin(w h - phi) + b",
     .remarks = "phi in radians, w in radians per unit of x.",
     .expand = expandShf},
    {.id = FunctionId::Forsin,
     .name = "forsin",
     .arguments = "x, x0, w, a0, a1, ...",
     .fewest = 4,
     .most = kAnyNumber,
     .formula = "a0 + a1 sin(w h) + a2 sin(2 w h) + ...",
     .remarks = "w in radians per unit of x.",
     .expand = expandForsin},
    {.id = FunctionId::Forcos,
     .name = "forcos",
     .arguments = "x, x0, w, a0, a1, ...",
     .fewest = 4,
     .most = kAnyNumber,
     .formula = "a0 + a1 cos(w h) + a2 cos(2 w h) + ...",
     .remarks = "w in radians per unit of x.",
     .expand = expandForcos},
    {.id = FunctionId::Power,
     .name = "",
     .arguments = "a, b",
     .fewest = 2,
     .most = 2,
     .formula = "a ^ b",
     .value2 = powerValue,
     .slope2 = slopeOfPower},
    {.id = FunctionId::Sech,
     .name = "",
     .arguments = "x",
     .formula = "1 / cosh(x)",
     .value1 = [](double x) { return 1.0 / std::cosh(x); },
     .slope1 = slopeOfSech},
};

constexpr bool inOrder()
{
    for (std::size_t i = 0; i < std::size(kFunctions); ++i) {
        if (static_cast<std::size_t>(kFunctions[i].id) != i)
            return false;
    }
    return true;
}
static_assert(inOrder(), "a row stands at the place that its id gives");

// --- Finding a row by name -------------------------------------------------------------

constexpr std::size_t kLongestName = 8;
constexpr std::size_t kSlots = 128;  // a power of two, far above the number of rows
constexpr std::uint8_t kFree = 0xff;

constexpr std::size_t slotOf(std::string_view name)
{
    std::uint32_t hash = 0;
    for (const char c : name)
        hash = hash * 31 + static_cast<unsigned char>(c);
    return (hash ^ (hash >> 7)) % kSlots;
}

// The first row of each name, by open addressing.
constexpr std::array<std::uint8_t, kSlots> slots()
{
    std::array<std::uint8_t, kSlots> table{};
    table.fill(kFree);
    for (std::size_t i = 0; i < std::size(kFunctions); ++i) {
        const std::string_view name = kFunctions[i].name;
        if (name.empty() || (i > 0 && kFunctions[i - 1].name == name))
            continue;
        std::size_t slot = slotOf(name);
        while (table[slot] != kFree)
            slot = (slot + 1) % kSlots;
        table[slot] = static_cast<std::uint8_t>(i);
    }
    return table;
}
constexpr auto kSlotTable = slots();

// The name in lower-case ASCII; empty when it cannot be that of a function.
std::string_view lowered(std::wstring_view name, std::array<char, kLongestName>& buffer)
{
    if (name.size() > kLongestName)
        return {};
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (name[i] < 0 || name[i] > 0x7f)
            return {};
        const char c = static_cast<char>(name[i]);
        buffer[i] = c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
    }
    return {buffer.data(), name.size()};
}

// Levenshtein's distance of two short names.
std::size_t editDistance(std::string_view a, std::string_view b)
{
    std::array<std::size_t, kLongestName + 1> row{};
    for (std::size_t j = 0; j <= b.size(); ++j)
        row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t replaced = diagonal + (a[i - 1] != b[j - 1] ? 1 : 0);
            diagonal = row[j];
            row[j] = std::min({replaced, row[j] + 1, row[j - 1] + 1});
        }
    }
    return row[b.size()];
}

}  // namespace

std::span<const Function> functions()
{
    return kFunctions;
}

const Function& function(FunctionId id)
{
    return kFunctions[static_cast<std::size_t>(id)];
}

const Function* findFunction(std::wstring_view name, int argumentCount)
{
    std::array<char, kLongestName> buffer;
    const std::string_view wanted = lowered(name, buffer);
    if (wanted.empty())
        return nullptr;
    std::size_t slot = slotOf(wanted);
    while (kSlotTable[slot] != kFree && kFunctions[kSlotTable[slot]].name != wanted)
        slot = (slot + 1) % kSlots;
    if (kSlotTable[slot] == kFree)
        return nullptr;
    const Function* row = &kFunctions[kSlotTable[slot]];
    const bool next = argumentCount > row->most && row[1].name == row->name;
    return next ? row + 1 : row;
}

std::string_view closestFunctionName(std::wstring_view name)
{
    constexpr std::size_t kClose = 2;
    std::array<char, kLongestName> buffer;
    const std::string_view wanted = lowered(name, buffer);
    std::string_view closest;
    std::size_t least = (wanted.size() <= 3 ? 1 : kClose) + 1;
    for (const Function& row : kFunctions) {
        if (row.name.empty() || wanted.empty())
            continue;
        const std::size_t distance = editDistance(wanted, row.name);
        if (distance < least) {
            least = distance;
            closest = row.name;
        }
    }
    return closest;
}

}  // namespace mf::engine
