// SPDX-License-Identifier: MIT

// No call takes more than a second for an input of at most a megabyte. Tests the worst
// known inputs of each reader, all made here, and times each call separately. The program
// prints the slowest call of every input.

#include <cmath>
#include <cstdio>
#include <ctime>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "mfcurves/interfaces/ICalculator.h"
#include "mfcurves/interfaces/MMEP_Data.h"
#include "mfcurves/interfaces/MotionMEParser.h"
#include "mfcurves/mfcurves.h"
#include "mfcurves/platform/encoding.h"
#include "mfcurves/profiles/mfProfileFileParser.h"
#include "mfcurves/profiles/mfSegmentTypeParser.h"
#include "tests/support/TemporaryFolder.h"

namespace {

constexpr std::size_t kMegabyte = 1'000'000;

constexpr double kSecondsAllowed = 1.0;

// Processor time, because the machine may be busy with something else.
class Stopwatch {
public:
    template <class Work>
    auto time(const char* call, Work&& work)
    {
        const Measure measure{*this, call, std::clock()};
        return work();
    }

    double slowest() const { return slowest_; }
    const char* slowestCall() const { return slowestCall_; }

private:
    struct Measure {
        Stopwatch& watch;
        const char* call;
        std::clock_t start;
        ~Measure()
        {
            const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
            if (seconds < watch.slowest_)
                return;
            watch.slowest_ = seconds;
            watch.slowestCall_ = call;
        }
    };

    double slowest_ = 0.0;
    const char* slowestCall_ = "";
};

// One input and the calls that receive it.
struct TimeCase {
    const char* name;
    std::function<std::string()> input;
};

void PrintTo(const TimeCase& c, std::ostream* os)
{
    *os << c.name;
}

class Time : public testing::TestWithParam<TimeCase> {
protected:
    Time()
    {
        QelSession_c::setMotionFunctionContext(&host_);
        host_.getProfileManager()->rebuildUserProfileMap();
    }
    ~Time() override
    {
        QelSession_c::setMotionFunctionContext(nullptr);
        EXPECT_LT(watch_.slowest(), kSecondsAllowed) << watch_.slowestCall();
        std::printf("%8.3f s  %s\n", watch_.slowest(), watch_.slowestCall());
    }

    static std::string input()
    {
        std::string text = GetParam().input();
        EXPECT_LE(text.size(), kMegabyte);
        return text;
    }

