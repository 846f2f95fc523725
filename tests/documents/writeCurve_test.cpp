// SPDX-License-Identifier: MIT

#include "mfcurves/documents/writeCurve.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "mfcurves/profiles/mfProfile.h"
#include "mfcurves/profiles/mfProfileKey.h"
#include "tests/support/TemporaryFolder.h"
#include "writeCurveFixture.h"

// The bytes of whole documents, and where they are written.

namespace mf::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

// Whole documents

TEST_F(WriteCurve, DocumentOfOneDataPoint)
{
    function.setFunctionType(FunctionType_DataPoints);
    function.setMotionObjectType(MotionObjectType_Motor);
    function.setXYDataType(MfXY_Disp_LinMotor);
    points().setIndependentVar(IndependentVariableType_Time);
    points().setMotorDependentVar(MotorDriveType_Displacment);
    addPoint(0.5, 2.0);
    EXPECT_EQ(write("One point"),
              "<?xml version='1.0' encoding='UTF-8'?>\n"
              "<Curve><Version>1</Version><FunctionName>One point</FunctionName>"
              "<FunctionType>DataPoints</FunctionType><MotionObjectType>Motor</MotionObjectType>"
              "<XYDataType>MfXY_Disp_LinMotor</XYDataType>"
              "<IndepVar>IndependentVariableType_Time</IndepVar><DepVar>MotorDriveType_Displacment</DepVar>"
              "<Interpolation>DataPointInterpolationType_Linear</Interpolation>"
              "<RangeX><MinX>0</MinX><MaxX>0</MaxX></RangeX><RangeY><MinY>0</MinY><MaxY>0</MaxY></RangeY>"
              "<Cursor/><PointCount>1</PointCount>"
              "<Points><Point ID=\"1\"><x>0.5</x><y>2</y></Point></Points></Curve>\n");
}

TEST_F(WriteCurve, DocumentOfRowsOfSeveralPoints)
{
    function.setFunctionType(FunctionType_DataPoints);
    function.setMotionObjectType(MotionObjectType_Torque);
    function.setXYDataType(MfXY_Torque);
    points().setIndependentVar(IndependentVariableType_MotionResult);
    points().setMotionResult(L"Slip <1> & \u00E4");
    points().motionObjectType = 1;
    points().setForceTorqueDependentVar(ForceTorqueType_Torque);
    points().setInterpolationType(DataPointInterpolationType_Akima);
    auto* row = new mfDataPoints_c;
    row->addPoint(-1234567.0, 0.000012345678);
    row->addPoint(0.1, -0.0);
    points().appendDataPoint(row);
    points().appendDataPoint(new mfDataPoints_c(new mfPoint2D_c(2.0, 1.0 / 3.0)));
    EXPECT_EQ(write(""),
              "<?xml version='1.0' encoding='UTF-8'?>\n"
              "<Curve><Version>1</Version><FunctionName/>"
              "<FunctionType>DataPoints</FunctionType><MotionObjectType>Torque</MotionObjectType>"
              "<XYDataType>MfXY_Torque</XYDataType>"
              "<IndepVar>Slip &lt;1&gt; &amp; \u00E4</IndepVar><DepVar>ForceTorqueType_Torque</DepVar>"
              "<Interpolation>DataPointInterpolationType_Akima</Interpolation>"
              "<RangeX><MinX>0</MinX><MaxX>0</MaxX></RangeX><RangeY><MinY>0</MinY><MaxY>0</MaxY></RangeY>"
              "<Cursor/><PointCount>3</PointCount>"
              "<Points><Point ID=\"1\"><x>-1.23457E+06</x><y>1.23457E-05</y><x>0.1</x><y>-0</y></Point>"
              "<Point ID=\"2\"><x>2</x><y>0.333333</y></Point></Points></Curve>\n");
}

