// SPDX-License-Identifier: MIT

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "mfcurves/mfcurves.h"
#include "tests/reliability/timeTest.h"
#include "tests/support/TemporaryFolder.h"

// Documents: reading, editing and writing.

namespace time_test {
namespace {

std::string element(const std::string& name, const std::string& content)
{
    return "<" + name + ">" + content + "</" + name + ">";
}

// The start of every document. The motion object is that of a new function, so that
// files are accepted, too.
std::string head(const std::string& type)
{
    return "<Curve><Version>1</Version><FunctionName>n</FunctionName><FunctionType>" + type +
           "</FunctionType><MotionObjectType>Motor</MotionObjectType><XYDataType>MfXY_Disp_LinMotor</"
           "XYDataType>"
           "<IndepVar>IndependentVariableType_Time</IndepVar><DepVar>MotorDriveType_Displacment</DepVar>"
           "<Interpolation>DataPointInterpolationType_Akima</Interpolation>"
           "<RangeX><MinX>0</MinX><MaxX>1</MaxX></RangeX><RangeY><MinY>0</MinY><MaxY>0</MaxY></RangeY>"
           "<Cursor></Cursor><SegmentCount>1</SegmentCount><PointCount>1</PointCount>";
}

constexpr std::size_t kHead = 700;  // room for head and end
constexpr std::size_t kBody = kMegabyte - kHead;

std::string segmentDocument(const std::string& definitions, const std::string& rows)
{
    return head("Segments") + element("ProfileDefinitions", definitions) + element("Segments", rows) +
           "</Curve>";
}

std::string pointDocument(const std::string& rows)
{
    return head("DataPoints") + element("Points", rows) + "</Curve>";
}

std::string expressionDocument(const std::string& rest)
{
    return head("Expression") + rest + "</Curve>";
}

std::string definition(const std::string& name, const std::string& text)
{
    return element("ProfileDefinition", element("a", name) + element("b", text));
}

class DocumentTime : public Time {
protected:
    static mfFunctionSegments_c& segments(mfFunctionData_c& function)
    {
        return static_cast<mfFunctionSegments_c&>(*function.getFunctionSegments());
    }
    static mfFunctionDataPoints_c& points(mfFunctionData_c& function)
    {
        return static_cast<mfFunctionDataPoints_c&>(*function.getFunctionDataPoints());
    }

    // All that an editor does with a table of segments.
    void edit(mfFunctionSegments_c& table)
    {
        const int count = table.getSegmentCount();
        if (count < 3)
            return;
        int stale = 0;
        double y[4];
        std::vector<CString> names;
        std::vector<mfProfile_c*> profiles;
        mfFunctionSegments_c copy;
        watch_.time("Copy", [&] { copy.Copy(&table); });
        watch_.time("getProfilesToSave", [&] { table.getProfilesToSave(names, profiles); });
        watch_.time("modifySegment", [&] { table.modifySegment(1, 1, 0.0, 1e9, 0.0, L""); });
        watch_.time("modifySegment", [&] { table.modifySegment(count - 1, 0, -1e9, 0.0, 0.0, L""); });
        watch_.time("checkUpdate", [&] { table.checkUpdate(stale); });
        watch_.time("parseExpression", [&] { table.parseExpression(1); });
        watch_.time("calculateValue(row)", [&] { table.calculateValue(1); });
        watch_.time("calculateValue(row, x)",
                    [&] { table.calculateValue(1, 0.5, y[0], y[1], y[2], y[3], 3); });
        watch_.time("insertSegment", [&] { table.insertSegment(2, new mfSegment_c(0, 1, 2, L"Cubic")); });
        watch_.time("deleteSegment", [&] { table.deleteSegment(1); });
        watch_.time("clearSegments", [&] { table.clearSegments(); });
    }

