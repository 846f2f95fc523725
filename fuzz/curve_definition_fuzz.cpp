// SPDX-License-Identifier: MIT

// The bytes describe a definition, in the form of definitionText.h. Either it is refused with a reason, or it
// makes a curve. The curve's own definition makes the same curve, and a document of the curve reads back as
// the same curve except for the reported losses.

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/definitionText.h"
#include "mfcurves/curve/Curve.h"
#include "mfcurves/documents/formatTexts.h"
#include "mfcurves/platform/xmlRuntime.h"

namespace {

using mf::Curve;

constexpr std::size_t kLongestInput = 4096;  // longer ones find nothing new, slowly

void require(bool holds)
{
    if (!holds)
        std::abort();
}

// The curve that `make` returns; std::nullopt if it throws, which must be with a reason.
template <class Make>
std::optional<Curve> made(const Make& make)
{
    const int starts = mf::platform::xmlStartCount();
    std::optional<Curve> curve;
    try {
        curve = make();
    } catch (const mf::CurveError& error) {
        require(!error.problems().empty());
        for (const mf::Problem& problem : error.problems())
            require(!problem.message.empty() && problem.message.find('\n') == std::string::npos);
    }
    require(mf::platform::xmlStartCount() == starts);
    require(mf::documents::writtenVersion() == mf::documents::kReadableVersion);
    return curve;
}

void requireSameBits(const Curve& a, const Curve& b)
{
    for (const double part : {-0.25, 0.0, 0.1, 0.5, 0.9, 1.0, 1.25}) {
        const double x = a.firstX() + part * (a.lastX() - a.firstX());
        for (int order = 0; order <= 3; ++order)
            require(std::bit_cast<std::uint64_t>(a(x, order)) == std::bit_cast<std::uint64_t>(b(x, order)));
    }
}

std::optional<Curve> readBack(const Curve& curve, const std::string& xml)
{
    mf::ReadSettings settings;
    settings.motionResults = {curve.definition().motionResult};
    return made([&] { return Curve::parse(xml, settings); });
}

// The curve that a document gives, if it gives any.
std::optional<Curve> throughDocument(const Curve& curve, std::vector<mf::Problem>& losses)
{
    const std::string xml = curve.toXml(&losses);
    const std::optional<Curve> read = readBack(curve, xml);
    require(read || !losses.empty());
    if (losses.empty())
        requireSameBits(curve, *read);
    return read;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size > kLongestInput)
        return 0;
    const mf::CurveDefinition definition = fuzz::definitionOf({reinterpret_cast<const char*>(data), size});
    const std::optional<Curve> curve = made([&] { return Curve(definition); });
    if (!curve)
        return 0;
    const Curve again(curve->definition());
    require(again == *curve && again.definition() == curve->definition());
    requireSameBits(*curve, again);

    std::vector<mf::Problem> losses;
    const std::optional<Curve> read = throughDocument(*curve, losses);
    if (!read)
        return 0;
    // Points may move at each writing, within their digits.
    std::vector<mf::Problem> more;
    const std::optional<Curve> second = throughDocument(*read, more);
    if (!std::holds_alternative<mf::PointShape>(definition.shape))
        require(more.empty() && second && *second == *read);
    return 0;
}
