// SPDX-License-Identifier: MIT

// Laws by their names: where they are searched for, which names find them, and the message if a
// law is not found.

#include "mfcurves/curve/laws.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

#include "mfcurves/curve/Curve.h"
#include "mfcurves/curve/LawFinder.h"
#include "tests/support/TemporaryFolder.h"

namespace mf::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// A law that ends at `factor` times the stroke, by which the tests recognise it.
std::string lawText(const std::string& name, int factor)
{
    return "SegmentType(\"" + name + "\", x, x1, y1, x2, y2)\n  y = y1+" + std::to_string(factor) +
           "*(y2-y1)*(x-x1)/(x2-x1);\n  return y;\nendSegmentType\n";
}

// The factor of the law, or its problem.
std::string shown(const curve::LawFinder::Found& found)
{
    if (!found.law)
        return found.problem;
    const std::string& formula = found.law->record.resultExpression;
    const std::size_t factor = formula.find("y1+");
    if (found.law->isBuiltIn)
        return "built-in " + found.law->record.name;
    return found.isOwn ? "own " + formula.substr(factor + 3, 1) : "other " + formula.substr(factor + 3, 1);
}

const std::vector<LawText> kOwn = {{"Mine", lawText("Mine", 2)},
                                   {"Linear", lawText("Linear", 3)},
                                   {"Twice", lawText("Twice", 4)},
                                   {"Twice", lawText("Twice", 5)},
                                   {"Cam (a)", lawText("Cam", 6)},
                                   {"Cam (b)", lawText("Cam", 7)},
                                   {"Cubic (Default)", lawText("Cubic", 8)}};

struct NameCase {
    const char* name;
    const char* asked;
    const char* found;
};

const NameCase kNameCases[] = {
    {"Own", "Mine", "own 2"},
    {"OwnInAnotherCase", "mINE", "own 2"},
    {"OwnWithASource", "Mine (x)", "own 2"},
    {"OwnBeforeBuiltIn", "Linear", "own 3"},
    {"DefaultIsBuiltIn", "Linear (Default)", "built-in Linear"},
    {"GivenTwice", "Twice", "the law \"Twice\" is given twice"},
    {"OwnBySource", "Cam (b)", "own 7"},
    {"OwnWithoutItsSource", "Cam", "own 6"},
    {"OwnNamedAsTheDefault", "Cubic (Default)", "own 8"},
    {"OwnNamedAsTheDefaultIsNoOther", "Cubic", "built-in Cubic"},
    {"Library", "Wave", "other 9"},
    {"LibraryWithItsSource", "Wave (User)", "other 9"},
    {"LibraryBeforeBuiltIn", "Quadratic", "other 1"},
    {"LibraryNotAsDefault", "Wave (Default)",
     "there is no law \"Wave (Default)\"; the nearest name is \"Wave\""},
    {"BuiltIn", "Half-Cosine", "built-in Half-Cosine"},
    {"BuiltInAsUser", "Half-Cosine (User)", "built-in Half-Cosine"},
    {"BuiltInInAnotherCase", "half-cosine (Default)", "built-in Half-Cosine"},
    {"UnknownSource", "Half-Cosine (Cam)",
     "there is no law \"Half-Cosine (Cam)\"; the nearest name is \"Half-Cosine\""},
    {"NearlyRight", "Modfied-Sine",
     "there is no law \"Modfied-Sine\"; the nearest name is \"Modified-Sine\""},
};

class LawName : public testing::TestWithParam<NameCase> {};

TEST_P(LawName, FindsTheFirstInOrder)
{
    const TemporaryFolder folder;
    folder.write("SegmentTypes.txt", lawText("Wave", 9) + lawText("Quadratic", 1));
    std::vector<Problem> problems;
    curve::LawFinder finder(kOwn, curve::lawsOfFolder(folder.path(), problems));
    EXPECT_TRUE(problems.empty());
    EXPECT_EQ(shown(finder.named(GetParam().asked)), GetParam().found);
}

INSTANTIATE_TEST_SUITE_P(Laws, LawName, testing::ValuesIn(kNameCases),
                         [](const auto& tested) { return tested.param.name; });

TEST(LawFinder, ListsWhatIsKnownWhereNothingIsNear)
{
    const std::vector<LawText> own;
    curve::LawFinder finder(own);
    EXPECT_THAT(finder.named("Wobbly").problem,
                HasSubstr("there is no law \"Wobbly\"; known are \"Cubic\", \"Quarter-Sine\", "));
    EXPECT_THAT(finder.named("").problem, HasSubstr("no law is named; known are "));
}

