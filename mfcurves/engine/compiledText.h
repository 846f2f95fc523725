// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "mfcurves/engine/compilation.h"
#include "mfcurves/engine/parseError.h"
#include "mfcurves/engine/program.h"

namespace mf::engine {

/// One text, compiled: its parameters, the program of its value, and a program of all
/// orders. The first derivative that is asked for brings the usual three.
///
/// Threads: every thread may ask at any time. The programs that it hands out never
/// change, so running them needs no lock.
/// Memory: the graph of the text is kept until its derivatives are compiled, and made
/// again from the text for a fourth one.
class CompiledText {
public:
    using Result = std::variant<std::shared_ptr<CompiledText>, ParseError>;

    /// Compiles a text under the rules of MotionMEParser::parse.
    static Result compile(std::wstring_view text, const std::optional<std::wstring_view>& variableName);

    const std::vector<std::wstring>& parameterNames() const { return parameterNames_; }
    std::size_t parameterCount() const { return parameterNames_.size(); }

    /// Programs of at least the orders 0 to `order`, compiled now if need be; nothing when
    /// one of them outgrows the limits.
    std::optional<Programs> programs(int order);

    /// Bytes that the compiled text holds.
    std::size_t bytes();

private:
    void iAddOrders(int highest);
    std::unique_ptr<Compilation> iCompileAgain() const;

    std::vector<std::wstring> parameterNames_;  // fixed once compiled, like these
    std::string packedText_;
    bool hasVariable_ = false;

    std::mutex mutex_;  // for all that follows, which grows with the orders
    std::unique_ptr<Compilation> compilation_;
    Programs programs_;
    bool hasAllOrders_ = false;  // there is no further one within the limits
};

}  // namespace mf::engine
