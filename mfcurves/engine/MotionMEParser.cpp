// SPDX-License-Identifier: MIT

#include "mfcurves/interfaces/MotionMEParser.h"

#include <algorithm>
#include <cwchar>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "mfcurves/engine/calculator.h"
#include "mfcurves/engine/limits.h"
#include "mfcurves/engine/names.h"
#include "mfcurves/engine/parseError.h"
#include "mfcurves/engine/textCache.h"
#include "mfcurves/platform/resources.h"

namespace {

using mf::engine::CompiledText;

// Reads at most one character more than the limit, which shows that a text is too long.
std::wstring_view viewOf(const wchar_t* text)
{
    return {text, wcsnlen(text, mf::engine::kLongestText + 1)};
}

std::optional<std::wstring_view> viewOfName(const wchar_t* name)
{
    return name == nullptr ? std::nullopt : std::optional(viewOf(name));
}

// Whether the name is the word itself or its name in the current resource library.
bool isWord(const std::wstring& name, std::wstring_view word, unsigned resource)
{
    return mf::engine::sameName(name, word) ||
           mf::engine::sameName(name, mf::platform::resourceString(resource));
}

MMEP_WString::Meaning meaningOf(const std::wstring& name)
{
    if (name.starts_with(L'{'))
        return MMEP_WString::Meaning::ResultObject;
    if (isWord(name, L"time", mf::platform::kTimeName))
        return MMEP_WString::Meaning::Time;
    if (isWord(name, L"cycleangle", mf::platform::kCycleAngleName))
        return MMEP_WString::Meaning::CycleAngle;
    return MMEP_WString::Meaning::Other;
}

}  // namespace

struct MotionMEParser::Parameters {
    std::shared_ptr<CompiledText> text;  // owns the names
    std::vector<MMEP_WString> list;
};

MotionMEParser::MotionMEParser() = default;
MotionMEParser::~MotionMEParser() = default;

bool MotionMEParser::parse(const wchar_t* expression, wchar_t* independentVariable, ICalculator** calculator)
{
    parameters_.reset();
    parseSucceeded = false;
    if (expression == nullptr)
        return false;
    auto result = mf::engine::compiledThroughCache(viewOf(expression), viewOfName(independentVariable));
    auto* text = std::get_if<std::shared_ptr<CompiledText>>(&result);
    if (text == nullptr)
        return false;

    parameters_ = std::make_unique<Parameters>();
    parameters_->text = *text;
    for (const std::wstring& name : (*text)->parameterNames())
        parameters_->list.emplace_back(name.c_str(), meaningOf(name));
    if (calculator != nullptr)
        *calculator = new mf::engine::Calculator(std::make_shared<mf::engine::Family>(std::move(*text)), 0);
    return parseSucceeded = true;
}

int MotionMEParser::getParamsNum()
{
    return parameters_ == nullptr ? 0 : static_cast<int>(parameters_->list.size());
}

const MMEP_WString& MotionMEParser::getParam(int index)
{
    static const MMEP_WString none(L"", MMEP_WString::Meaning::Other);
    return index >= 0 && index < getParamsNum() ? parameters_->list[static_cast<std::size_t>(index)] : none;
}

std::optional<mf::engine::ParseError> mf::engine::checkText(const wchar_t* text, const wchar_t* variableName)
{
    auto result = compiledThroughCache(viewOf(text), viewOfName(variableName));
    if (auto* error = std::get_if<ParseError>(&result))
        return std::move(*error);
    return std::nullopt;
}
