// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "mfcurves/platform/mfExport.h"

/// The wide text of all exported signatures.
///
/// Errors: positions and counts are clamped to the text, a null pointer reads as
/// the empty text.
/// Copying: copies share one immutable buffer, so that a copy costs a reference
/// count, and two texts with one buffer are equal without a look at it.
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
    /// True without any character.
    bool IsEmpty() const noexcept { return GetLength() == 0; }
    /// The whole text, characters behind a zero character included.
    std::wstring_view View() const noexcept
    {
        return text_ ? std::wstring_view(*text_) : std::wstring_view();
    }

    /// True for copies of one text, and for two empty ones. Equal texts that were
    /// made apart answer false.
    bool SharesBuffer(const CString& other) const noexcept { return text_ == other.text_; }

    /// Negative, 0 or positive, by the numbers of the characters.
    int Compare(const wchar_t* other) const noexcept;
    /// The same without regard to case, by the tables of the UTF-8 locale.
    int CompareNoCase(const wchar_t* other) const noexcept;

    /// Position of the first `pattern` at or behind `start`; -1 for none.
    int Find(const wchar_t* pattern, int start = 0) const noexcept;
    /// Position of the first such character at or after `start`; -1 for none.
    int Find(wchar_t character, int start = 0) const noexcept;

    /// The first `count` characters.
    CString Left(int count) const;
    /// The last `count` characters.
    CString Right(int count) const;
    /// The characters from position `first` on, counted from 0.
    CString Mid(int first) const;
    /// `count` characters from position `first` on.
    CString Mid(int first, int count) const;

    /// Puts `to` for every `from`, from left to right, never looking at what it
    /// put in, and answers how many there were. An empty `from` is nowhere.
    int Replace(const wchar_t* from, const wchar_t* to);
    /// Adds a text at the end.
    void Append(const wchar_t* text);

    CString& Trim();                        ///< takes white space off both ends
    CString& TrimLeft();                    ///< takes white space off the start
    CString& TrimRight();                   ///< takes white space off the end
    CString& Trim(wchar_t character);       ///< takes that character off both ends
    CString& TrimLeft(wchar_t character);   ///< takes that character off the start
    CString& TrimRight(wchar_t character);  ///< takes that character off the end

    /// Becomes what printf makes of these arguments, however long. `%s` and `%c`
    /// take wide text and a wide character, and the decimal sign is a point under
    /// every locale.
    void Format(const wchar_t* format, ...);

    /// Becomes the string of that number of the current resource module. False,
    /// leaving an empty text, where there is none.
    bool LoadString(unsigned number);

    /// Adds a text or a character at the end.
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

    /// Comparisons by the numbers of the characters, case included. All of them, as the
    /// conversion to a pointer would take those left out.
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
