#pragma once
// A sine fitted to the wind direction: the oscillation of a shifting breeze, so that the sailor
// sees its period and amplitude and when the next veer (direction greatest) and back (least)
// are due. Directions in degrees, periods in minutes, times as UTC date-times (days).

#include <optional>
#include <vector>

#include "base/date_time.h"
#include "wind/wind_data.h"

namespace wakeline {

// A sine over time for the wind direction: mean + amplitude * sin(2*pi*(t - phaseTime)/period)
struct SineOverlay {
    double meanDirection = 0;     // degrees, unwrapped frame of the graph (may lie outside 0..360)
    double amplitudeDegrees = 0;  // never negative in a fit
    double periodMinutes = 10;    // the "wavelength"
    DateTime phaseTime = 0;       // a time where the sine rises through its mean
};

// The overlay's direction at `t`, in the overlay's (unwrapped) frame. A period that is not
// positive gives the mean.
double OverlayDirectionAt(const SineOverlay& overlay, DateTime t);

struct SineFit {
    SineOverlay overlay;
    double r2 = 0;  // share of the variance the sine explains, 0..1
    DateTime nextMaximum =
        0;  // first maximum (veer: direction greatest) after the last observation used
    DateTime nextMinimum = 0;  // first minimum (back) after it
};

// The shortest and longest periods the fit tries, in minutes.
inline constexpr double kShortestPeriodMinutes = 2.0;
inline constexpr double kLongestPeriodMinutes = 60.0;
// A sine that explains less than half of the variance of the directions is no oscillation: the
// wind then shifts at random or drifts, and a sine drawn over it would mislead.
inline constexpr double kMinimumFitR2 = 0.5;
// Fewer observations than this cannot show an oscillation against noise.
inline constexpr int kMinimumFitObservations = 6;

// The circular mean of the directions (degrees, 0..360; 0 when they cancel out) and each
// direction moved by whole turns to lie within 180 degrees of it, so that a series crossing
// north has no jump: 355, 5, 358 read as 355, 365, 358.
struct UnwrappedDirections {
    double circularMean = 0;
    std::vector<double> directions;
};
UnwrappedDirections UnwrapDirections(const std::vector<double>& directions);

// Least-squares fit of a sine to the directions of the observations at or after `start`
// (observations oldest first, as the history keeps them), unwrapped as UnwrapDirections does.
// The period is searched between 2 minutes and 60 minutes, but never longer than the span of
// the observations, since a sine with less than one whole cycle in view is a trend, not an
// oscillation: a grid in frequency fine enough that no peak falls between two points (a
// quarter of the spacing at which a sine over the span turns once more), a linear least-squares
// solve for mean, sine and cosine at each, then a golden-section refinement around the best.
// Empty when fewer than 6 observations are used, when they span less than 2 minutes, when the
// directions do not vary, or when the best sine explains less than kMinimumFitR2 of the
// variance.
std::optional<SineFit> FitWindOscillation(const WindData& history, DateTime start);

}  // namespace wakeline
