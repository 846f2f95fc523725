// SPDX-License-Identifier: MIT

#include "mfcurves/documents/writeCurve.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "curveFixture.h"
#include "mfcurves/profiles/mfProfile.h"
#include "mfcurves/profiles/mfProfileKey.h"
#include "tests/locale/comma_locale.h"
#include "tests/segments/segmentTables.h"
#include "tests/support/TemporaryFolder.h"

// The bytes of written documents, and where they are written.

namespace mf::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class WriteCurve : public CurveTest {
protected:
    void addPoint(double x, double y) { points().appendDataPoint(new mfDataPoints_c(new mfPoint2D_c(x, y))); }
    mfSegment_c* addSegment(double startX, double endX, double value, const CString& displayName)
    {
        return &addRow(segments(), manager, startX, endX, value, displayName);
    }
    // The text between the tags of the first element of that name.
    std::string written(const std::string& name)
    {
        const std::string text = write();
        if (text.find("<" + name + "/>") != std::string::npos)
            return "";
        const std::size_t start = text.find("<" + name + ">") + name.size() + 2;
        return text.substr(start, text.find("</" + name + ">") - start);
    }
};

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

// Text forms

struct NumberText {
    int number;
    const char* text;
};

TEST_F(WriteCurve, MotionObjectTypes)
{
    for (const auto& [number, text] :
         {NumberText{1, "Motor"}, {2, "Force"}, {3, "Torque"}, {0, "Motor"}, {4, "Motor"}, {-1, "Motor"}}) {
        function.setMotionObjectType(static_cast<MotionObjectType_e>(number));
        EXPECT_EQ(written("MotionObjectType"), text) << number;
    }
}

TEST_F(WriteCurve, DataTypes)
{
    const NumberText cases[] = {
        {0, "MfXY_None"},
        {1, "MfXY_Disp_LinMotor"},
        {2, "MfXY_Vel_LinMotor"},
        {3, "MfXY_Acc_LinMotor"},
        {4, "MfXY_Disp_RotMotor"},
        {5, "MfXY_Vel_RotMotor"},
        {6, "MfXY_Acc_RotMotor"},
        {7, "MfXY_Disp_PathMateMotor"},
        {8, "MfXY_Vel_PathMateMotor"},
        {9, "MfXY_Acc_PathMateMotor"},
        {10, "MfXY_Force"},
        {11, "MfXY_Torque"},
        {12, "MfXY_Misc"},
        {15, "MfXY_Misc"},
        {22, "MfXY_Misc"},
        {23, "MfXY_Misc"},
        {24, "MfXY_Misc"},
        {-1, "MfXY_Misc"},
    };
    for (const auto& [number, text] : cases) {
        function.setXYDataType(static_cast<MotFuncXYDataType_e>(number));
        EXPECT_EQ(written("XYDataType"), text) << number;
    }
}

TEST_F(WriteCurve, UnknownDataTypeTurnsIntoMisc)
{
    for (const char* text : {"MfXY_Misc", "Unknown"}) {
        ASSERT_TRUE(readBuffer(dataPointDocument().set("XYDataType", text)));
        EXPECT_EQ(written("XYDataType"), "MfXY_Misc");
    }
}

TEST_F(WriteCurve, IndependentVariables)
{
    for (const auto& [number, text] : {NumberText{0, ""},
                                       {1, "IndependentVariableType_Time"},
                                       {2, "IndependentVariableType_CycleAngle"},
                                       {3, "Slip"},
                                       {4, ""},
                                       {-1, ""}}) {
        segments().setIndependentVar(static_cast<IndependentVariableType_e>(number));
        segments().setMotionResult(L"Slip");
        points().setIndependentVar(static_cast<IndependentVariableType_e>(number));
        points().setMotionResult(L"Slip");
        function.setFunctionType(FunctionType_Segments);
        EXPECT_EQ(written("IndepVar"), text) << number;
        function.setFunctionType(FunctionType_DataPoints);
        EXPECT_EQ(written("IndepVar"), text) << number;
    }
}

struct DependentText {
    int object;  // motionObjectType
    int motor;
    int force;
    const char* ofSegments;
    const char* ofPoints;
    const char* ofExpression;
};

const DependentText kDependentTexts[] = {
    {0, 1, 0, "MotorDriveType_Displacment", "MotorDriveType_Displacment", "MotorDriveType_Displacment"},
    {0, 2, 0, "MotorDriveType_Velocity", "MotorDriveType_Velocity", "MotorDriveType_Velocity"},
    {0, 3, 0, "MotorDriveType_Acceleration", "MotorDriveType_Acceleration", "MotorDriveType_Acceleration"},
    {0, 0, 0, "MotorDriveType_Displacment", "", ""},
    {0, 4, 0, "MotorDriveType_Displacment", "", ""},
    {0, -1, 0, "MotorDriveType_Displacment", "", ""},
    {1, 0, 1, "ForceTorqueType_Force", "ForceTorqueType_Force", "ForceTorqueType_Force"},
    {1, 0, 2, "ForceTorqueType_Torque", "ForceTorqueType_Torque", "ForceTorqueType_Torque"},
    {1, 0, 0, "", "", ""},
    {1, 0, 3, "", "", ""},
    {7, 0, 2, "ForceTorqueType_Torque", "ForceTorqueType_Torque", "ForceTorqueType_Torque"},
    // Two kinds use motionObjectType, the expression the motor's quantity.
    {0, 0, 2, "MotorDriveType_Displacment", "", "ForceTorqueType_Torque"},
    {0, 2, 2, "MotorDriveType_Velocity", "MotorDriveType_Velocity", "MotorDriveType_Velocity"},
    {1, 2, 2, "ForceTorqueType_Torque", "ForceTorqueType_Torque", "MotorDriveType_Velocity"},
};

