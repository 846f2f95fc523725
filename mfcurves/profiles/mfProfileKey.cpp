// SPDX-License-Identifier: MIT

#include "mfcurves/profiles/mfProfileKey.h"

mfProfileKey_c::~mfProfileKey_c() = default;

bool mfProfileKey_c::operator==(const mfProfileKey_c& other) const
{
    return sameNameAndSource(other) && index == other.index;
}

bool mfProfileKey_c::isEmpty() const
{
    return name.IsEmpty() && source.IsEmpty() && index == 0;
}

bool mfProfileKey_c::sameNameAndSource(const mfProfileKey_c& other) const
{
    return name.CompareNoCase(other.name) == 0 && source.CompareNoCase(other.source) == 0;
}

bool mfProfileKey_c::keyLess(const mfProfileKey_c& a, const mfProfileKey_c& b)
{
    if (const int byName = a.name.CompareNoCase(b.name); byName != 0)
        return byName < 0;
    if (const int bySource = a.source.CompareNoCase(b.source); bySource != 0)
        return bySource < 0;
    return a.index < b.index;
}

void mfProfileKey_c::keyDisplayName(CString& out) const
{
    const CString text = name + source;
    if (index < 1)
        out = text;
    else
        out.Format(L"%s<%d>", text.GetString(), index);
}
