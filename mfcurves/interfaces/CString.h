// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "mfcurves/platform/mfExport.h"

/// The wide text of all exported signatures.
///
/// Errors: positions and counts are clamped to the text; a null pointer counts as
/// the empty text.
/// Copying: copies share one immutable buffer. A copy costs one reference count, and
/// texts that share a buffer compare equal without reading it.
class MFCURVES_API CString {
public:
    CString() noexcept = default;              ///< the empty text
    CString(const wchar_t* text);              ///< a copy of a zero-terminated text
    CString(const wchar_t* text, int length);  ///< the first `length` characters
    CString(const char* text);                 ///< from narrow text, which is UTF-8
    explicit CString(std::wstring text);       ///< all characters of `text`, zeros included

    /// Becomes a copy of a zero-terminated text.
    CString& operator=(const wchar_t* text) { return *this = CString(text); }

    /// The zero-terminated text, never null; it lives until this object changes.
    const wchar_t* GetString() const noexcept { return text_ ? text_->c_str() : L""; }
    /// The same as GetString.
    operator const wchar_t*() const noexcept { return GetString(); }
    /// The number of characters.
    int GetLength() const noexcept { return text_ ? static_cast<int>(text_->size()) : 0; }
    /// True when the text has no characters.
    bool IsEmpty() const noexcept { return GetLength() == 0; }
    /// The whole text, including characters after a zero character.
    std::wstring_view View() const noexcept
    {
        return text_ ? std::wstring_view(*text_) : std::wstring_view();
    }

    /// True for copies of one text, and for two empty texts. False for equal texts
    /// that were made separately.
    bool SharesBuffer(const CString& other) const noexcept { return text_ == other.text_; }

    /// Compares by character codes: -1, 0 or 1.
    int Compare(const wchar_t* other) const noexcept;
    /// The same ignoring case, by the tables of the UTF-8 locale.
    int CompareNoCase(const wchar_t* other) const noexcept;

    /// Position of the first `pattern` at or after `start`; -1 if not found.
    int Find(const wchar_t* pattern, int start = 0) const noexcept;
    /// Position of the first `character` at or after `start`; -1 if not found.
    int Find(wchar_t character, int start = 0) const noexcept;

    /// The first `count` characters.
    CString Left(int count) const;
    /// The last `count` characters.
    CString Right(int count) const;
    /// The characters from position `first` on, counted from 0.
    CString Mid(int first) const;
    /// `count` characters from position `first` on.
    CString Mid(int first, int count) const;

    /// Replaces every `from` by `to`, from left to right, without searching the
    /// replacements. Returns the number replaced; 0 for an empty `from`.
    int Replace(const wchar_t* from, const wchar_t* to);
    /// Appends a text.
    void Append(const wchar_t* text);

    CString& Trim();                        ///< removes white space from both ends
    CString& TrimLeft();                    ///< removes white space from the start
    CString& TrimRight();                   ///< removes white space from the end
    CString& Trim(wchar_t character);       ///< removes that character from both ends
    CString& TrimLeft(wchar_t character);   ///< removes that character from the start
    CString& TrimRight(wchar_t character);  ///< removes that character from the end

    /// Sets this text by printf rules, at any length. `%s` and `%c` take wide text
    /// and a wide character, the decimal sign is a point under every locale, and
    /// size modifiers and `*` are not supported.
    void Format(const wchar_t* format, ...);

    /// Sets this text to string `number` of the current resource module. Returns
    /// false and leaves an empty text when that string is missing or empty.
    bool LoadString(unsigned number);

    /// Appends a text or a character.
    /// @{
    CString& operator+=(const CString& text);
    CString& operator+=(const wchar_t* text);
    CString& operator+=(wchar_t character);
    /// @}

    /// Both texts, one after the other.
    /// @{
    friend MFCURVES_API CString operator+(const CString& a, const CString& b);
    friend MFCURVES_API CString operator+(const CString& a, const wchar_t* b);
    friend MFCURVES_API CString operator+(const wchar_t* a, const CString& b);
    /// @}

    /// Comparisons by character codes; case matters. All are declared: a missing one
    /// would compare pointers, through the conversion above.
    /// @{
    friend bool operator==(const CString& a, const CString& b) noexcept
    {
        return a.text_ == b.text_ || a.View() == b.View();
    }
    friend bool operator!=(const CString& a, const CString& b) noexcept { return !(a == b); }
    friend bool operator<(const CString& a, const CString& b) noexcept { return a.View() < b.View(); }
    friend bool operator>(const CString& a, const CString& b) noexcept { return a.View() > b.View(); }
    friend bool operator<=(const CString& a, const CString& b) noexcept { return a.View() <= b.View(); }
    friend bool operator>=(const CString& a, const CString& b) noexcept { return a.View() >= b.View(); }
    friend bool operator==(const CString& a, const wchar_t* b) noexcept { return a.Compare(b) == 0; }
    friend bool operator!=(const CString& a, const wchar_t* b) noexcept { return a.Compare(b) != 0; }
    friend bool operator<(const CString& a, const wchar_t* b) noexcept { return a.Compare(b) < 0; }
    friend bool operator>(const CString& a, const wchar_t* b) noexcept { return a.Compare(b) > 0; }
    friend bool operator<=(const CString& a, const wchar_t* b) noexcept { return a.Compare(b) <= 0; }
    friend bool operator>=(const CString& a, const wchar_t* b) noexcept { return a.Compare(b) >= 0; }
    friend bool operator==(const wchar_t* a, const CString& b) noexcept { return 0 == b.Compare(a); }
    friend bool operator!=(const wchar_t* a, const CString& b) noexcept { return 0 != b.Compare(a); }
    friend bool operator<(const wchar_t* a, const CString& b) noexcept { return 0 < b.Compare(a); }
    friend bool operator>(const wchar_t* a, const CString& b) noexcept { return 0 > b.Compare(a); }
    friend bool operator<=(const wchar_t* a, const CString& b) noexcept { return 0 <= b.Compare(a); }
    friend bool operator>=(const wchar_t* a, const CString& b) noexcept { return 0 >= b.Compare(a); }
    /// @}

private:
    MFCURVES_LOCAL CString& iTrimLeft(std::wstring_view characters);
    MFCURVES_LOCAL CString& iTrimRight(std::wstring_view characters);

    std::shared_ptr<const std::wstring> text_;  // null for the empty text
};
