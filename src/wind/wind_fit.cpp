#include "wind/wind_fit.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace wakeline {
namespace {

constexpr double kMinutesPerDay = 1440.0;
constexpr double kTwoPi = 2.0 * std::numbers::pi;
// At most this many periods are tried on the grid (about 8 hours of observations at the finest
// spacing), which keeps a full history's fit within a few milliseconds.
constexpr double kMostGridPoints = 4000.0;

// The observations a fit uses: minutes relative to the last one (so never large), and the
// unwrapped directions less their plain mean (so the normal equations stay well conditioned).
struct Series {
    std::vector<double> minutes;
    std::vector<double> centred;
    double offset = 0;    // the plain mean of the unwrapped directions
    double variance = 0;  // sum of squares of `centred`
};

struct LinearFit {
    bool solved = false;
    double mean = 0, sine = 0, cosine = 0;
    double residual = 0;  // sum of squared residuals
};

// Least squares for y = mean + sine * sin(w t) + cosine * cos(w t), from the sums over the
// observations, by Cramer's rule on the 3 x 3 normal equations.
struct Sums {
    double n = 0, s = 0, c = 0, ss = 0, sc = 0, cc = 0, y = 0, ys = 0, yc = 0, yy = 0;
};

LinearFit Solve(const Sums& k) {
    const double a[3][3] = {{k.n, k.s, k.c}, {k.s, k.ss, k.sc}, {k.c, k.sc, k.cc}};
    const double b[3] = {k.y, k.ys, k.yc};
    auto det = [](const double m[3][3]) {
        return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
               m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
               m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
    };
    const double d = det(a);
    LinearFit fit;
    // A singular system: the sine is indistinguishable from a constant at this frequency
    // (e.g. every observation at the same phase).
    if (!(std::fabs(d) > 1e-9 * k.n * k.n * k.n)) {
        return fit;
    }
    double solution[3];
    for (int col = 0; col < 3; ++col) {
        double m[3][3];
        for (int r = 0; r < 3; ++r) {
            for (int c = 0; c < 3; ++c) {
                m[r][c] = c == col ? b[r] : a[r][c];
            }
        }
        solution[col] = det(m) / d;
    }
    fit.solved = true;
    fit.mean = solution[0];
    fit.sine = solution[1];
    fit.cosine = solution[2];
    fit.residual = std::max(0.0, k.yy - (fit.mean * k.y + fit.sine * k.ys + fit.cosine * k.yc));
    return fit;
}

LinearFit FitAt(const Series& series, double cyclesPerMinute) {
    const double w = kTwoPi * cyclesPerMinute;
    Sums k;
    for (std::size_t i = 0; i < series.minutes.size(); ++i) {
        const double s = std::sin(w * series.minutes[i]);
        const double c = std::cos(w * series.minutes[i]);
        const double y = series.centred[i];
        k.n += 1;
        k.s += s;
        k.c += c;
        k.ss += s * s;
        k.sc += s * c;
        k.cc += c * c;
        k.y += y;
        k.ys += y * s;
        k.yc += y * c;
        k.yy += y * y;
    }
    return Solve(k);
}

double Residual(const LinearFit& fit) {
    return fit.solved ? fit.residual : HUGE_VAL;
}

}  // namespace

double OverlayDirectionAt(const SineOverlay& overlay, DateTime t) {
    if (!(overlay.periodMinutes > 0)) {
        return overlay.meanDirection;
    }
    const double minutes = (t - overlay.phaseTime) * kMinutesPerDay;
    return overlay.meanDirection +
           overlay.amplitudeDegrees * std::sin(kTwoPi * minutes / overlay.periodMinutes);
}

UnwrappedDirections UnwrapDirections(const std::vector<double>& directions) {
    UnwrappedDirections out;
    double sumSin = 0, sumCos = 0;
    for (double d : directions) {
        sumSin += std::sin(d * std::numbers::pi / 180.0);
        sumCos += std::cos(d * std::numbers::pi / 180.0);
    }
    double mean = std::atan2(sumSin, sumCos) * 180.0 / std::numbers::pi;
    if (mean < 0) {
        mean += 360.0;
    }
    out.circularMean = mean;
    out.directions.reserve(directions.size());
    for (double d : directions) {
        double offset = std::fmod(d - mean, 360.0);
        if (offset > 180.0) {
            offset -= 360.0;
        } else if (offset <= -180.0) {
            offset += 360.0;
        }
        out.directions.push_back(mean + offset);
    }
    return out;
}