TEST_F(WriteCurve, DocumentOfSegments)
{
    function.setFunctionType(FunctionType_Segments);
    function.setMotionObjectType(MotionObjectType_Motor);
    function.setXYDataType(MfXY_Disp_RotMotor);
    segments().setIndependentVar(IndependentVariableType_CycleAngle);
    segments().setMotorDependentVar(MotorDriveType_Displacment);
    addSegment(0.0, 0.0, 1.0, L"Linear (Default)");
    addSegment(0.0, 90.0, 1234567.0000004, L"Linear (Default)");
    addSegment(90.0, 1000.0 / 3.0, -0.0000004, L"Cubic (Default)");
    EXPECT_EQ(
        write("Segments"),
        "<?xml version='1.0' encoding='UTF-8'?>\n"
        "<Curve><Version>1</Version><FunctionName>Segments</FunctionName>"
        "<FunctionType>Segments</FunctionType><MotionObjectType>Motor</MotionObjectType>"
        "<XYDataType>MfXY_Disp_RotMotor</XYDataType>"
        "<IndepVar>IndependentVariableType_CycleAngle</IndepVar><DepVar>MotorDriveType_Displacment</DepVar>"
        "<RangeX><MinX>0.000000</MinX><MaxX>0.000000</MaxX></RangeX>"
        "<RangeY><MinY>0.000000</MinY><MaxY>0.000000</MaxY></RangeY>"
        "<Cursor/><SegmentCount>3</SegmentCount><Segments>"
        "<Segment ID=\"1\"><StartX> </StartX><EndX> </EndX><Value>1.000000</Value>"
        "<Profile>Linear (Default)</Profile></Segment>"
        "<Segment ID=\"2\"><StartX>0.000000</StartX><EndX>90.000000</EndX><Value>1234567.000000</Value>"
        "<Profile>Linear (Default)</Profile></Segment>"
        "<Segment ID=\"3\"><StartX>90.000000</StartX><EndX>333.333333</EndX><Value>-0.000000</Value>"
        "<Profile>Cubic (Default)</Profile></Segment>"
        "</Segments><ProfileDefinitions>"
        "<ProfileDefinition><UniqueName>Linear (Default)</UniqueName><ProfileFunction>"
        "segmenttype(\"Linear\",x,x1,y1,x2,y2)slope=(y2-y1)/"
        "(x2-x1);dy=slope*(x-x1);y=y1+dy;returny;endsegmenttype"
        "</ProfileFunction></ProfileDefinition>"
        "<ProfileDefinition><UniqueName>Cubic (Default)</UniqueName><ProfileFunction>"
        "segmenttype(\"Cubic\",x,x1,y1,x2,y2)xbar=(x-x1)/(x2-x1);ybar=3*xbar^2-2*xbar^3;y=y1+(y2-y1)*ybar;"
        "returny;endsegmenttype</ProfileFunction></ProfileDefinition>"
        "</ProfileDefinitions></Curve>\n");
}

TEST_F(WriteCurve, DocumentOfAnExpression)
{
    function.setFunctionType(FunctionType_Expression);
    function.setMotionObjectType(MotionObjectType_Force);
    function.setXYDataType(MfXY_Force);
    expression().setDomain(-1.0 / 3.0, 1e7);
    expression().setIndepVar(L"Deflection");
    expression().setForceTorqueDependentVar(ForceTorqueType_Force);
    expression().setMathExpression(L"if({Deflection}: 0, 1<2, \"x\")");
    EXPECT_EQ(write("Force"),
              "<?xml version='1.0' encoding='UTF-8'?>\n"
              "<Curve><Version>1</Version><FunctionName>Force</FunctionName>"
              "<FunctionType>Expression</FunctionType><MotionObjectType>Force</MotionObjectType>"
              "<XYDataType>MfXY_Force</XYDataType>"
              "<RangeX><MinX>-0.333333</MinX><MaxX>1E+07</MaxX></RangeX>"
              "<RangeY><MinY>0</MinY><MaxY>0</MaxY></RangeY>"
              "<IndepVar>Deflection</IndepVar><DepVar>ForceTorqueType_Force</DepVar><Cursor/>"
              "<Expression>if({Deflection}: 0, 1&lt;2, \"x\")</Expression></Curve>\n");
}

