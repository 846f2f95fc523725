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
/// orders. The first request for a derivative compiles the usual three.
///
/// Threads: any thread may call any operation at any time. The programs that it returns
/// never change, so running them needs no lock.
/// Memory: the graph of the text is kept until its derivatives are compiled, and built
/// again from the text for a fourth one.
class CompiledText {
public:
    using Result = std::variant<std::shared_ptr<CompiledText>, ParseError>;

    /// Compiles a text under the rules of MotionMEParser::parse.
    static Result compile(std::wstring_view text, const std::optional<std::wstring_view>& variableName);

    const std::vector<std::wstring>& parameterNames() const { return parameterNames_; }
    std::size_t parameterCount() const { return parameterNames_.size(); }

    /// Programs of at least the orders 0 to `order`, compiled now if necessary; nothing if
    /// one of them exceeds the limits.
    std::optional<Programs> programs(int order);

    /// Bytes that the compiled text holds.
    std::size_t bytes();

private:
    void iAddOrders(int highest);
    std::unique_ptr<Compilation> iCompileAgain() const;

    std::vector<std::wstring> parameterNames_;  // these three never change once compiled
    std::string packedText_;
    bool hasVariable_ = false;

    std::mutex mutex_;  // guards all that follows, which grows with the orders
    std::unique_ptr<Compilation> compilation_;
    Programs programs_;
    bool hasAllOrders_ = false;  // no further order is within the limits
};

}  // namespace mf::engine
