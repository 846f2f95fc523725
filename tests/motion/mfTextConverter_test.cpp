// SPDX-License-Identifier: MIT

#include "mfcurves/motion/mfTextConverter.h"

#include <algorithm>
#include <cstdlib>
#include <gmock/gmock.h>
#include <type_traits>

#include "mfcurves/interfaces/CGeneralException.h"
#include "mfcurves/interfaces/CMemoryException.h"
#include "mfcurves/platform/encoding.h"
#include "tests/support/FakeHost.h"
#include "tests/support/operatorNew.h"

// Counts the arrays that this program allocates, to see when a conversion needs one and
// what happens when the allocation fails.
namespace {
int arraysTaken = 0;
std::size_t lastArraySize = 0;
bool arraysRunOut = false;
}  // namespace

void* mf::test::allocate(const MemoryRequest& request)
{
    if (request.isArray) {
        if (arraysRunOut)
            return nullptr;
        ++arraysTaken;
        lastArraySize = request.size;
    }
    return fromHeap(request);
}

void mf::test::release(void* memory) noexcept
{
    std::free(memory);
}

namespace {

using testing::ElementsAre;

// One result of an encoder: a number of bytes, or 0 with an error.
struct Answer {
    int bytes;
    std::uint32_t error;
};

struct Call {
    int length;
    int size;
    bool operator==(const Call&) const = default;
};

void PrintTo(const Call& call, std::ostream* os)
{
    *os << "{length " << call.length << ", size " << call.size << "}";
}

// Installs an encoder that returns these results, one per call, and writes 'x' for each
// byte but the last, which is the terminator.
class ScriptedEncoder {
public:
    explicit ScriptedEncoder(std::vector<Answer> answers) : answers_(std::move(answers))
    {
        mf::platform::setNarrowEncoder(
            [this](const wchar_t* /*text*/, int length, char* buffer, int size, std::uint32_t& error) {
                calls.push_back({length, size});
                const Answer answer = answers_.at(calls.size() - 1);
                if (buffer != nullptr && size > 0)
                    bufferWasZero = std::all_of(buffer, buffer + size, [](char c) { return c == '\0'; });
                if (answer.bytes == 0)
                    error = answer.error;
                else if (size > 0)
                    std::fill_n(buffer, std::min(size, answer.bytes) - 1, 'x');
                return answer.bytes;
            });
    }
    ~ScriptedEncoder() { mf::platform::setNarrowEncoder({}); }
    ScriptedEncoder(const ScriptedEncoder&) = delete;
    ScriptedEncoder& operator=(const ScriptedEncoder&) = delete;