    // All that an editor does with a table of data points.
    void edit(mfFunctionDataPoints_c& table)
    {
        const int count = table.getDataPointsCount();
        if (count < 1)
            return;
        double y[4];
        mfFunctionDataPoints_c copy;
        watch_.time("Copy", [&] { copy.Copy(&table); });
        watch_.time("calculateValue", [&] { table.calculateValue(); });
        watch_.time("calculateValue(x)", [&] { table.calculateValue(0.5, y[0], y[1], y[2], y[3]); });
        watch_.time("modifyDataPoint", [&] { table.modifyDataPoint(count / 2, 0, 1e9, 0.0); });
        watch_.time("modifyDataPoint", [&] { table.modifyDataPoint(count - 1, 0, -1e9, 0.0); });
        watch_.time("modifyDataPoint", [&] { table.modifyDataPoint(0, 1, 0.0, 5.0); });
        watch_.time("findDataPonts", [&] { table.findDataPonts(0.5); });
        auto inserted = std::make_unique<mfDataPoints_c>();
        inserted->addPoint(0.25, 1.0);
        watch_.time("insertDataPoint", [&] {
            if (table.insertDataPoint(count / 2, inserted.get()))
                static_cast<void>(inserted.release());
        });
        watch_.time("deleteDataPoint", [&] { table.deleteDataPoint(0); });
        watch_.time("expandDataPoints", [&] { table.expandDataPoints(0); });
        watch_.time("updateForLegacyData", [&] { table.updateForLegacyData(false); });
        watch_.time("updateForLegacyData", [&] { table.updateForLegacyData(true); });
        std::vector<std::size_t> rows;
        for (int row = 0; row < table.getDataPointsCount(); row += 2)
            rows.push_back(static_cast<std::size_t>(row));
        watch_.time("deleteDataPoints", [&] { table.deleteDataPoints(rows); });
        watch_.time("clearDataPoints", [&] { table.clearDataPoints(); });
    }