    mf::host::Context host_;
    Stopwatch watch_;
};

std::string repeated(const std::string& text, std::size_t size = kMegabyte - 200)
{
    std::string result;
    while (result.size() + text.size() <= size)
        result += text;
    return result;
}

std::string times(int count, const std::string& text)
{
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

// The texts of `make` for 0, 1, 2, ..., joined.
std::string numbered(const std::function<std::string(int)>& make, std::size_t size = kMegabyte - 200)
{
    std::string result;
    for (int i = 0;; ++i) {
        const std::string next = make(i);
        if (result.size() + next.size() > size)
            return result;
        result += next;
    }
}

std::string nested(const std::string& open, const std::string& inside, const std::string& close, int depth)
{
    return times(depth, open) + inside + times(depth, close);
}

// A short name for each number.
std::string nameOf(int number)
{
    std::string name = "_";
    do {
        name += static_cast<char>('a' + number % 26);
        number /= 26;
    } while (number > 0);
    return name;
}

// --- Expressions ----------------------------------------------------------------------------

class ExpressionTime : public Time {
protected:
    struct Release {
        void operator()(ICalculator* calculator) const { calculator->Release(); }
    };
    using Calculator = std::unique_ptr<ICalculator, Release>;

    static bool evaluate(ICalculator& calculator, double x)
    {
        MMEP_Data argument(x);
        MMEP_Data result;
        return calculator.Evaluate(1, &argument, result);
    }

    // Parses, and differentiates as long as there is a derivative, up to the third.
    void compileAndDifferentiate(const std::wstring& text, const wchar_t* variable, double x)
    {
        constexpr const char* kDifferentiating[] = {"first derivative", "second derivative",
                                                    "third derivative"};
        std::wstring name = variable == nullptr ? L"" : variable;
        ICalculator* parsed = nullptr;
        watch_.time("parse", [&] {
            MotionMEParser().parse(text.c_str(), variable == nullptr ? nullptr : name.data(), &parsed);
        });
        std::vector<Calculator> orders;
        orders.emplace_back(parsed);
        for (const char* call : kDifferentiating) {
            if (orders.back() == nullptr)
                break;
            watch_.time("evaluate", [&] { evaluate(*orders.back(), x); });
            orders.emplace_back(watch_.time(call, [&] { return orders.back()->differentiate(0); }));
        }
        watch_.time("release", [&] { orders.clear(); });
    }
};

TEST_P(ExpressionTime, CompilingAndDifferentiating)
{
    const std::wstring text = mf::platform::widen(input());
    compileAndDifferentiate(text, L"x", 0.75);
    compileAndDifferentiate(text, nullptr, 0.75);
}

TEST_P(ExpressionTime, OfAFunction)
{
    const CString text(mf::platform::widen(input()));
    mfFunctionData_c function;
    ASSERT_TRUE(function.initialize());
    function.setFunctionType(mf::FunctionType_Expression);
    auto& expression = static_cast<mfFunctionExpression_c&>(*function.getFunctionExpression());
    expression.setMotorDependentVar(mf::MotorDriveType_Displacment);
    expression.setDomain(0.5, 1.0);
    expression.setMathExpression(text);
    double y[4];
    watch_.time("calculateValue(x)", [&] { expression.calculateValue(0.75, y[0]); });
    expression.setPlottingPointCount(100);
    watch_.time("calculateValue(x), four orders",
                [&] { expression.calculateValue(0.75, y[0], y[1], y[2], y[3]); });
}

const TimeCase kExpressions[] = {
    {"Sum", [] { return "x" + repeated("+x"); }},
    {"SumOfDifferentTerms", [] { return "x" + numbered([](int i) { return "+x*" + std::to_string(i); }); }},
    {"SumOfCalls", [] { return "x" + numbered([](int i) { return "+sin(x+" + std::to_string(i) + ")"; }); }},
    {"SumOfQuotients",
     [] { return "x" + numbered([](int i) { return "+1/(x+" + std::to_string(i) + ")"; }); }},
    {"SumOfRemainders",
     [] { return "x" + numbered([](int i) { return "+(x*1e300)%" + std::to_string(i + 3) + "e-300"; }); }},
    {"RemaindersOfNumbers", [] { return "x" + repeated("+9e307%3e-308"); }},
    {"Product", [] { return "x" + repeated("*x"); }},
    {"ProductOfSums", [] { return "x" + numbered([](int i) { return "*(x+" + std::to_string(i) + ")"; }); }},
    {"ProductOfAFewThousandCalls",
     [] { return "x" + numbered([](int i) { return "*sin(x+" + std::to_string(i) + ")"; }, 20'000); }},
    {"Quotient", [] { return "x" + repeated("/x"); }},
    {"QuotientOfSums", [] { return "x" + numbered([](int i) { return "/(x+" + std::to_string(i) + ")"; }); }},
    {"Remainder", [] { return "x" + repeated("%3"); }},
    {"PowersOfPowers", [] { return "x" + repeated("^x"); }},
    {"PowersOfPowersForDerivatives", [] { return "x" + repeated("^x", 80'000); }},
    {"ShortTowerOfPowers", [] { return "x" + repeated("^x", 9'000); }},
    {"SumOfPowers", [] { return "x" + numbered([](int i) { return "+x^" + std::to_string(i) + ".5"; }); }},
    {"PolynomialPowersOfPowers", [] { return nested("(", "x+1", ")^9", 1000); }},
    {"Signs", [] { return repeated("-") + "x"; }},
    {"SignsAfterPowers", [] { return "x" + repeated("^-") + "1"; }},
    {"NestedParentheses", [] { return repeated(nested("(", "x", ")", 1000) + "+") + "x"; }},
    {"NestedCalls", [] { return nested("sin(", "x", ")", 1000); }},
    {"NestedCallsMuchDifferentiated", [] { return nested("exp(sin(", "x", ")/2)", 499); }},
    {"NestedQuotients", [] { return nested("1/(x+", "x", ")", 1000); }},
    {"NestedChoices", [] { return nested("if(x:1,2,", "x", ")", 1000); }},
    {"ChoicesInEachOperand",
     [] {
         std::string text = "x";
         for (int i = 0; i < 12; ++i)
             text = "if(" + text + ":" + text + ",x+" + std::to_string(i) + ",sin(x))";
         return text;
     }},
    {"NestedMinimaAndMaxima", [] { return nested("min(x*2,max(sin(x),", "x", "))", 499); }},
    {"ManyMinima", [] { return "min(x" + numbered([](int i) { return ",x+" + std::to_string(i); }) + ")"; }},
    {"SumOfChoices",
     [] { return "x" + numbered([](int i) { return "+if(x-" + std::to_string(i) + ":1,x,2)"; }); }},
    {"SumOfSteps",
     [] { return "x" + numbered([](int i) { return "+step(x,0,x,1," + std::to_string(i) + ")"; }); }},
    {"SumOfStepsWithoutEnds",
     [] {
         return "x" + numbered([](int i) { return "+havsin(x,x^2,x,x^3+1,x+" + std::to_string(i) + ")"; });
     }},
    {"Polynomial", [] { return "poly(x,0.5" + repeated(",1") + ")"; }},
    {"PolynomialOfVariables", [] { return "poly(x,0.5" + repeated(",x") + ")"; }},
    {"Chebyshev", [] { return "cheby(x,0.5" + repeated(",1") + ")"; }},
    {"ChebyshevOfVariables", [] { return "cheby(x,0.5" + repeated(",x") + ")"; }},
    {"ChebyshevOfVariablesAgainAndAgain",
     [] { return "0" + repeated("+cheby(x,0.5" + times(1'380, ",x") + ")"); }},
    {"ChebyshevOfVariablesAHundredTimes",
     [] {
         return "0" +
                numbered([](int i) { return "+cheby(x," + std::to_string(i) + times(130, ",x") + ")"; });
     }},
    {"FourierSeries", [] { return "forsin(x,0.5,2" + repeated(",1") + ")"; }},
    {"FourierSeriesOfVariables", [] { return "forcos(x,0.5,x" + repeated(",x") + ")"; }},
    {"ManyParameters", [] { return "0" + numbered([](int i) { return "+" + nameOf(i); }); }},
    {"ManyResults", [] { return "0" + numbered([](int i) { return "+{" + std::to_string(i) + "}"; }); }},
    {"ManyDifferentNumbers", [] { return "x" + numbered([](int i) { return "+1/" + std::to_string(i); }); }},
    {"OneLongNumber", [] { return "x+0." + repeated("3") + "1"; }},
    {"LongNumbers",
     [] { return "x" + numbered([](int i) { return "+0." + times(780, "1") + std::to_string(i); }); }},
    {"LargeExponents", [] { return "x" + repeated("+1e-99999"); }},
    {"HugeNumbers",
     [] { return "x" + numbered([](int i) { return "+sin(1e308*x*" + std::to_string(i + 2) + ")"; }); }},
    {"OneLongName", [] { return repeated("y"); }},
    {"Blanks", [] { return repeated(" ") + "x"; }},
    {"NothingButBraces", [] { return repeated("{"); }},
    {"NothingButCommas", [] { return "max(" + repeated(","); }},
    {"UnknownFunctions", [] { return repeated("y") + "("; }},
};

INSTANTIATE_TEST_SUITE_P(Reliability, ExpressionTime, testing::ValuesIn(kExpressions),
                         [](const auto& tested) { return tested.param.name; });

// --- Profile definitions --------------------------------------------------------------------

std::string currentDefinition(const std::string& name, const std::string& statements)
{
    return "segmenttype(\"" + name + "\",x,x1,y1,x2,y2)" + statements + "endsegmenttype";
}

// Each line doubles the text of the previous line, up to about 10 * 2^lines.
std::string doubling(int lines, const std::string& first = "x")
{
    std::string text = nameOf(0) + "q=" + first + ";";
    for (int i = 1; i <= lines; ++i)
        text += nameOf(i) + "q=" + nameOf(i - 1) + "q+" + nameOf(i - 1) + "q;";
    return text + "return" + nameOf(lines) + "q;";
}

class ProfileTime : public Time {
protected:
    // A row with the record's profile, used as by an editor: compiled, sampled, evaluated.
    void useInARow(const mfProfile_c& record)
    {
        mfProfileManager_c& manager = *host_.getProfileManager();
        auto stored = std::make_unique<mfProfile_c>(record);
        mfProfileKey_c key;
        if (manager.addAssemblyProfileFromDocument("P", true, stored.get(), key) == 0)
            static_cast<void>(stored.release());
        mfFunctionSegments_c table;
        table.addSegment(new mfSegment_c(0, 0, 0, L"P"));
        table.addSegment(new mfSegment_c(0, 1, 4, L"P"));
        mfSegment_c* row = nullptr;
        table.selectSegment(1, row);
        row->setProfileKey(key);
        watch_.time("parseExpression", [&] { table.parseExpression(1); });
        watch_.time("calculateValue(row)", [&] { table.calculateValue(1); });
        watch_.time("evaluate", [&] { table.evaluate(0.5, 3); });
    }
};

TEST_P(ProfileTime, ReadFromAFile)
{
    const mf::test::TemporaryFolder folder;
    folder.write("a.txt", input());
    std::vector<mfProfile_c*> records;
    watch_.time("readProfiles", [&] { mfSegmentTypeParser_c().readProfiles(folder / "a.txt", records); });
    if (!records.empty())
        useInARow(*records.front());
    for (mfProfile_c* record : records)
        delete record;
}

TEST_P(ProfileTime, OneDefinition)
{
    std::string text = input();
    mfProfile_c record;
    watch_.time("parseDefinition", [&] { mfSegmentTypeParser_c().parseDefinition(text, &record, true); });
}

const TimeCase kProfiles[] = {
    {"ShortStatements",
     [] { return currentDefinition("P", numbered([](int i) { return nameOf(i) + "=1;"; }) + "returny;"); }},
    {"ChainOfNames",
     [] {
         return currentDefinition(
             "P", numbered([](int i) { return nameOf(i + 1) + "=" + nameOf(i) + "+1;"; }) + "returny;");
     }},
    {"OneNameAgainAndAgain", [] { return currentDefinition("P", repeated("a=a;") + "returna;"); }},
    {"LongNameThatAlmostMatchesEverywhere",
     [] {
         return currentDefinition(
             "P", std::string(kMegabyte / 4, 'a') + "b=1;y=" + std::string(kMegabyte / 2, 'a') + ";returny;");
     }},
    {"ManyLongNames",
     [] {
         return currentDefinition(
             "P", numbered([](int i) { return times(500, "a") + nameOf(i) + "=1;"; }, kMegabyte / 2) +
                      "y=" + std::string(kMegabyte / 2 - 100, 'a') + ";returny;");
     }},
    {"Doubling", [] { return currentDefinition("P", doubling(16)); }},
    {"OneLongExpression", [] { return currentDefinition("P", "y=" + repeated("x1+x*") + "x;returny;"); }},
    {"LongExpressionOfCalls",
     [] { return currentDefinition("P", "y=" + repeated("sin(x)^x*x2+") + "x;returny;"); }},
    {"ManyDefinitionsThatDouble",
     [] {
         return numbered(
             [](int i) { return currentDefinition("P" + std::to_string(i), doubling(14)) + "\n"; });
     }},
    {"ManyDefinitions",
     [] {
         return numbered([](int i) {
             return currentDefinition("P" + std::to_string(i), "v=y1+(y2-y1)*(x-x1);returnv;") + "\n";
         });
     }},
    {"DefinitionsOfOneName",
     [] {
         return numbered(
             [](int i) { return currentDefinition("P", "v=" + std::to_string(i) + ";returnv;"); });
     }},
    {"OnlyOperators", [] { return currentDefinition("P", "y=" + repeated("(") + ";returny;"); }},
    {"OnlySigns", [] { return currentDefinition("P", repeated("=")); }},
    {"OnlySemicolons", [] { return currentDefinition("P", repeated(";")); }},
    {"OlderKeywords", [] { return repeated("profile("); }},
    {"ClosingKeywords", [] { return repeated("endprofile"); }},
    {"Lines", [] { return repeated("\n"); }},
    {"Comments", [] { return repeated("'\n"); }},
    {"Quotes", [] { return repeated("\"A"); }},
};

INSTANTIATE_TEST_SUITE_P(Reliability, ProfileTime, testing::ValuesIn(kProfiles),
                         [](const auto& tested) { return tested.param.name; });

std::string olderDefinition(const std::string& name, const std::string& statements)
{
    return "Profile(\"" + name + "\",x,x1,y1,x2,y2)" + statements + "endProfile";
}

class OlderProfileTime : public Time {};

TEST_P(OlderProfileTime, Reading)
{
    const std::string text = input();
    mfProfileFileParser_c parser;
    watch_.time("parseProfiles", [&] { parser.parseProfiles("", true, text); });
    std::vector<std::vector<std::string>> tokens;
    watch_.time("getResultTokens", [&] { parser.getResultTokens(tokens); });
    if (tokens.empty())
        return;
    std::vector<CString> row;
    for (const std::string& token : tokens.front())
        row.emplace_back(token.c_str());
    mfFunctionSegments_c table;
    watch_.time("replace", [&] { table.replace(row, L"x1", L"1.000000"); });
}

const TimeCase kOlderProfiles[] = {
    {"ShortStatements",
     [] { return olderDefinition("P", numbered([](int i) { return nameOf(i) + "=1;"; }) + "returny;"); }},
    {"ChainOfNames",
     [] {
         return olderDefinition(
             "P", numbered([](int i) { return nameOf(i + 1) + "=" + nameOf(i) + "+1;"; }) + "returny;");
     }},
    {"OneNameAgainAndAgain", [] { return olderDefinition("P", repeated("a=a;") + "returna;"); }},
    {"Doubling", [] { return olderDefinition("P", doubling(16)); }},
    {"OneLongExpression", [] { return olderDefinition("P", "y=" + repeated("x1+x*") + "x;returny;"); }},
    {"ManyUsesOfOneLongValue",
     [] {
         return olderDefinition(
             "P", "v=" + times(1000, "1") + ";y=" + repeated("v+", kMegabyte / 4) + "1;returny;");
     }},
    {"ManyDefinitionsThatDouble",
     [] { return numbered([](int i) { return olderDefinition("P" + std::to_string(i), doubling(14)); }); }},
    {"ManyDefinitions",
     [] {
         return numbered(
             [](int i) { return olderDefinition("P" + std::to_string(i), "v=y1+(y2-y1)*(x-x1);returnv;"); });
     }},
    {"OnlyOperators", [] { return olderDefinition("P", "y=" + repeated("(") + ";returny;"); }},
    {"OnlySigns", [] { return olderDefinition("P", repeated("=")); }},
    {"ClosingKeywords", [] { return repeated("endProfile"); }},
};

INSTANTIATE_TEST_SUITE_P(Reliability, OlderProfileTime, testing::ValuesIn(kOlderProfiles),
                         [](const auto& tested) { return tested.param.name; });

// --- Documents --------------------------------------------------------------------------------

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
    {"EmptySegments", [] { return segmentDocument("", repeated("<Segment/>", kBody)); }},
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
     [] { return segmentDocument("", repeated("<Segment><a>0</a><b>0</b></Segment>", kBody)); }},
    {"SegmentsOfOneLongFormula",
     [] {
         return segmentDocument(
             definition("P", currentDefinition("p", "v=" + repeated("sin(x)+x*", kBody / 2) + "x;returnv;")),
             repeated("<Segment><a/><a/><a/><a>P</a></Segment>", kBody / 2 - 200));
     }},
    {"SegmentsOfAFormulaThatDoubles",
     [] {
         return segmentDocument(definition("P", currentDefinition("p", doubling(16))),
                                repeated("<Segment><a/><a/><a/><a>P</a></Segment>", kBody - 2'000));
     }},
    {"SegmentsOfAFormulaOfAFewThousandCharacters",
     [] {
         return segmentDocument(
             definition("P", currentDefinition("p", "v=" + repeated("sin(x*x1)+x2*", 8'000) + "x;returnv;")),
             repeated("<Segment><a/><a/><a/><a>P</a></Segment>", kBody - 9'000));
     }},
    {"SegmentsWithLongProfileNames",
     [] {
         return segmentDocument(
             definition("P", currentDefinition("p", "v=x;returnv;")),
             repeated("<Segment><a/><a/><a/><a>" + times(5'000, "P") + "</a></Segment>", kBody - 500));
     }},
    {"SegmentsInSegments",
     [] {
         return segmentDocument("",
                                nested("<Segment><a>", repeated("9", kBody - 5'000), "</a></Segment>", 120));
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
                    currentDefinition("p", "v=" + repeated("x+", kBody - 10'000) + "x;returnv;"),
                    "</b></ProfileDefinition>", 120),
             "<Segment/><Segment/>");
     }},
    {"EmptyPoints", [] { return pointDocument(repeated("<Point/>", kBody)); }},
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
    {"PointsAtOneX", [] { return pointDocument(repeated("<Point><x/><y/></Point>", kBody)); }},
    {"PointsWithoutAnX", [] { return pointDocument(repeated("<Point>  <!----><!----></Point>", kBody)); }},
    {"RowOfPoints", [] { return pointDocument(element("Point", repeated("<a/>", kBody - 20))); }},
    {"RowOfPointsInNoOrder",
     [] {
         return pointDocument(element(
             "Point", numbered([](int i) { return "<a>" + std::to_string(i * 7919LL % 100003) + "</a>"; },
                               kBody - 20)));
     }},
    {"PointsInPoints",
     [] {
         return pointDocument(nested("<Point><a>", repeated("9", kBody - 4'000), "</a><b/></Point>", 120));
     }},
    {"PointsInPointsOfManyTexts",
     [] {
         return pointDocument(
             nested("<Point><a>", repeated("9<a/>", kBody - 4'000), "</a><b/></Point>", 120));
     }},
    {"LongNumbers",
     [] {
         return pointDocument(numbered(
             [](int i) {
                 return "<Point><x>" + std::to_string(i) + "." + times(780, "1") + "</x><y>0." +
                        times(780, "0") + "1</y></Point>";
             },
             kBody));
     }},
    {"Expression",
     [] { return expressionDocument(element("Expression", "x" + repeated("+time", kBody - 100))); }},
    {"LongName", [] { return expressionDocument(element("Expression", repeated("&lt;", kBody - 100))); }},
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
         return pointDocument(repeated("<Point" + attributes + "/>", kBody));
     }},
    {"DistinctNames",
     [] { return pointDocument(numbered([](int i) { return "<" + nameOf(i) + "/>"; }, kBody)); }},
    {"Prefixes",
     [] {
         std::string prefixes;
         for (int i = 0; i < 950; ++i)
             prefixes += " xmlns:" + nameOf(i) + "='" + std::to_string(i) + "'";
         return pointDocument("<q" + prefixes + ">" + repeated("<_a:b/>", kBody - 30'000) + "</q>");
     }},
    {"PrefixesOfAttributes",
     [] {
         std::string prefixes;
         for (int i = 0; i < 950; ++i)
             prefixes += " xmlns:" + nameOf(i) + "='" + std::to_string(i) + "'";
         std::string attributes;
         for (int i = 0; i < 900; ++i)
             attributes += " " + nameOf(0) + ":" + nameOf(i) + "=''";
         return pointDocument("<q" + prefixes + ">" + repeated("<b" + attributes + "/>", kBody - 30'000) +
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
         return pointDocument(open + repeated("<_a:b/>", kBody - 30'000) + close);
     }},
    {"Nesting", [] { return pointDocument(repeated("<q>", kBody)); }},
    {"NestedTwoHundredDeep", [] { return pointDocument(repeated(nested("<q>", "1", "</q>", 200), kBody)); }},
    {"Comments", [] { return pointDocument(repeated("<!---->", kBody)); }},
    {"CommentsInAText",
     [] { return expressionDocument(element("Expression", repeated("1<!---->", kBody - 100))); }},
    {"Instructions", [] { return pointDocument(repeated("<?a?>", kBody)); }},
    {"CharacterData",
     [] { return expressionDocument(element("Expression", repeated("<![CDATA[1]]>", kBody - 100))); }},
    {"CharacterReferences",
     [] { return expressionDocument(element("Expression", repeated("&#32;", kBody - 100))); }},
    {"LongText", [] { return expressionDocument(element("Expression", repeated("9", kBody - 100))); }},
    {"LongTextBeyondAscii",
     [] { return expressionDocument(element("Expression", repeated("\u00fc", kBody - 100))); }},
    {"BytesThatAreNoText",
     [] { return expressionDocument(element("Expression", repeated("\xff", kBody - 100))); }},
    {"Lines", [] { return pointDocument(repeated("\n", kBody)); }},
    {"LinesBetweenElements", [] { return pointDocument(repeated("\n<a/>", kBody)); }},
    {"MissingElement", [] { return head("Segments").substr(0, 200) + repeated("<q/>", kBody) + "</Curve>"; }},
    {"RangesWithoutEnds",
     [] { return "<Curve><Version>1</Version>" + repeated("<RangeX><q/></RangeX>", kBody) + "</Curve>"; }},
    {"DocumentType",
     [] {
         return "<!DOCTYPE a [" + numbered([](int i) { return "<!ENTITY " + nameOf(i) + " 'x'>"; }) +
                "]><a/>";
     }},
    {"LessThanSigns", [] { return repeated("<"); }},
};

INSTANTIATE_TEST_SUITE_P(Reliability, DocumentTime, testing::ValuesIn(kDocuments),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
