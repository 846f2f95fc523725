// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "mfcurves/interfaces/MMEP_WString.h"
#include "mfcurves/platform/mfExport.h"

class ICalculator;

/// Compiles one expression text into a calculator.
///
/// Copying: not copyable; make a parser on the stack for each compile.
class MFCURVES_API MotionMEParser {
public:
    MotionMEParser();
    virtual ~MotionMEParser();
    MotionMEParser(const MotionMEParser&) = delete;
    MotionMEParser& operator=(const MotionMEParser&) = delete;

    /// Compiles `expression`. If `independentVariable` is given, it names the only
    /// parameter, and any other free name is an error; an empty name allows
    /// constants only. If it is null, the free names become the parameters, in
    /// order of first appearance.
    ///
    /// On success, stores the new calculator in `*calculator`; the caller disposes
    /// of it by ICalculator::Release. On failure, leaves `*calculator` unchanged and
    /// has no parameters. Returns what parseSucceeded then holds. A null expression
    /// fails; with a null `calculator` the text is only checked.
    bool parse(const wchar_t* expression, wchar_t* independentVariable, ICalculator** calculator);

    /// The number of parameters that the last parse found.
    int getParamsNum();

    /// Parameter `index`, from 0 to getParamsNum() - 1. Outside that range, an empty
    /// name with the meaning Other.
    const MMEP_WString& getParam(int index);

    bool parseSucceeded = false;  ///< what the last parse returned

private:
    struct MFCURVES_LOCAL Parameters;
    std::unique_ptr<Parameters> parameters_;
};