TEST_F(WriteCurve, EmptyFunctionsHaveACompleteHeadAndNoRows)
{
    const std::string head =
        "<?xml version='1.0' encoding='UTF-8'?>\n"
        "<Curve><Version>1</Version><FunctionName>name</FunctionName>";
    function.setFunctionType(FunctionType_Segments);
    EXPECT_EQ(write(),
              head +
                  "<FunctionType>Segments</FunctionType><MotionObjectType>Motor</MotionObjectType>"
                  "<XYDataType>MfXY_None</XYDataType><IndepVar/>"
                  "<DepVar>MotorDriveType_Displacment</DepVar>"
                  "<RangeX><MinX>0.000000</MinX><MaxX>0.000000</MaxX></RangeX>"
                  "<RangeY><MinY>0.000000</MinY><MaxY>0.000000</MaxY></RangeY>"
                  "<Cursor/><SegmentCount>0</SegmentCount><Segments/><ProfileDefinitions/></Curve>\n");
    function.setFunctionType(FunctionType_DataPoints);
    EXPECT_EQ(write(),
              head +
                  "<FunctionType>DataPoints</FunctionType><MotionObjectType>Motor</MotionObjectType>"
                  "<XYDataType>MfXY_None</XYDataType><IndepVar/><DepVar/>"
                  "<Interpolation>DataPointInterpolationType_Linear</Interpolation>"
                  "<RangeX><MinX>0</MinX><MaxX>0</MaxX></RangeX><RangeY><MinY>0</MinY><MaxY>0</MaxY></RangeY>"
                  "<Cursor/><PointCount>0</PointCount><Points/></Curve>\n");
    function.setFunctionType(FunctionType_Expression);
    EXPECT_EQ(write(),
              head +
                  "<FunctionType>Expression</FunctionType><MotionObjectType>Motor</MotionObjectType>"
                  "<XYDataType>MfXY_None</XYDataType>"
                  "<RangeX><MinX>0</MinX><MaxX>0</MaxX></RangeX><RangeY><MinY>0</MinY><MaxY>0</MaxY></RangeY>"
                  "<IndepVar/><DepVar/><Cursor/><Expression/></Curve>\n");
}

// Rows and definitions

TEST_F(WriteCurve, FirstSegmentHasNoXAndEveryRowItsValue)
{
    mfSegment_c* first = addSegment(0.0, 0.0, 7.0, L"");
    first->setStartX(3.0);
    first->setEndX(4.0);
    EXPECT_EQ(
        written("Segments"),
        "<Segment ID=\"1\"><StartX> </StartX><EndX> </EndX><Value>7.000000</Value><Profile/></Segment>");
    ASSERT_TRUE(readBuffer(segmentDocument().set("Segments", written("Segments"))));
    EXPECT_EQ(showSegments(segments()), "0-0=7 Cubic (Default)");
}

TEST_F(WriteCurve, OneRowWithoutARecordDropsEveryDefinition)
{
    addSegment(0.0, 0.0, 0.0, L"Linear (Default)");
    addSegment(0.0, 1.0, 1.0, L"Linear (Default)");
    EXPECT_THAT(written("ProfileDefinitions"),
                StartsWith("<ProfileDefinition><UniqueName>Linear (Default)</UniqueName>"));
    mfSegment_c* row = addSegment(1.0, 2.0, 1.0, L"None (Default)");
    EXPECT_THAT(
        write(),
        HasSubstr("<Profile>None (Default)</Profile></Segment></Segments><ProfileDefinitions/></Curve>"));
    row->setProfileKey(manager.getProfileKeyFromDisplayName(L"Cubic (Default)"));
    EXPECT_THAT(write(), testing::Not(HasSubstr("<ProfileDefinitions/>")));
    addSegment(2.0, 3.0, 1.0, L"");
    EXPECT_THAT(write(), HasSubstr("<Profile/></Segment></Segments><ProfileDefinitions/></Curve>"));
}

TEST_F(WriteCurve, RecordNamesArePairedWithTheirDefinitions)
{
    auto* mine = new mfProfile_c;
    mine->definitionText = "a<b>&\u00E4";
    mfProfileKey_c key;
    ASSERT_EQ(manager.addAssemblyProfile("Mine", L"some.xml", mine, key), 0);
    addSegment(0.0, 0.0, 0.0, L"Mine (some)");
    EXPECT_EQ(written("ProfileDefinitions"),
              "<ProfileDefinition><UniqueName>Mine (some)</UniqueName>"
              "<ProfileFunction>a&lt;b&gt;&amp;\u00E4</ProfileFunction></ProfileDefinition>");
}

// Where the document is written

