// SPDX-License-Identifier: MIT

#include "mfcurves/interfaces/CString.h"

#include <algorithm>
#include <cstdarg>
#include <string>
#include <utility>

#include "mfcurves/interfaces/wideFormat.h"
#include "mfcurves/platform/encoding.h"
#include "mfcurves/platform/locale.h"
#include "mfcurves/platform/resources.h"

namespace {

constexpr const wchar_t* kWhiteSpace = L" \t\n\v\f\r";

const wchar_t* orEmpty(const wchar_t* text)
{
    return text ? text : L"";
}

std::size_t clamped(int position, std::size_t length)
{
    return position < 0 ? 0 : std::min(static_cast<std::size_t>(position), length);
}

int positionOrNone(std::size_t position)
{
    return position == std::wstring_view::npos ? -1 : static_cast<int>(position);
}

}  // namespace

CString::CString(std::wstring text)
{
    if (!text.empty())
        text_ = std::make_shared<const std::wstring>(std::move(text));
}

CString::CString(const wchar_t* text) : CString(std::wstring(orEmpty(text))) {}

CString::CString(const wchar_t* text, int length)
    : CString(text ? std::wstring(text, static_cast<std::size_t>(std::max(length, 0))) : std::wstring())
{
}

CString::CString(const char* text) : CString(text ? mf::platform::widen(text) : std::wstring()) {}

int CString::Compare(const wchar_t* other) const noexcept
{
    const int order = View().compare(orEmpty(other));
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

int CString::CompareNoCase(const wchar_t* other) const noexcept
{
    return mf::platform::compareNoCase(GetString(), orEmpty(other));
}

int CString::Find(const wchar_t* pattern, int start) const noexcept
{
    return positionOrNone(View().find(orEmpty(pattern), clamped(start, View().size())));
}

int CString::Find(wchar_t character, int start) const noexcept
{
    return positionOrNone(View().find(character, clamped(start, View().size())));
}

CString CString::Left(int count) const
{
    return Mid(0, count);
}

CString CString::Right(int count) const
{
    return Mid(GetLength() - static_cast<int>(clamped(count, View().size())));
}

CString CString::Mid(int first) const
{
    return Mid(first, GetLength());
}

CString CString::Mid(int first, int count) const
{
    const std::size_t start = clamped(first, View().size());
    const std::size_t length = clamped(count, View().size() - start);
    if (length == View().size())
        return *this;
    return CString(std::wstring(View().substr(start, length)));
}

int CString::Replace(const wchar_t* from, const wchar_t* to)
{
    const std::wstring_view pattern = orEmpty(from);
    const std::wstring_view replacement = orEmpty(to);
    const std::wstring_view text = View();
    std::size_t found = pattern.empty() ? std::wstring_view::npos : text.find(pattern);
    if (found == std::wstring_view::npos)
        return 0;

    int count = 0;
    std::wstring result;
    std::size_t start = 0;
    for (; found != std::wstring_view::npos; found = text.find(pattern, start)) {
        result.append(text.substr(start, found - start)).append(replacement);
        start = found + pattern.size();
        ++count;
    }
    result.append(text.substr(start));
    *this = CString(std::move(result));
    return count;
}

void CString::Append(const wchar_t* text)
{
    *this = *this + text;
}

CString& CString::Trim()
{
    return TrimRight().TrimLeft();
}

CString& CString::TrimLeft()
{
    return iTrimLeft(kWhiteSpace);
}

CString& CString::TrimRight()
{
    return iTrimRight(kWhiteSpace);
}

CString& CString::Trim(wchar_t character)
{
    return TrimRight(character).TrimLeft(character);
}

CString& CString::TrimLeft(wchar_t character)
{
    return iTrimLeft({&character, 1});
}

CString& CString::TrimRight(wchar_t character)
{
    return iTrimRight({&character, 1});
}

CString& CString::iTrimLeft(std::wstring_view characters)
{
    const std::size_t start = std::min(View().find_first_not_of(characters), View().size());
    return *this = Mid(static_cast<int>(start));
}

CString& CString::iTrimRight(std::wstring_view characters)
{
    return *this = Left(static_cast<int>(View().find_last_not_of(characters) + 1));
}

void CString::Format(const wchar_t* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    std::wstring text = mf::interfaces::formatWide(orEmpty(format), arguments);
    va_end(arguments);
    *this = CString(std::move(text));
}

bool CString::LoadString(unsigned number)
{
    *this = CString(mf::platform::resourceString(number));
    return !IsEmpty();
}

CString& CString::operator+=(const CString& text)
{
    return *this = *this + text;
}

CString& CString::operator+=(const wchar_t* text)
{
    return *this = *this + text;
}

CString& CString::operator+=(wchar_t character)
{
    return *this = *this + CString(&character, 1);
}

CString operator+(const CString& a, const CString& b)
{
    if (a.IsEmpty())
        return b;
    if (b.IsEmpty())
        return a;
    std::wstring text;
    text.reserve(a.View().size() + b.View().size());
    text.append(a.View()).append(b.View());
    return CString(std::move(text));
}

CString operator+(const CString& a, const wchar_t* b)
{
    return a + CString(b);
}

CString operator+(const wchar_t* a, const CString& b)
{
    return CString(a) + b;
}
