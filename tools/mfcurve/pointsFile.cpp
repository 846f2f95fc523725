#include "tools/mfcurve/pointsFile.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>

#include "mfcurves/platform/numbers.h"

namespace mfcurve {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t kLongestQuote = 60;
constexpr const char* kExpected = "; a line is \"x, y\", two finite numbers such as \"0.25, -1.5e3\"";

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f';
}

std::string_view withoutBlanksAhead(std::string_view text)
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    return text;
}

// Whether nothing that counts follows in the line.
bool isAtEnd(std::string_view text)
{
    return text.empty() || text.front() == '\n' || text.front() == '#';
}

// What counts of the line that the text begins with.
std::string_view contentOf(std::string_view text)
{
    std::string_view content = withoutBlanksAhead(text.substr(0, text.find_first_of("\n#")));
    while (!content.empty() && isBlank(content.back()))
        content.remove_suffix(1);
    return content;
}

std::string_view behindLine(std::string_view text)
{
    const std::size_t end = text.find('\n');
    return end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
}

// Takes the number at the start of the text off it; one that is too large is
// infinite, one that is too small 0.
std::optional<double> takeNumber(std::string_view& text)
{
    std::string_view digits = text;
    if (digits.starts_with('+') && !digits.starts_with("+-"))
        digits.remove_prefix(1);
    double number = 0.0;
    const char* const end = digits.data() + digits.size();
    const auto result = std::from_chars(digits.data(), end, number);
    if (result.ec == std::errc::invalid_argument)
        return std::nullopt;
    text = {result.ptr, static_cast<std::size_t>(end - result.ptr)};
    if (result.ec == std::errc::result_out_of_range)
        return mf::platform::readNumber(digits);
    return number;
}

bool takeSeparator(std::string_view& text)
{
    std::string_view rest = withoutBlanksAhead(text);
    if (rest.starts_with(',') || rest.starts_with(';'))
        rest = withoutBlanksAhead(rest.substr(1));
    const bool taken = rest.size() < text.size();
    text = rest;
    return taken;
}

// Reads a point off the front of the text; otherwise answers what is wrong with its
// line, in the end of a sentence.
const char* takePoint(std::string_view& text, FilePoint& point)
{
    const std::optional<double> x = takeNumber(text);
    if (!x)
        return "does not begin with a number";
    if (!std::isfinite(*x))
        return "has an x that is not finite";
    if (!takeSeparator(text))
        return isAtEnd(text) ? "has no y" : "goes on behind x without a separator";
    const std::optional<double> y = takeNumber(text);
    if (!y)
        return isAtEnd(text) ? "has no y" : "has no number behind x";
    if (!std::isfinite(*y))
        return "has a y that is not finite";
    text = withoutBlanksAhead(text);
    if (!isAtEnd(text))
        return "goes on behind y";
    point.x = *x;
    point.y = *y;
    return nullptr;
}

// Measuring programs name the columns in the first line. What begins like a number
// is taken for a point, so that a slip of the pen is not lost in silence.
bool isHeader(std::string_view content)
{
    std::string_view start = content;
    return !takeNumber(start) && std::string_view("0123456789+-.,;").find(content.front()) == content.npos;
}

// A line as it can be shown in a message: not too long, on one line, characters whole.
std::string quoted(std::string_view content)
{
    const bool isLong = content.size() > kLongestQuote;
    if (isLong) {
        std::size_t size = kLongestQuote;
        while (size > 0 && (static_cast<unsigned char>(content[size]) & 0xC0) == 0x80)
            --size;
        content = content.substr(0, size);
    }
    std::string text(content);
    std::replace_if(
        text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, '?');
    return '"' + text + (isLong ? "...\"" : "\"");
}

std::string shortest(double number)
{
    std::array<char, 32> text{};
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), number).ptr};
}

bool isBelow(const FilePoint& a, const FilePoint& b)
{
    return a.x < b.x;
}

// Sorts by x and answers the first pair of one x, if there is one.
std::optional<PointsProblem> sortPoints(std::vector<FilePoint>& points)
{
    if (!std::is_sorted(points.begin(), points.end(), isBelow))
        std::stable_sort(points.begin(), points.end(), isBelow);
    const auto same = std::adjacent_find(points.begin(), points.end(),
                                         [](const FilePoint& a, const FilePoint& b) { return a.x == b.x; });
    if (same == points.end())
        return std::nullopt;
    return PointsProblem{std::next(same)->line, "x " + shortest(same->x) + " stands in line " +
                                                    std::to_string(same->line) +
                                                    " already; a curve has one y at each x"};
}

}  // namespace

std::variant<std::vector<FilePoint>, PointsProblem> parsePoints(std::string_view text)
{
    if (text.starts_with(kByteOrderMark))
        text.remove_prefix(kByteOrderMark.size());

    std::vector<FilePoint> points;
    bool isFirst = true;
    for (int number = 1; !text.empty(); ++number) {
        std::string_view rest = withoutBlanksAhead(text);
        if (!isAtEnd(rest)) {
            FilePoint point{0.0, 0.0, number};
            const char* const problem = takePoint(rest, point);
            if (problem == nullptr)
                points.push_back(point);
            else if (!isFirst || !isHeader(contentOf(text)))
                return PointsProblem{number, quoted(contentOf(text)) + " " + problem + kExpected};
            isFirst = false;
        }
        text = behindLine(rest);
    }

    if (points.empty())
        return PointsProblem{0, std::string("there are no points") + kExpected};
    if (auto problem = sortPoints(points))
        return *problem;
    return points;
}

}  // namespace mfcurve
