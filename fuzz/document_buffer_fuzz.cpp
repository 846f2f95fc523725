// SPDX-License-Identifier: MIT

// Any text may be refused; none may crash. A refused one leaves at most one start of
// the XML engine. A curve that was read can be evaluated, written and read again.
//
// The input is the document, as a buffer.

#include "fuzz/documentProperties.h"
#include "mfcurves/documents/readCurve.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace document_fuzz;
    if (size > kLongestDocument)
        return 0;

    const Host host;
    mfFunctionData_c function;
    require(function.initialize());
    const int starts = mf::platform::xmlStartCount();
    const auto outcome = mf::documents::readCurve(function, L"input.xml", true,
                                                  std::string(reinterpret_cast<const char*>(data), size));
    const int left = mf::platform::xmlStartCount() - starts;
    const bool isRead = outcome.taken && outcome.reason.empty();
    require(isRead ? left == 0 : left == 0 || left == 1);
    require(outcome.taken || !outcome.reason.empty());
    if (isRead)
        checkCurve(function);
    return 0;
}
