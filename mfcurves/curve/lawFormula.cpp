// SPDX-License-Identifier: MIT

#include "mfcurves/curve/lawFormula.h"

#include <charconv>
#include <iterator>
#include <limits>

#include "mfcurves/platform/encoding.h"
#include "mfcurves/platform/numbers.h"
#include "mfcurves/segments/lawText.h"

namespace mf::curve {

std::string allDigits(double number)
{
    char buffer[std::numeric_limits<double>::max_exponent10 + 1100];
    const auto result = std::to_chars(std::begin(buffer), std::end(buffer), number, std::chars_format::fixed);
    return {buffer, result.ptr};
}

bool lawFormula(const Law& law, double startX, double startValue, const CurveRow& row, bool sixDecimals,
                FormulaText& formula)
{
    const auto written = [&](double number) {
        return platform::widen(sixDecimals ? platform::sixDecimals(number) : allDigits(number));
    };
    const segments::EndPoints numbers = {written(startX), written(startValue), written(row.endX),
                                         written(row.value)};
    formula.hasVariable = true;
    formula.variable = platform::widen(law.record.independentVariable.c_str());
    return segments::enterNumbers(law.record, numbers, formula.text);
}

}  // namespace mf::curve
