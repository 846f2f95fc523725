// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/documents/xmlDocument.h"

struct _xmlDoc;

namespace mf::documents {

// What a document owns of the XML engine.
struct XmlDocument::Tree {
    Tree() = default;
    ~Tree();
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;

    _xmlDoc* document = nullptr;
};

}  // namespace mf::documents