    void use(mfFunctionData_c& function)
    {
        for (int order = 0; order < 4; ++order)
            watch_.time("evaluate", [&] { function.evaluate(0.5, order); });
        watch_.time("createXMLData", [&] { function.createXMLData(L"n", false, L""); });
        edit(segments(function));
        edit(points(function));
    }
};

TEST_P(DocumentTime, Buffer)
{
    const std::string text = input();
    auto function = std::make_unique<mfFunctionData_c>();
    ASSERT_TRUE(function->initialize());
    watch_.time("readXMLData", [&] { function->readXMLData(L"", true, text); });
    use(*function);
    watch_.time("destruction", [&] { function.reset(); });
}

// The name of the file is that of the default table, so that its profiles and those of the
// document get the same keys.
TEST_P(DocumentTime, File)
{
    const mf::test::TemporaryFolder folder;
    folder.write("Default.xml", input());
    const CString path(folder.wide("Default.xml"));
    auto function = std::make_unique<mfFunctionData_c>();
    ASSERT_TRUE(function->initialize());
    function->setMotionObjectType(mf::MotionObjectType_Motor);
    watch_.time("readXMLData", [&] { function->readXMLData(path, false, ""); });
    watch_.time("createXMLData", [&] { function->createXMLData(L"n", true, path); });
    use(*function);
}

const TimeCase kDocuments[] = {
    {"EmptySegments", [] { return segmentDocument("", filled("<Segment/>", kBody)); }},
    {"Segments",
     [] {
         return segmentDocument("", numbered(
                                        [](int i) {
                                            return "<Segment><a>" + std::to_string(i) + "</a><b>" +
                                                   std::to_string(i + 1) + "</b><c>" + std::to_string(i % 7) +
                                                   "</c></Segment>";
                                        },
                                        kBody));
     }},
    {"SegmentsThatClash",
     [] {
         return segmentDocument("", numbered(
                                        [](int i) {
                                            return "<Segment><a>" + std::to_string(i * 7919 % 10007) +
                                                   "</a><b>1</b><c>3</c></Segment>";
                                        },
                                        kBody));
     }},
    {"SegmentsOfNoLength",
     [] { return segmentDocument("", filled("<Segment><a>0</a><b>0</b></Segment>", kBody)); }},
    {"SegmentsOfOneLongFormula",
     [] {
         return segmentDocument(
             definition("P", currentDefinition("p", "v=" + filled("sin(x)+x*", kBody / 2) + "x;returnv;")),
             filled("<Segment><a/><a/><a/><a>P</a></Segment>", kBody / 2 - 200));
     }},
    {"SegmentsOfAFormulaThatDoubles",
     [] {
         return segmentDocument(definition("P", currentDefinition("p", doubling(16))),
                                filled("<Segment><a/><a/><a/><a>P</a></Segment>", kBody - 2'000));
     }},
    {"SegmentsOfAFormulaOfAFewThousandCharacters",
     [] {
         return segmentDocument(
             definition("P", currentDefinition("p", "v=" + filled("sin(x*x1)+x2*", 8'000) + "x;returnv;")),
             filled("<Segment><a/><a/><a/><a>P</a></Segment>", kBody - 9'000));
     }},
    {"SegmentsWithLongProfileNames",
     [] {
         return segmentDocument(
             definition("P", currentDefinition("p", "v=x;returnv;")),
             filled("<Segment><a/><a/><a/><a>" + repeated("P", 5'000) + "</a></Segment>", kBody - 500));
     }},
    {"SegmentsInSegments",
     [] {
         return segmentDocument("",
                                nested("<Segment><a>", filled("9", kBody - 5'000), "</a></Segment>", 120));
     }},
    {"Definitions",
     [] {
         return segmentDocument(numbered(
                                    [](int i) {
                                        return definition(
                                            "P" + std::to_string(i),
                                            currentDefinition("p", "v=" + std::to_string(i) + ";returnv;"));
                                    },
                                    kBody - 200),
                                "<Segment/><Segment/>");
     }},
    {"DefinitionsAndAsManyRows",
     [] {
         std::string rows;
         std::string definitions;
         for (int i = 0; definitions.size() + rows.size() < kBody - 500; ++i) {
             const std::string name = nameOf(i);
             definitions += definition(name, currentDefinition("p", "v=" + std::to_string(i) + ";returnv;"));
             rows += "<Segment><a/><a/><a/><a>" + name + "</a></Segment>";
         }
         return segmentDocument(definitions, rows);
     }},
    {"DefinitionsOfOneName",
     [] {
         std::string text = numbered(
             [](int i) {
                 return definition("Q" + std::to_string(i),
                                   currentDefinition("p", "v=" + std::to_string(i) + ";returnv;"));
             },
             kBody / 2);
         text += numbered(
             [](int i) {
                 return definition("P", currentDefinition("p", "v=x+" + std::to_string(i) + ";returnv;"));
             },
             kBody / 2 - 200);
         return segmentDocument(text, "<Segment/><Segment/>");
     }},
    {"DefinitionsThatDouble",
     [] {
         return segmentDocument(numbered(
                                    [](int i) {
                                        return definition(
                                            "P" + std::to_string(i),
                                            currentDefinition("p", doubling(14, std::to_string(i))));
                                    },
                                    kBody - 200),
                                "<Segment/><Segment/>");
     }},
    {"DefinitionsInDefinitions",
     [] {
         return segmentDocument(
             nested("<ProfileDefinition><a/><b>",
                    currentDefinition(
                        "p", numbered([](int i) { return nameOf(i) + "=1;"; }, kBody - 10'000) + "returny;"),
                    "</b></ProfileDefinition>", 120),
             "<Segment/><Segment/>");
     }},
    {"DefinitionsInDefinitionsThatRead",
     [] {
         return segmentDocument(
             nested("<ProfileDefinition><a/><b>",
                    currentDefinition("p", "v=" + filled("x+", kBody - 10'000) + "x;returnv;"),
                    "</b></ProfileDefinition>", 120),
             "<Segment/><Segment/>");
     }},
    {"EmptyPoints", [] { return pointDocument(filled("<Point/>", kBody)); }},
    {"Points",
     [] {
         return pointDocument(numbered(
             [](int i) {
                 return "<Point><x>" + std::to_string(i) + "</x><y>" + std::to_string(i % 7) + "</y></Point>";
             },
             kBody));
     }},
    {"PointsFallingInX",
     [] {
         return pointDocument(numbered(
             [](int i) { return "<Point><x>" + std::to_string(99999 - i) + "</x><y>1</y></Point>"; }, kBody));
     }},
    {"PointsInNoOrder",
     [] {
         return pointDocument(numbered(
             [](int i) {
                 return "<Point><x>" + std::to_string(i * 7919LL % 100003) + "</x><y>1</y></Point>";
             },
             kBody));
     }},
    {"PointsAtOneX", [] { return pointDocument(filled("<Point><x/><y/></Point>", kBody)); }},
    {"PointsWithoutAnX", [] { return pointDocument(filled("<Point>  <!----><!----></Point>", kBody)); }},
    {"RowOfPoints", [] { return pointDocument(element("Point", filled("<a/>", kBody - 20))); }},
    {"RowOfPointsInNoOrder",
     [] {
         return pointDocument(element(
             "Point", numbered([](int i) { return "<a>" + std::to_string(i * 7919LL % 100003) + "</a>"; },
                               kBody - 20)));
     }},
    {"PointsInPoints",
     [] { return pointDocument(nested("<Point><a>", filled("9", kBody - 4'000), "</a><b/></Point>", 120)); }},
    {"PointsInPointsOfManyTexts",
     [] {
         return pointDocument(nested("<Point><a>", filled("9<a/>", kBody - 4'000), "</a><b/></Point>", 120));
     }},
    {"LongNumbers",
     [] {
         return pointDocument(numbered(
             [](int i) {
                 return "<Point><x>" + std::to_string(i) + "." + repeated("1", 780) + "</x><y>0." +
                        repeated("0", 780) + "1</y></Point>";
             },
             kBody));
     }},
    {"Expression",
     [] { return expressionDocument(element("Expression", "x" + filled("+time", kBody - 100))); }},
    {"LongName", [] { return expressionDocument(element("Expression", filled("&lt;", kBody - 100))); }},
    {"Attributes",
     [] {
         return pointDocument("<Point" +
                              numbered([](int i) { return " a" + std::to_string(i) + "=''"; }, kBody) + "/>");
     }},
    {"ElementsWithManyAttributes",
     [] {
         std::string attributes;
         for (int i = 0; i < 900; ++i)
             attributes += " " + nameOf(i) + "=''";
         return pointDocument(filled("<Point" + attributes + "/>", kBody));
     }},
    {"DistinctNames",
     [] { return pointDocument(numbered([](int i) { return "<" + nameOf(i) + "/>"; }, kBody)); }},
    {"Prefixes",
     [] {
         std::string prefixes;
         for (int i = 0; i < 950; ++i)
             prefixes += " xmlns:" + nameOf(i) + "='" + std::to_string(i) + "'";
         return pointDocument("<q" + prefixes + ">" + filled("<_a:b/>", kBody - 30'000) + "</q>");
     }},
    {"PrefixesOfAttributes",
     [] {
         std::string prefixes;
         for (int i = 0; i < 950; ++i)
             prefixes += " xmlns:" + nameOf(i) + "='" + std::to_string(i) + "'";
         std::string attributes;
         for (int i = 0; i < 900; ++i)
             attributes += " " + nameOf(0) + ":" + nameOf(i) + "=''";
         return pointDocument("<q" + prefixes + ">" + filled("<b" + attributes + "/>", kBody - 30'000) +
                              "</q>");
     }},
    {"PrefixesAtEachLevel",
     [] {
         std::string open;
         std::string close;
         for (int i = 0; i < 240; ++i) {
             open += "<q xmlns:" + nameOf(4 * i) + "='a' xmlns:" + nameOf(4 * i + 1) +
                     "='b' xmlns:" + nameOf(4 * i + 2) + "='c' xmlns:" + nameOf(4 * i + 3) + "='d'>";
             close += "</q>";
         }
         return pointDocument(open + filled("<_a:b/>", kBody - 30'000) + close);
     }},
    {"Nesting", [] { return pointDocument(filled("<q>", kBody)); }},
    {"NestedTwoHundredDeep", [] { return pointDocument(filled(nested("<q>", "1", "</q>", 200), kBody)); }},
    {"Comments", [] { return pointDocument(filled("<!---->", kBody)); }},
    {"CommentsInAText",
     [] { return expressionDocument(element("Expression", filled("1<!---->", kBody - 100))); }},
    {"Instructions", [] { return pointDocument(filled("<?a?>", kBody)); }},
    {"CharacterData",
     [] { return expressionDocument(element("Expression", filled("<![CDATA[1]]>", kBody - 100))); }},
    {"CharacterReferences",
     [] { return expressionDocument(element("Expression", filled("&#32;", kBody - 100))); }},
    {"LongText", [] { return expressionDocument(element("Expression", filled("9", kBody - 100))); }},
    {"LongTextBeyondAscii",
     [] { return expressionDocument(element("Expression", filled("\u00fc", kBody - 100))); }},
    {"BytesThatAreNoText",
     [] { return expressionDocument(element("Expression", filled("\xff", kBody - 100))); }},
    {"Lines", [] { return pointDocument(filled("\n", kBody)); }},
    {"LinesBetweenElements", [] { return pointDocument(filled("\n<a/>", kBody)); }},
    {"MissingElement", [] { return head("Segments").substr(0, 200) + filled("<q/>", kBody) + "</Curve>"; }},
    {"RangesWithoutEnds",
     [] { return "<Curve><Version>1</Version>" + filled("<RangeX><q/></RangeX>", kBody) + "</Curve>"; }},
    {"DocumentType",
     [] {
         return "<!DOCTYPE a [" + numbered([](int i) { return "<!ENTITY " + nameOf(i) + " 'x'>"; }) +
                "]><a/>";
     }},
    {"LessThanSigns", [] { return filled("<"); }},
};

INSTANTIATE_TEST_SUITE_P(Reliability, DocumentTime, testing::ValuesIn(kDocuments),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
}  // namespace time_test
