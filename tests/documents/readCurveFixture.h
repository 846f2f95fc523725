// SPDX-License-Identifier: MIT
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "curveFixture.h"
#include "mfcurves/documents/readCurve.h"
#include "tests/support/TemporaryFolder.h"

namespace mf::test {

// Reads documents from a text and from files, into the function of a fake host.
class ReadCurve : public CurveTest {
protected:
    documents::ReadOutcome outcomeOf(const std::string& xml)
    {
        return documents::readCurve(function, L"some.xml", true, xml);
    }
    bool readFile(const std::string& bytes) { return readFile("curve.xml", bytes); }
    bool readFile(const char* name, const std::string& bytes)
    {
        return function.readXMLData(folder.write(name, bytes).c_str(), false, "");
    }

    TemporaryFolder folder;
};

}  // namespace mf::test