    std::vector<Call> calls;
    bool bufferWasZero = false;

private:
    std::vector<Answer> answers_;
};

CString ofLength(int length)
{
    return CString(std::wstring(static_cast<std::size_t>(length), L'a'));
}

// toNarrow

struct NarrowCase {
    const char* name;
    std::wstring wide;
    std::string narrow;
};

const NarrowCase kNarrowCases[] = {
    {"Empty", L"", ""},
    {"Ascii", L"x^2 + 1", "x^2 + 1"},
    {"TwoBytes", L"\u00e9", "\xC3\xA9"},
    {"ThreeBytes", L"\u20ac", "\xE2\x82\xAC"},
    {"FourBytes", L"\U0001F600", "\xF0\x9F\x98\x80"},
    {"LastCodePoint", L"\U0010FFFF", "\xF4\x8F\xBF\xBF"},
    {"LoneSurrogateBecomesTheReplacement", std::wstring(1, wchar_t(0xD800)), "\xEF\xBF\xBD"},
    {"BeyondTheLastCodePointBecomesTheReplacement", std::wstring(1, wchar_t(0x110000)), "\xEF\xBF\xBD"},
    {"EndsAtAZeroCharacter", std::wstring(L"ab\0cd", 5), "ab"},
};

class ToNarrow : public testing::TestWithParam<NarrowCase> {};

TEST_P(ToNarrow, GivesUtf8)
{
    EXPECT_EQ(mfTextConverter_c().toNarrow(CString(GetParam().wide)), GetParam().narrow);
}

INSTANTIATE_TEST_SUITE_P(TextConverter, ToNarrow, testing::ValuesIn(kNarrowCases),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST(ToNarrowBuffer, EmptyTextTakesNoneFromTheHeap)
{
    const int before = arraysTaken;
    EXPECT_EQ(mfTextConverter_c().toNarrow(CString()), "");
    EXPECT_EQ(arraysTaken, before);
}

TEST(ToNarrowBuffer, ThirtyOneCharactersFitTheFixedOne)
{
    const CString text = ofLength(31);
    const int before = arraysTaken;
    EXPECT_EQ(mfTextConverter_c().toNarrow(text), std::string(31, 'a'));
    EXPECT_EQ(arraysTaken, before);
}

TEST(ToNarrowBuffer, ThirtyTwoCharactersTakeOneFromTheHeap)
{
    const CString text = ofLength(32);
    const int before = arraysTaken;
    EXPECT_EQ(mfTextConverter_c().toNarrow(text), std::string(32, 'a'));
    EXPECT_EQ(arraysTaken, before + 1);
    EXPECT_EQ(lastArraySize, 4u * 33u);
}

TEST(ToNarrowBuffer, TheOneFromTheHeapIsZeroFilled)
{
    ScriptedEncoder encoder({{41, 0}});
    EXPECT_EQ(mfTextConverter_c().toNarrow(ofLength(40)), std::string(40, 'x'));
    EXPECT_TRUE(encoder.bufferWasZero);
}

TEST(ToNarrowBuffer, FourBytesForEveryCharacterFitWithoutARetry)
{
    const CString text(std::wstring(1000, L'\U0010FFFF'));
    EXPECT_EQ(mfTextConverter_c().toNarrow(text).size(), 4000u);
}

TEST(ToNarrowRetry, AsksForTheSizeAndConvertsAgain)
{
    ScriptedEncoder encoder({{0, 122}, {9, 0}, {9, 0}});
    EXPECT_EQ(mfTextConverter_c().toNarrow(L"ab"), "xxxxxxxx");
    EXPECT_THAT(encoder.calls, ElementsAre(Call{3, 12}, Call{3, 0}, Call{3, 9}));
}

TEST(ToNarrowRetry, ABufferOf128BytesIsTheFixedOne)
{
    ScriptedEncoder encoder({{0, 122}, {128, 0}, {128, 0}});
    const int before = arraysTaken;
    EXPECT_EQ(mfTextConverter_c().toNarrow(L"ab").size(), 127u);
    EXPECT_EQ(arraysTaken, before);
}

TEST(ToNarrowRetry, ABufferOf129BytesComesFromTheHeap)
{
    ScriptedEncoder encoder({{0, 122}, {129, 0}, {129, 0}});
    const int before = arraysTaken;
    EXPECT_EQ(mfTextConverter_c().toNarrow(L"ab").size(), 128u);
    EXPECT_EQ(arraysTaken, before + 1);
    EXPECT_TRUE(encoder.bufferWasZero);
}

TEST(ToNarrowRetry, AnEncoderWithoutTerminatorIsReadNoFurtherThanItWrote)
{
    mf::platform::setNarrowEncoder([](const wchar_t*, int, char* buffer, int size, std::uint32_t&) {
        std::fill_n(buffer, size, 'y');
        return size;
    });
    EXPECT_EQ(mfTextConverter_c().toNarrow(ofLength(31)), std::string(128, 'y'));
    mf::platform::setNarrowEncoder({});
}

struct FailureCase {
    const char* name;
    std::vector<Answer> answers;
    std::uint32_t resultCode;
};

const FailureCase kFailureCases[] = {
    {"TooSmallTwice", {{0, 122}, {9, 0}, {0, 122}}, 0x8007007A},
    {"NoSizeToBeHad", {{0, 122}, {0, 122}}, 0x8007007A},
    {"AnotherErrorOnTheQuestionForTheSize", {{0, 122}, {0, 87}}, 0x80070057},
    {"AnotherErrorAfterTheRetry", {{0, 122}, {9, 0}, {0, 1113}}, 0x80070459},
    {"InvalidParameter", {{0, 87}}, 0x80070057},
    {"OnlyTheLow16BitsStay", {{0, 0x12345}}, 0x80072345},
    {"ACodeThatIsNegativeStays", {{0, 0x80040111}}, 0x80040111},
    {"NoErrorAtAll", {{0, 0}}, 0},
    {"ASizeBelowZero", {{0, 122}, {-1, 0}}, 0x80070057},
};

void PrintTo(const FailureCase& c, std::ostream* os)
{
    for (const Answer& answer : c.answers)
        *os << '{' << answer.bytes << ", " << answer.error << "} ";
}

class ToNarrowFails : public testing::TestWithParam<FailureCase> {};

TEST_P(ToNarrowFails, WithTheGeneralException)
{
    ScriptedEncoder encoder(GetParam().answers);
    try {
        mfTextConverter_c().toNarrow(ofLength(40));
        FAIL() << "nothing was thrown";
    } catch (const CGeneralException& exception) {
        EXPECT_EQ(exception.resultCode(), GetParam().resultCode);
    }
    EXPECT_EQ(encoder.calls.size(), GetParam().answers.size());
}

INSTANTIATE_TEST_SUITE_P(TextConverter, ToNarrowFails, testing::ValuesIn(kFailureCases),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST(ToNarrowRunsOutOfMemory, WhenTheEncoderSaysSo)
{
    ScriptedEncoder encoder({{0, 14}});
    EXPECT_THROW(mfTextConverter_c().toNarrow(L"ab"), CMemoryException);
}

TEST(ToNarrowRunsOutOfMemory, WhenTheEncoderSaysSoByResultCode)
{
    ScriptedEncoder encoder({{0, 0x8007000E}});
    EXPECT_THROW(mfTextConverter_c().toNarrow(L"ab"), CMemoryException);
}

TEST(ToNarrowRunsOutOfMemory, WhenThereIsNoBufferOnTheHeap)
{
    const CString text = ofLength(32);
    arraysRunOut = true;
    EXPECT_THROW(mfTextConverter_c().toNarrow(text), CMemoryException);
    arraysRunOut = false;
}

TEST(ToNarrowRunsOutOfMemory, AndTheNextConversionGoesOn)
{
    {
        ScriptedEncoder encoder({{0, 14}});
        EXPECT_THROW(mfTextConverter_c().toNarrow(L"ab"), CMemoryException);
    }
    EXPECT_EQ(mfTextConverter_c().toNarrow(L"ab"), "ab");
}

// toCString and appendToCStringList

TEST(ToCString, ReadsUtf8)
{
    EXPECT_EQ(mfTextConverter_c().toCString("\xC3\xA9"), L"\u00e9");
    EXPECT_EQ(mfTextConverter_c().toCString(""), L"");
}

TEST(ToCString, EndsAtAZeroCharacter)
{
    EXPECT_EQ(mfTextConverter_c().toCString(std::string("ab\0cd", 5)).GetLength(), 2);
}

TEST(AppendToCStringList, KeepsFormerElementsAndTheOrder)
{
    std::vector<CString> list{L"before"};
    mfTextConverter_c().appendToCStringList({"a", "\xE2\x82\xAC", ""}, list);
    EXPECT_THAT(list, ElementsAre(CString(L"before"), CString(L"a"), CString(L"\u20ac"), CString()));
}

TEST(AppendToCStringList, OfNothingChangesNothing)
{
    std::vector<CString> list{L"before"};
    mfTextConverter_c().appendToCStringList({}, list);
    EXPECT_THAT(list, ElementsAre(CString(L"before")));
}

TEST(TextConverter, HoldsNothing)
{
    EXPECT_TRUE(std::is_empty_v<mfTextConverter_c>);
    EXPECT_TRUE(std::is_default_constructible_v<mfTextConverter_c>);
}

}  // namespace
