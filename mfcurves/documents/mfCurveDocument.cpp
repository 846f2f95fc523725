// SPDX-License-Identifier: MIT

#include "mfcurves/documents/mfCurveDocument.h"

#include <string_view>

#include "mfcurves/motion/mfTextConverter.h"
#include "mfcurves/platform/encoding.h"
#include "mfcurves/platform/files.h"
#include "mfcurves/platform/xmlRuntime.h"

namespace {

std::string_view upToZero(std::string_view text)
{
    return text.substr(0, text.find('\0'));
}

mfCurveDocument_c::VariantBool variant(bool value)
{
    return value ? -1 : 0;
}

}  // namespace

bool mfCurveDocument_c::initialize()
{
    mf::platform::startXml();
    if (!document_)
        document_ = std::make_unique<mf::documents::XmlDocument>();
    return true;
}

bool mfCurveDocument_c::shutdown()
{
    document_.reset();
    mf::platform::stopXml();
    return true;
}

mfCurveDocument_c::VariantBool mfCurveDocument_c::load()
{
    return variant(document_ && document_->readFile(path_));
}

mfCurveDocument_c::VariantBool mfCurveDocument_c::loadBuffer()
{
    return variant(document_ && document_->readUtf8(upToZero(xmlText_)));
}

void mfCurveDocument_c::save() const
{
    if (document_)
        mf::platform::replaceFile(path_, document_->serialise());
}

void mfCurveDocument_c::extractXmlText()
{
    if (document_)
        xmlText_ = mfTextConverter_c().toNarrow(CString(mf::platform::widen(document_->serialise())));
}

mf::documents::XmlNode mfCurveDocument_c::appendNode(mf::documents::XmlNode parent,
                                                     mf::documents::XmlDocument::NewNode child)
{
    return document_->append(parent, std::move(child));
}
