// SPDX-License-Identifier: MIT
#include "tools/mfcurve/json.h"

#include <cmath>
#include <fmt/format.h>

#include "tools/mfcurve/text.h"

namespace mfcurve {

std::string jsonText(std::string_view text)
{
    std::string result = "\"";
    for (char c : text) {
        if (c == '"' || c == '\\')
            result += '\\';
        if (static_cast<unsigned char>(c) < ' ')
            result += fmt::format("\\u{:04x}", static_cast<unsigned>(c));
        else
            result += c;
    }
    return result + '"';
}

std::string jsonNumber(double number)
{
    return std::isfinite(number) ? numberText(number) : "null";
}

std::string jsonTruth(bool truth)
{
    return truth ? "true" : "false";
}

std::string jsonValues(const mf::CurveValues& values)
{
    return jsonArray(
        {jsonNumber(values.y), jsonNumber(values.d1), jsonNumber(values.d2), jsonNumber(values.d3)});
}

std::string jsonArray(const std::vector<std::string>& elements)
{
    return fmt::format("[{}]", fmt::join(elements, ", "));
}

std::string jsonDocument(const std::vector<std::string>& elements)
{
    return elements.empty() ? "[]\n" : fmt::format("[\n{}\n]\n", fmt::join(elements, ",\n"));
}

std::string jsonObject(std::initializer_list<std::pair<std::string_view, std::string>> members)
{
    std::string result = "{";
    for (const auto& [key, value] : members)
        result += fmt::format("{}{}: {}", result.size() == 1 ? "" : ", ", jsonText(key), value);
    return result + "}";
}

}  // namespace mfcurve
