// SPDX-License-Identifier: MIT
#pragma once

#include <clocale>
#include <gtest/gtest.h>
#include <string>

#include "mfcurves/documents/formatTexts.h"
#include "mfcurves/interfaces/QelSession.h"
#include "mfcurves/platform/resources.h"
#include "mfcurves/platform/xmlRuntime.h"
#include "mfcurves/profiles/mfSegmentTypeParser.h"

namespace mf::test {

/// The settings of the process and the calling thread that the library may change.
struct ProcessState {
    QelMotionFunctionContext_c* context = QelSession_c::QelMotionFunctionContext();
    std::string locale = std::setlocale(LC_ALL, nullptr);
    double version = documents::writtenVersion();
    int xmlStarts = platform::xmlStartCount();
    const platform::ResourceModule* resources = platform::currentResourceModule();
    char lowered = mfSegmentTypeParser_c().lowerOutsideQuotes('A');  // 'A' between open quotes

    bool operator==(const ProcessState&) const = default;
};

inline void PrintTo(const ProcessState& state, std::ostream* os)
{
    *os << "context " << state.context << ", locale " << state.locale << ", version " << state.version
        << ", starts of the XML engine " << state.xmlStarts << ", resources " << state.resources
        << ", lowered A " << state.lowered;
}

}  // namespace mf::test