std::optional<SineFit> FitWindOscillation(const WindData& history, DateTime start) {
    const int count = std::clamp<int>(history.Count, 0, kWindCapacity);
    std::vector<double> times;
    std::vector<double> raw;
    for (int i = 0; i < count; ++i) {
        const WindObservation& o = history.Obs[static_cast<std::size_t>(i)];
        // A value that is not a number carries nothing to fit.
        if (o.Time >= start && std::isfinite(o.Time) && std::isfinite(o.Direction)) {
            times.push_back(o.Time);
            raw.push_back(o.Direction);
        }
    }
    if (static_cast<int>(times.size()) < kMinimumFitObservations) {
        return std::nullopt;
    }
    const DateTime last = times.back();
    const auto [earliest, latest] = std::minmax_element(times.begin(), times.end());
    const double spanMinutes = (*latest - *earliest) * kMinutesPerDay;
    if (!(spanMinutes >= kShortestPeriodMinutes) || !std::isfinite(spanMinutes)) {
        return std::nullopt;
    }

    Series series;
    const UnwrappedDirections unwrapped = UnwrapDirections(raw);
    double sum = 0;
    for (double d : unwrapped.directions) {
        sum += d;
    }
    series.offset = sum / static_cast<double>(unwrapped.directions.size());
    for (std::size_t i = 0; i < times.size(); ++i) {
        series.minutes.push_back((times[i] - last) * kMinutesPerDay);
        const double y = unwrapped.directions[i] - series.offset;
        series.centred.push_back(y);
        series.variance += y * y;
    }
    if (!(series.variance > 1e-9 * static_cast<double>(times.size()))) {
        return std::nullopt;
    }

    // The grid in frequency. Over a span T a sine's fit changes markedly when its frequency
    // moves by 1/T; a step of 1/(4T) cannot step over a peak. Each observation's phasor
    // e^(i w t) is turned by a fixed step per grid point instead of calling sin and cos anew.
    const double lowest = 1.0 / std::min(kLongestPeriodMinutes, spanMinutes);
    const double highest = 1.0 / kShortestPeriodMinutes;
    // A history continued over days would need a grid of tens of thousands of points; beyond
    // kMostGridPoints the grid coarsens, and the refinement still finds a peak it lands near.
    const double step = std::max(1.0 / (4.0 * spanMinutes), (highest - lowest) / kMostGridPoints);
    const int points = static_cast<int>(std::floor((highest - lowest) / step)) + 1;
    const std::size_t n = times.size();
    std::vector<double> re(n), im(n), stepRe(n), stepIm(n);
    for (std::size_t i = 0; i < n; ++i) {
        re[i] = std::cos(kTwoPi * lowest * series.minutes[i]);
        im[i] = std::sin(kTwoPi * lowest * series.minutes[i]);
        stepRe[i] = std::cos(kTwoPi * step * series.minutes[i]);
        stepIm[i] = std::sin(kTwoPi * step * series.minutes[i]);
    }
    double bestFrequency = lowest;
    double bestResidual = HUGE_VAL;
    for (int p = 0; p < points; ++p) {
        const double frequency = lowest + step * p;
        Sums k;
        for (std::size_t i = 0; i < n; ++i) {
            const double s = im[i], c = re[i], y = series.centred[i];
            k.s += s;
            k.c += c;
            k.ss += s * s;
            k.sc += s * c;
            k.cc += c * c;
            k.ys += y * s;
            k.yc += y * c;
            k.y += y;
            k.yy += y * y;
            const double turnedRe = re[i] * stepRe[i] - im[i] * stepIm[i];
            im[i] = re[i] * stepIm[i] + im[i] * stepRe[i];
            re[i] = turnedRe;
        }
        k.n = static_cast<double>(n);
        const double residual = Residual(Solve(k));
        if (residual < bestResidual) {
            bestResidual = residual;
            bestFrequency = frequency;
        }
    }
    if (bestResidual == HUGE_VAL) {
        return std::nullopt;
    }

    // Golden-section search between the grid's neighbours of the best point.
    double lo = std::max(lowest, bestFrequency - step);
    double hi = std::min(highest, bestFrequency + step);
    const double ratio = (std::sqrt(5.0) - 1.0) / 2.0;
    double x1 = hi - ratio * (hi - lo), x2 = lo + ratio * (hi - lo);
    double f1 = Residual(FitAt(series, x1)), f2 = Residual(FitAt(series, x2));
    for (int iteration = 0; iteration < 40 && hi - lo > 1e-9 * highest; ++iteration) {
        if (f1 < f2) {
            hi = x2;
            x2 = x1;
            f2 = f1;
            x1 = hi - ratio * (hi - lo);
            f1 = Residual(FitAt(series, x1));
        } else {
            lo = x1;
            x1 = x2;
            f1 = f2;
            x2 = lo + ratio * (hi - lo);
            f2 = Residual(FitAt(series, x2));
        }
    }
    const double refined = f1 < f2 ? x1 : x2;
    const double frequency = std::min(f1, f2) < bestResidual ? refined : bestFrequency;
    const LinearFit fit = FitAt(series, frequency);
    if (!fit.solved) {
        return std::nullopt;
    }

    SineFit out;
    out.r2 = std::clamp(1.0 - fit.residual / series.variance, 0.0, 1.0);
    if (out.r2 < kMinimumFitR2) {
        return std::nullopt;
    }
    const double period = 1.0 / frequency;
    const double w = kTwoPi * frequency;
    // sine * sin(wt) + cosine * cos(wt) = A sin(wt + phi): it rises through its mean where
    // wt + phi is a whole turn. Take the last such time at or before the last observation.
    const double phi = std::atan2(fit.cosine, fit.sine);
    double rising = -phi / w;  // minutes relative to the last observation, within half a period
    if (rising > 0) {
        rising -= period;
    }
    double maximum = rising + period / 4.0;
    while (maximum <= 0) {
        maximum += period;
    }
    double minimum = rising + 3.0 * period / 4.0;
    while (minimum <= 0) {
        minimum += period;
    }
    out.overlay.meanDirection = series.offset + fit.mean;
    out.overlay.amplitudeDegrees = std::hypot(fit.sine, fit.cosine);
    out.overlay.periodMinutes = period;
    out.overlay.phaseTime = last + rising / kMinutesPerDay;
    out.nextMaximum = last + maximum / kMinutesPerDay;
    out.nextMinimum = last + minimum / kMinutesPerDay;
    return out;
}

}  // namespace wakeline
