// SPDX-License-Identifier: MIT
#pragma once

class mfFunctionDataPoints_c;
class mfFunctionSegments_c;

namespace mf::documents {

class ReadState;

/// Reads the rows of a table of points; false if an element is missing.
bool readPoints(ReadState& reading, mfFunctionDataPoints_c& function);
/// Reads the rows of a table of segments and the profiles that the document defines;
/// false if an element is missing.
bool readSegments(ReadState& reading, mfFunctionSegments_c& function);

}  // namespace mf::documents
