// SPDX-License-Identifier: MIT

#include "tests/segments/recordedEngine.h"

#include "mfcurves/interfaces/ICalculator.h"
#include "mfcurves/interfaces/MotionMEParser.h"
#include "mfcurves/platform/encoding.h"

namespace mf::test {

std::vector<std::string> theCalls;
int theLiving = 0;
int theHighestOrder = 3;

}  // namespace mf::test

namespace {

using namespace mf::test;

class RecordedCalculator : public ICalculator {
public:
    explicit RecordedCalculator(int order) : order_(order) { ++theLiving; }

    ICalculator* differentiate(int unused) override
    {
        EXPECT_EQ(unused, 0);
        theCalls.push_back("differentiate " + std::to_string(order_));
        return order_ < theHighestOrder ? new RecordedCalculator(order_ + 1) : nullptr;
    }
    // x + 100 * order, so that a number shows its calculator.
    bool Evaluate(int count, MMEP_Data* arguments, MMEP_Data& result) override
    {
        EXPECT_EQ(count, 1);
        result = MMEP_Data(*arguments[0].getValue() + 100.0 * order_);
        return true;
    }
    bool Release() override
    {
        theCalls.push_back("release " + std::to_string(order_));
        --theLiving;
        delete this;
        return true;
    }

private:
    ~RecordedCalculator() override = default;

    int order_;
};

std::string narrow(const wchar_t* text)
{
    return mf::platform::toUtf8(text);
}

}  // namespace

struct MotionMEParser::Parameters {};

MotionMEParser::MotionMEParser() = default;
MotionMEParser::~MotionMEParser() = default;

// Refuses the empty text and every text with a question mark.
bool MotionMEParser::parse(const wchar_t* expression, wchar_t* independentVariable, ICalculator** calculator)
{
    theCalls.push_back("parse " + narrow(expression) + " of " + narrow(independentVariable));
    const std::wstring text = expression;
    if (text.empty() || text.find(L'?') != std::wstring::npos)
        return false;
    *calculator = new RecordedCalculator(0);
    return true;
}

int MotionMEParser::getParamsNum()
{
    return 0;
}

const MMEP_WString& MotionMEParser::getParam(int)
{
    static const MMEP_WString none(L"", MMEP_WString::Meaning::Other);
    return none;
}
