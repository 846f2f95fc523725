// SPDX-License-Identifier: MIT

#include "mfcurves/platform/locale.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <locale.h>
#include <vector>
#include <wctype.h>

#include "mfcurves/platform/narrowText.h"

namespace mf::platform {
namespace {

constexpr const char* kUtf8Locales[] = {"C.UTF-8", "C.utf8", "en_US.UTF-8"};

void enterUtf8Locale()
{
    for (const char* name : kUtf8Locales) {
        if (setlocale(LC_ALL, name) != nullptr)
            return;
    }
}

locale_t utf8Locale()
{
    static const locale_t locale = [] {
        for (const char* name : kUtf8Locales) {
            if (const locale_t made = newlocale(LC_ALL_MASK, name, static_cast<locale_t>(nullptr)))
                return made;
        }
        return newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
    }();
    return locale;
}

}  // namespace

// The name of all categories together is "C" only when each of them is "C". glibc
// stores that name, so the call takes no lock and builds no text.
bool standsAtC()
{
    return uselocale(static_cast<locale_t>(nullptr)) == LC_GLOBAL_LOCALE &&
           std::strcmp(setlocale(LC_ALL, nullptr), "C") == 0;
}

std::wstring widenThroughLocale(const std::string& text)
{
    if (isAscii(text) && standsAtC()) {
        const std::size_t end = std::min(text.find('\0'), text.size());
        return {text.begin(), text.begin() + static_cast<std::ptrdiff_t>(end)};
    }
    std::vector<wchar_t> buffer(text.size() + 1, L'\0');
    enterUtf8Locale();
    std::mbstowcs(buffer.data(), text.c_str(), buffer.size());
    setlocale(LC_ALL, "C");
    return buffer.data();
}

wchar_t foldCase(wchar_t c)
{
    if (c >= 0 && c < 0x80)
        return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c + (L'a' - L'A')) : c;
    return static_cast<wchar_t>(towlower_l(static_cast<wint_t>(c), utf8Locale()));
}

int compareNoCase(const wchar_t* a, const wchar_t* b)
{
    if (a == b)  // copies of a CString share one buffer
        return 0;
    for (;; ++a, ++b) {
        const wchar_t left = foldCase(*a);
        const wchar_t right = foldCase(*b);
        if (left != right)
            return left < right ? -1 : 1;
        if (left == L'\0')
            return 0;
    }
}

}  // namespace mf::platform
