// SPDX-License-Identifier: MIT
#pragma once

class mfFunctionDataPoints_c;
class mfFunctionSegments_c;

namespace mf::documents {

class ReadState;

/// Read the rows of a table; false where an element is missing.
bool readPoints(ReadState& reading, mfFunctionDataPoints_c& function);
/// With the profiles that the document defines.
bool readSegments(ReadState& reading, mfFunctionSegments_c& function);

}  // namespace mf::documents
