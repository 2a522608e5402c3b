#pragma once
// Twips (1440 to the inch) to pixels and back by a screen's logical dots per inch: 15 twips are
// one pixel at 96 dpi, 7.5 at 192. The layout is made in twips; only the window converts.

#include <QRect>
#include <cmath>

#include "display/display_layout.h"

namespace wakeline {

inline int TwipsToPixels(int twips, double dpi) {
    return static_cast<int>(std::lround(twips * dpi / 1440.0));
}

inline int PixelsToTwips(int pixels, double dpi) {
    return static_cast<int>(std::lround(pixels * 1440.0 / dpi));
}

// Edges are converted rather than sizes, so that rows laid edge to edge stay so in pixels.
inline QRect ToPixels(const TwipsRect& rect, double dpi) {
    const int left = TwipsToPixels(rect.left, dpi);
    const int top = TwipsToPixels(rect.top, dpi);
    return QRect(left, top, TwipsToPixels(rect.Right(), dpi) - left,
                 TwipsToPixels(rect.Bottom(), dpi) - top);
}

}  // namespace wakeline
