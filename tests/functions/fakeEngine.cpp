// SPDX-License-Identifier: MIT

#include "tests/functions/fakeEngine.h"

#include "mfcurves/interfaces/ICalculator.h"
#include "mfcurves/platform/encoding.h"

namespace mf::test {

Engine* engine = nullptr;

}  // namespace mf::test

namespace {

using mf::test::engine;

class FakeCalculator : public ICalculator {
public:
    explicit FakeCalculator(int order) : order_(order) { ++engine->alive; }

    ICalculator* differentiate(int unused) override
    {
        engine->calls.push_back("differentiate " + std::to_string(order_) + " with " +
                                std::to_string(unused));
        return order_ == engine->lastOrder ? nullptr : new FakeCalculator(order_ + 1);
    }
    bool Evaluate(int count, MMEP_Data* arguments, MMEP_Data& result) override
    {
        EXPECT_EQ(count, 1);
        ++engine->evaluations;
        return engine->evaluate(*arguments->getValue(), order_, *result.getValue());
    }
    bool Release() override
    {
        engine->calls.push_back("Release " + std::to_string(order_));
        --engine->alive;
        delete this;
        return false;  // the result is not used
    }

protected:
    ~FakeCalculator() override = default;

private:
    int order_;
};

}  // namespace

struct MotionMEParser::Parameters {};

MotionMEParser::MotionMEParser()
{
    engine->calls.emplace_back("parser");
}

MotionMEParser::~MotionMEParser()
{
    engine->calls.emplace_back("~parser");
}

bool MotionMEParser::parse(const wchar_t* expression, wchar_t* independentVariable, ICalculator** calculator)
{
    engine->calls.push_back("parse " + mf::platform::toUtf8(expression));
    EXPECT_EQ(independentVariable, nullptr);
    EXPECT_EQ(*calculator, nullptr) << "the old calculator is released before a new one is made";
    if (engine->throwsInt)
        throw 7;
    if (engine->makesCalculator)
        *calculator = new FakeCalculator(0);
    parseSucceeded = engine->succeeds;
    return !engine->succeeds;  // the result is not used
}

int MotionMEParser::getParamsNum()
{
    engine->calls.emplace_back("getParamsNum");
    return static_cast<int>(engine->parameters.size());
}

const MMEP_WString& MotionMEParser::getParam(int index)
{
    engine->calls.push_back("getParam " + std::to_string(index));
    return engine->parameters.at(static_cast<std::size_t>(index));
}
