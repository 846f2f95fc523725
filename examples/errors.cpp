// SPDX-License-Identifier: MIT

// How a program handles a curve that cannot be made: each problem has a place and a reason.
// A failure leaves nothing half made and does not affect the next curve.

#include <cstdio>
#include <string>

#include "mfcurves/mfcurves.h"

namespace {

void print(const mf::Problem& problem)
{
    const char* level = problem.level == mf::Problem::Level::Error ? "error" : "warning";
    std::printf("%s: %s: %s\n", level, problem.place.c_str(), problem.message.c_str());
}

template <class Make>
void attempt(const char* what, Make make)
{
    std::printf("%s\n", what);
    try {
        const mf::Curve curve = make();
        for (const mf::Problem& problem : curve.warnings())
            print(problem);
    } catch (const mf::CurveError& error) {
        for (const mf::Problem& problem : error.problems())
            print(problem);
    }
}

}  // namespace

int main()
{
    attempt("an expression that breaks off", [] {
        mf::CurveDefinition definition;
        definition.shape = mf::CurveDefinition::Expression{"2*sin(x", 0.0, 1.0};
        return mf::Curve(definition);
    });
    attempt("a motion law with a slip", [] {
        mf::SegmentShape shape;
        shape.rows = {{1.0, 10.0, "Cubic"}, {2.0, 0.0, "Cyclodial"}};
        mf::CurveDefinition definition;
        definition.shape = shape;
        return mf::Curve(definition);
    });
    attempt("points out of order", [] {
        mf::CurveDefinition definition;
        definition.shape =
            mf::CurveDefinition::Points{{0.0, 2.0, 1.0}, {0.0, 1.0, 2.0}, mf::Interpolation::Linear};
        return mf::Curve(definition);
    });
    attempt("a document of another version",
            [] { return mf::Curve::parse("<Curve><Version>2</Version></Curve>"); });
    attempt("a file that is not there", [] { return mf::Curve::read("missing.xml"); });
    return 0;
}
