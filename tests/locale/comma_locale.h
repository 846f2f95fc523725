// SPDX-License-Identifier: MIT
#pragma once

// A host whose locale has a decimal comma.

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <locale>
#include <string>

namespace locale_test {

/// While it exists, the process uses a locale with a decimal comma, in the C library and
/// in C++ streams. A test has to check `holds` first.
class CommaLocale {
public:
    CommaLocale() : streams_(std::locale::global(std::locale(std::locale::classic(), new Comma<char>)))
    {
        std::locale::global(std::locale(std::locale(), new Comma<wchar_t>));
        // Set only for the loading: newlocale of the C library leaks the path that it makes from LOCPATH.
        setenv("LOCPATH", COMMA_LOCALE_FOLDER, 1);
        std::setlocale(LC_NUMERIC, "comma");
        unsetenv("LOCPATH");
    }
    ~CommaLocale()
    {
        std::locale::global(streams_);
        std::setlocale(LC_ALL, "C");
    }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;

    /// printf writes a comma, and strtod stops at a point.
    bool holds() const
    {
        char text[16];
        std::snprintf(text, sizeof text, "%.1f", 0.5);
        return std::string(text) == "0,5" && std::strtod("1.5", nullptr) == 1.0;
    }

private:
    template <class Char>
    struct Comma : std::numpunct<Char> {
        Char do_decimal_point() const override { return Char(','); }
    };

    std::locale streams_;
};

}  // namespace locale_test
