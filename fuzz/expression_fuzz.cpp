// SPDX-License-Identifier: MIT

// Any text may be refused; none may crash. A text that compiles may lack derivatives
// and may fail to evaluate, but always with the same outcome and the same bits: freshly
// compiled or from the cache, with derivatives and points in any order, and point by
// point or many at a time.
//
// The input is the text, with one character per byte. If it has a line feed, the text
// before the first one is the name of the independent variable.

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

#include "mfcurves/engine/evaluateMany.h"
#include "mfcurves/interfaces/ICalculator.h"
#include "mfcurves/interfaces/MMEP_Data.h"
#include "mfcurves/interfaces/MotionMEParser.h"

namespace {

constexpr int kOrders = 4;
constexpr double kUntouched = 12345.0;

constexpr double kPoints[] = {0.0,
                              -0.0,
                              1.0,
                              -1.0,
                              0.5,
                              2.75,
                              -3.3,
                              1e10,
                              1e300,
                              -1e-300,
                              std::numeric_limits<double>::infinity(),
                              std::numeric_limits<double>::quiet_NaN()};
constexpr int kPointCount = static_cast<int>(std::size(kPoints));

struct Outcome {
    bool succeeded = false;
    double value = 0.0;

    bool operator==(const Outcome& other) const
    {
        return succeeded == other.succeeded && std::memcmp(&value, &other.value, sizeof value) == 0;
    }
};

/// The outcome of each order at each point.
using Outcomes = std::array<std::array<Outcome, kPointCount>, kOrders>;

void require(bool holds)
{
    if (!holds)
        std::abort();
}

/// A compiled text with its derivatives, as far as they exist.
class Family {
public:
    Family(const std::wstring& text, wchar_t* variable)
    {
        MotionMEParser parser;
        const bool parsed = parser.parse(text.c_str(), variable, &orders_[0]);
        require(parsed == parser.parseSucceeded);
        require(parsed == (orders_[0] != nullptr));
        parameters_ = parser.getParamsNum();
        require(parsed || parameters_ == 0);
        for (int i = 0; i < parameters_; ++i)
            require(parser.getParam(i).text[0] != L'\0');
        for (int order = 1; order < kOrders && orders_[order - 1]; ++order)
            orders_[order] = orders_[order - 1]->differentiate(0);
        require(parameters_ < 2 || orders_[1] == nullptr);
    }
    ~Family()
    {
        for (ICalculator* calculator : orders_) {
            if (calculator)
                calculator->Release();
        }
    }
    Family(const Family&) = delete;
    Family& operator=(const Family&) = delete;

    bool has(int order) const { return orders_[order] != nullptr; }
    int parameters() const { return parameters_; }

    Outcome at(int order, double x) const
    {
        if (!has(order))
            return {};
        MMEP_Data argument(x);
        MMEP_Data result(kUntouched);
        Outcome outcome;
        outcome.succeeded = orders_[order]->Evaluate(1, &argument, result);
        outcome.value = *result.getValue();
        require(outcome.succeeded || outcome.value == kUntouched);
        return outcome;
    }

    /// How many consecutive points of kPoints from `first` on succeed, with their values.
    std::size_t manyAt(int order, int first, double* values) const
    {
        return mf::engine::evaluateMany(*orders_[order], kPoints + first, values,
                                        static_cast<std::size_t>(kPointCount - first));
    }

private:
    std::array<ICalculator*, kOrders> orders_{};
    int parameters_ = 0;
};

/// All orders at each point in turn.
Outcomes pointByPoint(const Family& family)
{
    Outcomes outcomes;
    for (int point = 0; point < kPointCount; ++point) {
        for (int order = 0; order < kOrders; ++order)
            outcomes[order][point] = family.at(order, kPoints[point]);
    }
    return outcomes;
}

/// The highest order first, the points in reverse.
Outcomes orderByOrder(const Family& family)
{
    Outcomes outcomes;
    for (int order = kOrders; order-- > 0;) {
        for (int point = kPointCount; point-- > 0;)
            outcomes[order][point] = family.at(order, kPoints[point]);
    }
    return outcomes;
}

// Many points at a time, starting again after each failure. A text of two or
// more parameters has no value for one argument, in this way and in the others.
Outcomes manyAtATime(const Family& family)
{
    Outcomes outcomes;
    for (int order = 0; order < kOrders; ++order) {
        for (int point = 0; family.has(order) && point < kPointCount; ++point) {
            double values[kPointCount];
            const std::size_t done = family.manyAt(order, point, values);
            for (std::size_t i = 0; i < done; ++i)
                outcomes[order][point++] = {true, values[i]};
            if (point < kPointCount)
                outcomes[order][point] = {false, kUntouched};
        }
    }
    return outcomes;
}

void requireSameAnswers(const std::wstring& text, wchar_t* variable)
{
    const Family first(text, variable);
    const Family cached(text, variable);
    // A blank after a text only changes its key in the cache.
    const Family fresh(text + L" ", variable);
    for (int order = 0; order < kOrders; ++order) {
        require(first.has(order) == cached.has(order));
        require(first.has(order) == fresh.has(order));
    }
    require(first.parameters() == cached.parameters());
    require(first.parameters() == fresh.parameters());

    const Outcomes expected = pointByPoint(first);
    require(orderByOrder(first) == expected);
    require(orderByOrder(cached) == expected);
    require(pointByPoint(fresh) == expected);
    require(manyAtATime(fresh) == expected);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::size_t kLongestText = 2048;  // longer texts find nothing new, slowly
    if (size > kLongestText)
        return 0;

    const std::wstring input(data, data + size);
    const std::size_t lineFeed = input.find(L'\n');
    if (lineFeed == std::wstring::npos) {
        requireSameAnswers(input, nullptr);
    } else {
        std::wstring variable = input.substr(0, lineFeed);
        requireSameAnswers(input.substr(lineFeed + 1), variable.data());
    }
    return 0;
}
