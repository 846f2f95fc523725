// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "mfcurves/documents/xmlDocument.h"

// What tests of XmlDocument see of a document.

namespace mf::documents {

// The texts of all elements on a path.
inline std::vector<std::string> textsOn(const std::string& xml, const char* path)
{
    XmlDocument document;
    EXPECT_TRUE(document.readUtf8(xml)) << document.problem().message;
    std::vector<std::string> texts;
    for (const XmlNode& node : document.selectNodes(path))
        texts.push_back(node.text());

    const XmlNode first = document.selectSingleNode(path);
    EXPECT_EQ(first ? first.text() : "", texts.empty() ? "" : texts.front());
    return texts;
}

inline std::string problemOf(const std::string& xml)
{
    XmlDocument document;
    EXPECT_FALSE(document.readUtf8(xml));
    EXPECT_FALSE(document.selectSingleNode("//Curve"));
    const XmlProblem& problem = document.problem();
    return std::to_string(problem.line) + ":" + std::to_string(problem.column) + " " + problem.message;
}

}  // namespace mf::documents