TEST(LawFinder, SaysWhereATextIsWrong)
{
    const std::vector<LawText> own = {
        {"Open", "SegmentType(\"Open\", x, x1, y1, x2, y2)\n y = x;\n return y;\n"},
        {"Equals",
         "SegmentType(\"Equals\", x, x1, y1, x2, y2)\n y = x;\n z = y = x;\n return y;\nendSegmentType"},
        {"Two", lawText("Two", 1) + lawText("Three", 1)},
        {"Empty", ""},
    };
    curve::LawFinder finder(own);
    EXPECT_EQ(finder.named("Open").problem,
              "the law \"Open\" cannot be read: line 1: there is no endSegmentType, so the file holds no "
              "definition");
    EXPECT_EQ(finder.named("Equals").problem,
              "the law \"Equals\" cannot be read: line 3: a statement is not made of a variable, = and an "
              "expression");
    EXPECT_EQ(finder.named("Two").problem,
              "the law \"Two\" cannot be read: its text holds 2 definitions, and one is expected");
    EXPECT_THAT(finder.named("Empty").problem, HasSubstr("the law \"Empty\" cannot be read: line 1: "));
}

TEST(Laws, AreBuiltInAndShipped)
{
    std::vector<std::string> names;
    std::string shipped;
    for (const Law& law : laws()) {
        names.push_back(law.name);
        if (law.source == "shipped")
            shipped += law.name + ' ';
    }
    EXPECT_EQ(names.size(), 26u);
    EXPECT_EQ(names.front(), "Cubic");
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), names.size());
    EXPECT_THAT(shipped, HasSubstr("Modified-Sine "));
    EXPECT_THAT(shipped, testing::Not(HasSubstr("Linear ")));
}

// The library's data and the installed file are the same.
TEST(Laws, ShippedOnesAreThoseOfTheFile)
{
    const std::vector<Law> fromFile = laws({SHIPPED_FOLDER});
    const std::vector<Law> known = laws();
    for (const Law& law : known) {
        if (law.source != "shipped")
            continue;
        const auto same = std::find_if(fromFile.begin(), fromFile.end(),
                                       [&](const Law& other) { return other.name == law.name; });
        ASSERT_NE(same, fromFile.end()) << law.name;
        EXPECT_EQ(same->text, law.text);
        EXPECT_EQ(same->source, SHIPPED_FOLDER "/SegmentTypes.txt");
    }
}

TEST(Laws, OfAFolderThatCannotBeReadAreAnError)
{
    const TemporaryFolder folder;
    try {
        laws({folder.path()});
        FAIL();
    } catch (const CurveError& error) {
        ASSERT_EQ(error.problems().size(), 1u);
        EXPECT_EQ(error.problems()[0].place, folder.path().string() + "/SegmentTypes.txt");
        EXPECT_EQ(error.problems()[0].message, "the file cannot be read: No such file or directory");
    }
    folder.write("SegmentTypes.txt",
                 lawText("Good", 1) + "SegmentType(\"Bad\", x)\nreturn y;\nendSegmentType\n");
    try {
        laws({folder.path()});
        FAIL();
    } catch (const CurveError& error) {
        ASSERT_EQ(error.problems().size(), 1u);
        EXPECT_EQ(error.problems()[0].place, folder.path().string() + "/SegmentTypes.txt:5");
        EXPECT_EQ(error.problems()[0].message, "the header does not consist of a name and five arguments");
    }
}

TEST(Laws, OfADefinitionAreWhole)
{
    CurveDefinition definition;
    definition.shape = CurveDefinition::Segments{
        0.0,
        0.0,
        {{1.0, 1.0, "Modified-Sine"}, {2.0, 0.0, "Cubic"}, {3.0, 1.0, "modified-sine (User)"}},
        {},
        false};
    const Curve curve(definition);
    const auto& whole = std::get<SegmentShape>(curve.definition().shape);
    ASSERT_EQ(whole.laws.size(), 1u);
    EXPECT_EQ(whole.laws[0].name, "Modified-Sine");
    EXPECT_EQ(Curve(curve.definition()), curve);
    EXPECT_EQ(Curve(curve.definition())(0.3, 2), curve(0.3, 2));
}

TEST(Laws, ThatAreNotKnownAreProblemsOfTheirRows)
{
    CurveDefinition definition;
    definition.shape =
        CurveDefinition::Segments{0.0, 0.0, {{1.0, 1.0, "Cubicc"}, {2.0, 0.0, "Cubic"}}, {}, false};
    try {
        const Curve curve(definition);
        FAIL();
    } catch (const CurveError& error) {
        EXPECT_THAT(error.problems(),
                    ElementsAre(Problem{Problem::Level::Error, "row 1",
                                        "there is no law \"Cubicc\"; the nearest name is \"Cubic\""}));
    }
}

}  // namespace
}  // namespace mf::test
