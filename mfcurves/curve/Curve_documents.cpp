// SPDX-License-Identifier: MIT

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include "mfcurves/curve/Curve.h"
#include "mfcurves/curve/FrozenCurve.h"
#include "mfcurves/curve/definitionOf.h"
#include "mfcurves/curve/problems.h"
#include "mfcurves/curve/readDefinition.h"
#include "mfcurves/curve/writeDefinition.h"
#include "mfcurves/platform/encoding.h"
#include "mfcurves/platform/files.h"

namespace mf {
namespace {

// If there is no curve, the warnings so far are reported together with the errors.
std::shared_ptr<const curve::FrozenCurve> freeze(CurveDefinition definition, std::vector<Problem> warnings)
{
    try {
        return std::make_shared<const curve::FrozenCurve>(std::move(definition), warnings);
    } catch (const CurveError& error) {
        std::vector<Problem> problems = error.problems();
        problems.insert(problems.end(), warnings.begin(), warnings.end());
        throw curve::errorOf(std::move(problems));
    }
}

[[noreturn]] void failToWrite(const std::string& path, const std::string& reason)
{
    throw CurveError({{Problem::Level::Error, path, "the file cannot be written: " + reason}});
}

}  // namespace

Curve Curve::read(const std::string& path, const ReadSettings& settings)
{
    std::vector<Problem> warnings;
    CurveDefinition definition = curve::readDefinitionFile(path, settings, warnings);
    return {freeze(std::move(definition), std::move(warnings)), Outside::Extend};
}

Curve Curve::parse(std::string_view xml, const ReadSettings& settings)
{
    std::vector<Problem> warnings;
    CurveDefinition definition = curve::readDefinitionText(xml, settings, warnings);
    return {freeze(std::move(definition), std::move(warnings)), Outside::Extend};
}

Curve Curve::of(mfFunctionData_c& function)
{
    std::vector<Problem> problems;
    CurveDefinition definition = curve::definitionOf(function, problems);
    if (curve::hasError(problems))
        throw curve::errorOf(std::move(problems));
    return {freeze(std::move(definition), std::move(problems)), Outside::Extend};
}

std::string Curve::toXml(std::vector<Problem>* losses) const
{
    std::string xml = curve::documentOf(definition());
    if (losses) {
        const std::vector<Problem> found = curve::lossesOf(*this, xml);
        losses->insert(losses->end(), found.begin(), found.end());
    }
    return xml;
}

void Curve::write(const std::string& path) const
{
    const std::string xml = toXml();
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored))
        failToWrite(path, "it is a folder");
    errno = 0;
    if (!platform::replaceFile(platform::widen(path).c_str(), xml))
        failToWrite(path, std::generic_category().message(errno));
}

}  // namespace mf
