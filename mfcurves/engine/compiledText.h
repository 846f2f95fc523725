#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "mfcurves/engine/graph.h"
#include "mfcurves/engine/names.h"
#include "mfcurves/engine/parseError.h"
#include "mfcurves/engine/program.h"

namespace mf::engine {

/// One text, compiled: its parameters and its sections, the value's from the
/// start and those of the derivatives as they are asked for.
///
/// Threads: every thread may ask at any time. The sections that it hands out
/// never change, so running them needs no lock.
class CompiledText {
public:
    using Answer = std::variant<std::shared_ptr<CompiledText>, ParseError>;

    /// Compiles a text under the rules of MotionMEParser::parse.
    static Answer compile(std::wstring_view text, const std::optional<std::wstring_view>& variableName);

    const std::vector<std::wstring>& parameterNames() const { return parameters_.list(); }
    std::size_t parameterCount() const { return parameters_.list().size(); }

    /// The section of an order, made now if need be; null when the derivative
    /// outgrows the limits. Orders are asked for one after the other.
    const Section* section(std::size_t order);

    /// Bytes that the compiled text holds.
    std::size_t bytes();

private:
    std::mutex mutex_;  // for all that follows, which grows with the orders
    Graph graph_;
    NodeId root_;  // of the highest order so far
    Translator translator_;
    std::vector<std::unique_ptr<const Section>> sections_;

    ParameterNames parameters_;  // fixed once compiled
};

}  // namespace mf::engine
