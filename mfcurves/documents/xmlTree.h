// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/documents/xmlDocument.h"

struct _xmlDoc;

namespace mf::documents {

// The engine's tree of a document, owned.
struct XmlDocument::Tree {
    Tree() = default;
    ~Tree();
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;

    _xmlDoc* document = nullptr;
};

}  // namespace mf::documents