TEST_F(WriteCurve, DependentVariables)
{
    for (const DependentText& c : kDependentTexts) {
        const std::string shown =
            std::to_string(c.object) + " " + std::to_string(c.motor) + " " + std::to_string(c.force);
        const auto expect = [&](auto& kind, FunctionType_e type, const char* text) {
            kind.motionObjectType = c.object;
            kind.setMotorDependentVar(static_cast<MotorDriveType_e>(c.motor));
            kind.setForceTorqueDependentVar(static_cast<ForceTorqueType_e>(c.force));
            function.setFunctionType(type);
            EXPECT_EQ(written("DepVar"), text) << shown << " of type " << type;
        };
        expect(segments(), FunctionType_Segments, c.ofSegments);
        expect(points(), FunctionType_DataPoints, c.ofPoints);
        expect(expression(), FunctionType_Expression, c.ofExpression);
    }
}

TEST_F(WriteCurve, Interpolations)
{
    function.setFunctionType(FunctionType_DataPoints);
    for (const auto& [number, text] : {NumberText{0, "DataPointInterpolationType_Linear"},
                                       {1, "DataPointInterpolationType_Cubic"},
                                       {2, "DataPointInterpolationType_Akima"},
                                       {3, ""},
                                       {-1, ""}}) {
        points().setInterpolationType(static_cast<DataPointInterpolationType_e>(number));
        EXPECT_EQ(written("Interpolation"), text) << number;
    }
}

struct NumberForm {
    double number;
    const char* significant;  // of points and expressions
    const char* fixed;        // of segments
};

const NumberForm kNumberForms[] = {
    {0.0, "0", "0.000000"},
    {-0.0, "-0", "-0.000000"},
    {1.0, "1", "1.000000"},
    {0.5, "0.5", "0.500000"},
    {1.0 / 3.0, "0.333333", "0.333333"},
    {123456.0, "123456", "123456.000000"},
    {1234567.0, "1.23457E+06", "1234567.000000"},
    {999999.5, "1E+06", "999999.500000"},
    {0.0001, "0.0001", "0.000100"},
    {0.00001, "1E-05", "0.000010"},
    {0.0000005, "5E-07", "0.000000"},  // just below a half, as a double
    {0.0000006, "6E-07", "0.000001"},
    {1e100, "1E+100",
     "10000000000000000159028911097599180468360808563945281389781327557747838772170381060813469985856815104."
     "000000"},
    {std::numeric_limits<double>::infinity(), "INF", "inf"},
    {-std::numeric_limits<double>::infinity(), "-INF", "-inf"},
};

TEST_F(WriteCurve, Numbers)
{
    addSegment(0.0, 0.0, 0.0, L"");
    mfSegment_c* row = addSegment(0.0, 1.0, 0.0, L"");
    for (const NumberForm& form : kNumberForms) {
        function.setFunctionType(FunctionType_Expression);
        expression().setDomain(form.number, 0.0);
        EXPECT_EQ(written("MinX"), form.significant);

        function.setFunctionType(FunctionType_DataPoints);
        points().ClearFunction();
        addPoint(0.0, form.number);
        EXPECT_EQ(written("y"), form.significant);

        function.setFunctionType(FunctionType_Segments);
        row->setStartX(form.number);
        row->setEndX(form.number);
        row->setValue(form.number);
        EXPECT_THAT(write(),
                    HasSubstr(std::string("<Segment ID=\"2\"><StartX>") + form.fixed + "</StartX><EndX>" +
                              form.fixed + "</EndX><Value>" + form.fixed + "</Value><Profile/></Segment>"));
    }
}

TEST_F(WriteCurve, NumbersHaveAPointUnderACommaLocale)
{
    const locale_test::CommaLocale comma;
    ASSERT_TRUE(comma.holds());
    ASSERT_TRUE(readBuffer(dataPointDocument()));
    const std::string text = write();
    ASSERT_TRUE(readBuffer(text));
    EXPECT_EQ(showPoints(points()), "0.5:2 1:3");
    EXPECT_THAT(text, HasSubstr("<x>0.5</x>"));
}

TEST_F(WriteCurve, NamesKeepAllCharactersThatXmlAllows)
{
    CString name(L"a<b>&\"'\t\u00E4\u4E2D\U0001F600 \x01");
    function.createXMLData(name, false, L"");
    EXPECT_THAT(function.getXMLData(),
                HasSubstr("<FunctionName>a&lt;b&gt;&amp;\"'\t\u00E4\u4E2D\U0001F600 \uFFFD</FunctionName>"));
    // The name in the document is the caller's; that of the function does not change.
    EXPECT_TRUE(function.getName().IsEmpty());
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
