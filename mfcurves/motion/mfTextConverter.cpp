// SPDX-License-Identifier: MIT

#include "mfcurves/motion/mfTextConverter.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <memory>

#include "mfcurves/interfaces/CGeneralException.h"
#include "mfcurves/interfaces/CMemoryException.h"
#include "mfcurves/platform/encoding.h"
#include "mfcurves/platform/locale.h"
#include "mfcurves/platform/narrowText.h"

namespace {

constexpr int kFixedBufferSize = 128;
constexpr int kBytesForEachCharacter = 4;
constexpr std::uint32_t kOutOfMemory = 0x8007000E;
constexpr std::uint32_t kInvalidArgument = 0x80070057;

// Converts an error number to a result code of the platform. A number that is not
// positive as a signed 32-bit number is a result code already.
std::uint32_t resultCode(std::uint32_t error)
{
    return static_cast<std::int32_t>(error) > 0 ? (error & 0xFFFF) | 0x80070000 : error;
}

[[noreturn]] void raise(std::uint32_t code)
{
    if (code == kOutOfMemory)
        throw CMemoryException();
    throw CGeneralException(code);
}

// A buffer of at least the given size: the fixed one if that is large enough, else a
// zero-filled one from the heap.
class ConversionBuffer {
public:
    char* ofSize(std::int64_t size)
    {
        if (size < 0 || size > std::numeric_limits<int>::max())
            raise(kInvalidArgument);
        if (size <= kFixedBufferSize)
            return fixed_.data();
        try {
            heap_ = std::make_unique<char[]>(static_cast<std::size_t>(size));
        } catch (const std::bad_alloc&) {
            throw CMemoryException();
        }
        return heap_.get();
    }

private:
    std::array<char, kFixedBufferSize> fixed_{};
    std::unique_ptr<char[]> heap_;
};

}  // namespace

// First tries with room for the longest form of each character. If that is too small,
// asks the encoder how much it needs and tries again.
std::string mfTextConverter_c::toNarrow(const CString& text) const
{
    const std::int64_t length = std::int64_t{text.GetLength()} + 1;  // with the terminator
    const std::int64_t size = kBytesForEachCharacter * length;
    ConversionBuffer buffer;
    const char* bytes = nullptr;
    std::uint32_t error = 0;
    const auto encodeInto = [&](std::int64_t room) {
        char* const target = buffer.ofSize(room);
        bytes = target;
        return mf::platform::encodeNarrow(text, static_cast<int>(length), target, static_cast<int>(room),
                                          error);
    };

    int written = encodeInto(size);
    if (written == 0 && error == mf::platform::kErrorBufferTooSmall) {
        const int needed = mf::platform::encodeNarrow(text, static_cast<int>(length), nullptr, 0, error);
        written = needed == 0 ? 0 : encodeInto(needed);
    }
    if (written == 0)
        raise(resultCode(error));
    const char* const end = std::find(bytes, bytes + written, '\0');
    return {bytes, end};
}

CString mfTextConverter_c::toCString(const std::string& text) const
{
    return text.c_str();
}

void mfTextConverter_c::appendToCStringList(const std::vector<std::string>& source,
                                            std::vector<CString>& destination) const
{
    for (const std::string& text : source)
        destination.push_back(toCString(text));
}

std::wstring mfTextConverter_c::toWide(const std::string& text) const
{
    return mf::platform::widenThroughLocale(text);
}
