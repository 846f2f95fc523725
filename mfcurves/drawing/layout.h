// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "mfcurves/drawing/axis.h"
#include "mfcurves/drawing/diagram.h"

/// Where the parts of a picture are, and their colours. Lengths are in pixels of the picture at its natural
/// size.
namespace mf::drawing {

constexpr double kSmallLetter = 11.0;
constexpr double kLetter = 12.0;
constexpr double kDigitWidth = 7.6;   ///< of the number at a tick, in a wide font
constexpr double kSwatch = 26.0;      ///< room before the name of a curve in the legend
constexpr double kLegendLine = 18.0;  ///< height of a line of the legend
constexpr double kMargin = 2.0;       ///< distance of labels from the edge of the picture

struct Theme {
    const char* background;
    const char* text;
    const char* title;
    const char* name;
    const char* frame;
    const char* grid;
    const char* zero;
    const char* quantities[4];  ///< displacement, velocity, acceleration, jerk; differ in lightness too
    const char* force;
    const char* rateOfForce;
    const char* curves[6];  ///< of several curves in one panel
};

const Theme& themeOf(const Style& style);
/// The colour of a panel that shows one curve.
const char* colourOf(const Theme& theme, const Panel& panel);
/// The colour of a curve among several.
const char* colourOfCurve(const Theme& theme, std::size_t curve);

/// A text at an x.
struct Label {
    double x;
    std::string text;
};

/// One panel's place and axes, which map a point into it.
struct Frame {
    double left = 0.0;
    double right = 0.0;
    double top = 0.0;
    double bottom = 0.0;
    Axis x;
    Axis y;
    double toX(double value) const;
    double toY(double value) const;
};

struct Layout {
    double width = 0.0;
    double height = 0.0;
    double titleHeight = 0.0;
    double plotLeft = 0.0;
    double plotRight = 0.0;
    double plotHeight = 0.0;
    double panelsTop = 0.0;
    double panelStep = 0.0;
    double panelsBottom = 0.0;
    Axis x;
    std::vector<Label> stretchLabels;               ///< names of rows, or numbers where a name does not fit
    std::vector<Label> seamLabels;                  ///< below the axis, except at ticks
    std::vector<std::vector<Label>> curveLegend;    ///< lines: names of several curves
    std::vector<std::vector<Label>> stretchLegend;  ///< lines: what the numbers mean

    double toX(double value) const;
    /// The frame of panel number `panel`, from 0, with an axis for the values from `low` to `high`.
    Frame frame(std::size_t panel, double low, double high) const;
};

Layout layoutOf(const Diagram& diagram, const Style& style);

}  // namespace mf::drawing