TEST_F(WriteCurve, TextReplacesTheTextBefore)
{
    char text[] = "before";
    function.setXMLData(text);
    const std::string first = write("one");
    EXPECT_THAT(first, HasSubstr("<FunctionName>one</FunctionName>"));
    EXPECT_THAT(write("two"), HasSubstr("<FunctionName>two</FunctionName>"));
    EXPECT_EQ(write("one"), first);
    EXPECT_EQ(startsLeft(), 0);
}

TEST_F(WriteCurve, FileDoesNotChangeTheText)
{
    const TemporaryFolder folder;
    ASSERT_TRUE(readBuffer(dataPointDocument()));
    char text[] = "before";
    function.setXMLData(text);
    function.createXMLData(L"name", true, CString((folder / "\u00E4 b.xml").c_str()));
    EXPECT_STREQ(function.getXMLData(), "before");
    EXPECT_EQ(folder.read("\u00E4 b.xml"), write());
    EXPECT_EQ(startsLeft(), 0);
}

TEST_F(WriteCurve, PathIsNotTouchedWithoutAFile)
{
    const TemporaryFolder folder;
    const CString path = folder.write("a.xml", "old").c_str();
    function.createXMLData(L"name", false, path);
    EXPECT_EQ(folder.read("a.xml"), "old");
}

TEST_F(WriteCurve, SaveThatFailsLeavesTheOldFile)
{
    const TemporaryFolder folder;
    folder.write("old.xml", "old");
    std::filesystem::create_directory(folder / "folder");
    folder.write("folder/inside", "inside");
    for (const auto& path :
         {folder / "none/a.xml", folder / "folder", folder / "old.xml/a.xml", std::filesystem::path()})
        function.createXMLData(L"name", true, CString(path.c_str()));
    EXPECT_EQ(folder.read("old.xml"), "old");
    EXPECT_EQ(folder.read("folder/inside"), "inside");
    int files = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::recursive_directory_iterator(folder.path()))
        ++files;
    EXPECT_EQ(files, 3);
    EXPECT_EQ(startsLeft(), 0);
}

TEST_F(WriteCurve, UnknownFunctionTypeWritesTheEmptyDocument)
{
    const TemporaryFolder folder;
    const CString path = folder.write("a.xml", "old").c_str();
    for (const int type : {0, 4, -1, 7}) {
        char text[] = "before";
        function.setXMLData(text);
        function.setFunctionType(static_cast<FunctionType_e>(type));
        EXPECT_EQ(write(), "");
        EXPECT_EQ(function.getXMLData(), nullptr);
        function.createXMLData(L"name", true, path);
        EXPECT_EQ(folder.read("a.xml"), "");
    }
    EXPECT_EQ(startsLeft(), 0);
}

TEST_F(WriteCurve, ObjectWithoutKindsWritesTheEmptyDocument)
{
    mfFunctionData_c bare;
    for (const FunctionType_e type :
         {FunctionType_Segments, FunctionType_DataPoints, FunctionType_Expression}) {
        char text[] = "before";
        bare.setXMLData(text);
        bare.setFunctionType(type);
        bare.createXMLData(L"name", false, L"");
        EXPECT_EQ(bare.getXMLData(), nullptr);
    }
    EXPECT_EQ(startsLeft(), 0);
}

TEST_F(WriteCurve, VersionIsTheOneReadLast)
{
    ASSERT_TRUE(readBuffer("<Curve><Version>2</Version></Curve>"));
    EXPECT_EQ(written("Version"), "2");
    mfFunctionData_c other;  // all objects share it
    ASSERT_TRUE(other.readXMLData(L"", true, "<Curve><Version>0.75</Version></Curve>"));
    EXPECT_EQ(written("Version"), "0.75");
    EXPECT_FALSE(other.readXMLData(L"", true, "<Curve/>"));
    EXPECT_EQ(written("Version"), "1");
}

TEST_F(WriteCurve, TextOfADocumentHasTheReadableVersion)
{
    addPoint(1, 2);
    function.setFunctionType(FunctionType_DataPoints);
    const std::string xml = write();
    ASSERT_TRUE(readBuffer("<Curve><Version>2</Version></Curve>"));
    starts = platform::xmlStartCount();
    EXPECT_EQ(documents::documentText(function, L"name"), xml);
    EXPECT_EQ(startsLeft(), 0);
    EXPECT_EQ(written("Version"), "2");
}

}  // namespace
}  // namespace mf::test
