// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "mfcurves/interfaces/MMEP_WString.h"
#include "mfcurves/platform/mfExport.h"

class ICalculator;

/// Compiles one expression text into a calculator.
///
/// Copying: none; a parser is made on the stack for each compile.
class MFCURVES_API MotionMEParser {
public:
    MotionMEParser();
    virtual ~MotionMEParser();
    MotionMEParser(const MotionMEParser&) = delete;
    MotionMEParser& operator=(const MotionMEParser&) = delete;

    /// Compiles `expression`. With `independentVariable` that name is the one
    /// argument, and any other free name is an error; an empty name allows
    /// constants only. With null the free names become the parameters, in order
    /// of first appearance.
    ///
    /// On success the new calculator is stored through `calculator`; the caller
    /// ends it by ICalculator::Release. On failure `*calculator` stays as it was
    /// and there are no parameters. The result is parseSucceeded. A null
    /// expression fails; with a null `calculator` the text is only checked.
    bool parse(const wchar_t* expression, wchar_t* independentVariable, ICalculator** calculator);

    /// How many parameters the last parse found.
    int getParamsNum();

    /// Parameter `index`, counted from 0 to getParamsNum() - 1. Outside that
    /// range an empty name that stands for nothing.
    const MMEP_WString& getParam(int index);

    bool parseSucceeded = false;  ///< what the last parse answered

private:
    struct MFCURVES_LOCAL Parameters;
    std::unique_ptr<Parameters> parameters_;
};
