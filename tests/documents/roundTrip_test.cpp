// SPDX-License-Identifier: MIT

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "curveFixture.h"
#include "tests/segments/segmentTables.h"
#include "tests/support/TemporaryFolder.h"

// A document that is read and written again is unchanged, byte for byte.

namespace mf::test {
namespace {

using testing::HasSubstr;

const std::filesystem::path kSamples = SAMPLE_CURVES;

std::vector<std::string> sampleNames()
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(kSamples))
        if (entry.path().extension() == ".xml")
            names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

class Sample : public CurveTest, public testing::WithParamInterface<std::string> {
protected:
    Sample()
    {
        host.services.motionResultNames = {L"Slip Speed", L"Shaft Speed", L"Spring Deflection"};
        host.services.motionResultCount = 3;
    }
    bool read(const std::filesystem::path& path)
    {
        const std::string text = contentOf(path);
        for (const auto& [name, type] : {std::pair("Motor", MotionObjectType_Motor),
                                         {"Force", MotionObjectType_Force},
                                         {"Torque", MotionObjectType_Torque}})
            if (text.find(std::string("<MotionObjectType>") + name) != std::string::npos)
                function.setMotionObjectType(type);
        return function.readXMLData(path.c_str(), false, "");
    }
};

TEST_P(Sample, IsInTheWritersOwnForm)
{
    const std::filesystem::path path = kSamples / (GetParam() + ".xml");
    ASSERT_TRUE(read(path));
    const CString name = function.getName();
    function.createXMLData(name, false, L"");
    EXPECT_EQ(function.getXMLData(), contentOf(path));

    const TemporaryFolder folder;
    function.createXMLData(name, true, folder.wide("copy.xml").c_str());
    EXPECT_EQ(folder.read("copy.xml"), contentOf(path));
}

TEST_P(Sample, IsACurveThatCanBeUsed)
{
    ASSERT_TRUE(read(kSamples / (GetParam() + ".xml")));
    switch (function.getFunctionType()) {
        case FunctionType_Segments:
            EXPECT_TRUE(segments().IsValid());
            for (int row = 0; row < segments().getSegmentCount(); ++row) {
                mfSegment_c* one = nullptr;
                segments().selectSegment(row, one);
                EXPECT_NE(one->getProfile(), nullptr) << row;
                EXPECT_EQ(one->getProfileExpr().IsEmpty(), row == 0);
                // Each row ends at its own value.
                double y = 0.0;
                EXPECT_TRUE(segments().calculateValue(row, one->getEndX(), y));
                EXPECT_NEAR(y, one->getValue(), 1e-9 * std::max(1.0, std::abs(one->getValue()))) << row;
            }
            break;
        case FunctionType_DataPoints:
            EXPECT_TRUE(points().IsValid());
            EXPECT_GT(points().getDataPointsCount(), 10);
            break;
        default:
            EXPECT_TRUE(expression().IsValid());
            double y = 0.0;
            EXPECT_TRUE(
                expression().calculateValue((expression().getMinX() + expression().getMaxX()) / 2, y));
    }
}

TEST_P(Sample, HasALineInTheReadme)
{
    EXPECT_THAT(contentOf(kSamples / "README.md"), HasSubstr("| `" + GetParam() + ".xml` |"));
}

INSTANTIATE_TEST_SUITE_P(Curves, Sample, testing::ValuesIn(sampleNames()), [](const auto& tested) {
    std::string name = tested.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

TEST(Samples, AreAtLeastEight)
{
    EXPECT_GE(sampleNames().size(), 8U);
}

// Values from the formulas of the samples.
TEST_F(Sample, ValuesOfWellKnownCurves)
{
    ASSERT_TRUE(read(kSamples / "rise-dwell-return-cam.xml"));
    EXPECT_NEAR(function.evaluate(45.0, 0), 12.5, 1e-12);             // 3-4-5 at half its width
    EXPECT_NEAR(function.evaluate(45.0, 1), 1.875 * 25 / 90, 1e-12);  // its steepest slope
    EXPECT_NEAR(function.evaluate(120.0, 0), 25.0, 1e-12);
    EXPECT_NEAR(function.evaluate(195.0, 1), -2.1875 * 25 / 90, 1e-12);  // 4-5-6-7 likewise
    ASSERT_TRUE(read(kSamples / "spring-force.xml"));
    EXPECT_NEAR(function.evaluate(10.0, 0), -129.2, 1e-12);
    EXPECT_NEAR(function.evaluate(-10.0, 1), -12.5 - 3 * 0.0042 * 100, 1e-12);
    ASSERT_TRUE(read(kSamples / "crank-stroke.xml"));
    EXPECT_NEAR(function.evaluate(180.0, 0), 80.0, 1e-12);
    ASSERT_TRUE(read(kSamples / "friction-torque.xml"));
    EXPECT_NEAR(function.evaluate(0.25, 0), 18.0 * (1 - std::exp(-2.5)) / (1 - std::exp(-5.0)), 1e-12);
}

// Random curves: the first document rounds, later documents change nothing.

class RoundTrip : public CurveTest {
protected:
    void expectStable(const std::string& first)
    {
        ASSERT_TRUE(readBuffer(first)) << first;
        const std::string second = write();
        ASSERT_TRUE(readBuffer(second)) << second;
        EXPECT_EQ(write(), second);
    }
    double between(double low, double high)
    {
        return std::uniform_real_distribution<double>(low, high)(random);
    }
    int below(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random); }
    std::wstring text()
    {
        static const std::wstring characters = L"aZ0 <>&\"'\t\n\r;\u00E4\u4E2D\U0001F600]x\x07";
        std::wstring made;
        for (int i = below(12); i > 0; --i)
            made += characters[static_cast<std::size_t>(below(static_cast<int>(characters.size())))];
        return made;
    }

    std::mt19937 random{20260101};
};

TEST_F(RoundTrip, RandomDataPoints)
{
    for (int curve = 0; curve < 300; ++curve) {
        function.setFunctionType(FunctionType_DataPoints);
        function.setMotionObjectType(static_cast<MotionObjectType_e>(below(5)));
        function.setXYDataType(static_cast<MotFuncXYDataType_e>(below(25)));
        points().ClearFunction();
        points().setIndependentVar(static_cast<IndependentVariableType_e>(below(5)));
        points().setMotionResult(CString(text()));
        points().motionObjectType = below(2);
        points().setMotorDependentVar(static_cast<MotorDriveType_e>(below(5)));
        points().setForceTorqueDependentVar(static_cast<ForceTorqueType_e>(below(4)));
        points().setInterpolationType(static_cast<DataPointInterpolationType_e>(below(3)));
        double x = between(-1000.0, 1000.0);
        for (int row = below(20); row > 0; --row) {
            auto* list = new mfDataPoints_c;
            for (int i = below(8) == 0 ? below(4) + 1 : 1; i > 0; --i) {
                x += between(0.01, 5.0);
                list->addPoint(x, std::ldexp(between(-1.0, 1.0), below(200) - 100));
            }
            points().appendDataPoint(list);
        }
        function.createXMLData(CString(text()), false, L"");
        expectStable(function.getXMLData());
    }
}

TEST_F(RoundTrip, RandomSegments)
{
    std::vector<CString> names;
    manager.getAllProfileNames(names);
    host.services.motionResultNames = {L"Slip"};
    for (int curve = 0; curve < 100; ++curve) {
        function.setFunctionType(FunctionType_Segments);
        segments().ClearFunction();
        segments().setIndependentVar(static_cast<IndependentVariableType_e>(1 + below(3)));
        segments().setMotionResult(L"Slip");
        segments().motionObjectType = below(2);
        segments().setMotorDependentVar(static_cast<MotorDriveType_e>(below(5)));
        segments().setForceTorqueDependentVar(static_cast<ForceTorqueType_e>(below(4)));
        double x = between(0.0, 10.0);
        for (int row = below(12); row > 0; --row) {
            const double end = x + between(0.001, 50.0);
            const double value = between(-1000.0, 1000.0);
            addRow(segments(), manager, x, end, value, names[static_cast<std::size_t>(below(10))]);
            x = end;
        }
        function.createXMLData(CString(text()), false, L"");
        expectStable(function.getXMLData());
    }
}

TEST_F(RoundTrip, RandomExpressions)
{
    for (int curve = 0; curve < 300; ++curve) {
        function.setFunctionType(FunctionType_Expression);
        expression().ClearFunction();
        expression().setDomain(between(-1e6, 1e6), std::ldexp(between(-1.0, 1.0), below(200) - 100));
        expression().setIndepVar(CString(text()));
        expression().setMotorDependentVar(static_cast<MotorDriveType_e>(below(5)));
        expression().setForceTorqueDependentVar(static_cast<ForceTorqueType_e>(below(4)));
        expression().setMathExpression(CString(text()));
        function.createXMLData(CString(text()), false, L"");
        expectStable(function.getXMLData());
    }
}

// What a document changes of a curve, and that it does so only once.

TEST_F(RoundTrip, NumbersAreRounded)
{
    ASSERT_TRUE(readBuffer(dataPointDocument().set("Points", point("0.12345678", "1234567.8"))));
    ASSERT_TRUE(readBuffer(write()));
    EXPECT_EQ(showPoints(points()), number(0.123457) + ":1234570");
    ASSERT_TRUE(readBuffer(
        segmentDocument().set("Segments", segment("", "", "0.12345678") + segment("0", "12345678.9", "1"))));
    ASSERT_TRUE(readBuffer(write()));
    EXPECT_EQ(showSegments(segments()),
              "0-0=" + number(0.123457) + " Cubic (Default); 0-12345678.9=1 Cubic (Default)");
}

// Two X that are equal at six digits move apart at the next read.
TEST_F(RoundTrip, PointsTooCloseMoveOn)
{
    ASSERT_TRUE(readBuffer(dataPointDocument().set("Points", point("1000001", "1") + point("1000002", "2"))));
    ASSERT_TRUE(readBuffer(write()));
    EXPECT_EQ(showPoints(points()), "1000000:1 1000001:2");
}

TEST_F(RoundTrip, MotionObjectNoneBecomesMotor)
{
    ASSERT_TRUE(readBuffer(dataPointDocument().set("MotionObjectType", "")));
    EXPECT_EQ(function.getMotionObjectType(), MotionObjectType_None);
    ASSERT_TRUE(readBuffer(write()));
    EXPECT_EQ(function.getMotionObjectType(), MotionObjectType_Motor);
}

TEST_F(RoundTrip, IndependentVariableNoneIsWrittenEmptyAndRefused)
{
    function.setFunctionType(FunctionType_Segments);
    EXPECT_FALSE(readBuffer(write()));
    host.services.motionResultCount = 1;
    function.setFunctionType(FunctionType_DataPoints);
    EXPECT_FALSE(readBuffer(write()));
    host.services.motionResultCount = 0;  // no list to check against
    EXPECT_TRUE(readBuffer(write()));
}

// The mark of an index is not read back as an index: the name is found through the
// definition in the document.
TEST_F(RoundTrip, ProfilesOfOneNameStayApart)
{
    const std::string definitions =
        definition("A", lineTimes("2", "Mine")) + definition("Mine", lineTimes("3", "Mine"));
    ASSERT_TRUE(readBuffer(segmentDocument()
                               .set("Segments", segment("", "", "0", "A") + segment("0", "1", "1", "A") +
                                                    segment("1", "2", "2", "Mine"))
                               .set("ProfileDefinitions", definitions)));
    const std::string second = write();
    EXPECT_THAT(second, HasSubstr("<UniqueName>A (Assembly)</UniqueName>"));
    EXPECT_THAT(second, HasSubstr("<UniqueName>Mine (Assembly)</UniqueName>"));
    ASSERT_TRUE(readBuffer(second));
    EXPECT_EQ(write(), second);
    EXPECT_DOUBLE_EQ(function.evaluate(0.5, 0), 1.0);
    EXPECT_DOUBLE_EQ(function.evaluate(1.5, 0), 2.5);
}

// With a row without a profile no definitions are written, so the other rows get the
// default profile if theirs is not known otherwise.
TEST_F(RoundTrip, DefinitionsLostInAFreshProcessFallBackToTheDefault)
{
    ASSERT_TRUE(readBuffer(segmentDocument()
                               .set("Segments", segment("", "", "0", "Mine") + segment("0", "1", "1", "Mine"))
                               .set("ProfileDefinitions", definition("Mine", lineTimes("2", "Mine")))));
    segments().addSegment(new mfSegment_c(1.0, 2.0, 3.0, L""));
    const std::string text = write();
    EXPECT_THAT(text, HasSubstr("<ProfileDefinitions/>"));

    mfProfileManager_c fresh;
    fresh.rebuildUserProfileMap();
    host.managerAnswer = &fresh;
    ASSERT_TRUE(readBuffer(text));
    EXPECT_EQ(showSegments(segments()),
              "0-0=0 Cubic (Default); 0-1=1 Cubic (Default); 1-2=3 Cubic (Default)");
    host.managerAnswer = &manager;
}

}  // namespace
}  // namespace mf::test
