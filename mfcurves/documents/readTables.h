#pragma once

class mfFunctionDataPoints_c;
class mfFunctionSegments_c;

namespace mf::documents {

class CurveReading;

/// Read the rows of a table; false where an element is missing.
bool readPoints(CurveReading& reading, mfFunctionDataPoints_c& function);
/// With the profiles that the document defines.
bool readSegments(CurveReading& reading, mfFunctionSegments_c& function);

}  // namespace mf::documents
