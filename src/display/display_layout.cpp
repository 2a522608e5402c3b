#include "display/display_layout.h"

namespace wakeline {

void DisplayLayout::TextWidthSize(int width, bool logButtonVisible, int statusHeight) {
    DisplayGeometry g;
    g.width = width;
    const int inner = width - 2 * kMargin;
    g.powerStatus = {kMargin, kMargin, inner, kPowerStatusHeight};
    g.status = {kMargin, g.powerStatus.Bottom() + kGap, inner, statusHeight};

    // Each button follows the previous one on its line; one that would reach past the margin
    // starts a new line. The help button starts below the status label.
    g.logButtonVisible = logButtonVisible;
    const std::size_t shown = logButtonVisible ? kCommandButtonCount : kCommandButtonCount - 1;
    TwipsRect previous{kMargin, g.status.Bottom() + kGap, 0, 0};
    int lowest = g.status.Bottom();
    for (std::size_t i = 0; i < shown; ++i) {
        TwipsRect button{previous.Right() + (i == 0 ? 0 : kGap), previous.top, kButtonWidth,
                         kButtonHeight};
        if (i > 0 && button.Right() > width - kMargin) {
            button.left = kMargin;
            button.top = previous.Bottom() + kGap;
        }
        g.buttons[i] = button;
        previous = button;
        lowest = button.Bottom();
    }

    // Row 0 starts at the value column's starting width; the code column gets its width only
    // when the space beside that leaves room for it.
    const int firstTop = lowest + kGap;
    TwipsRect value{kMargin, firstTop, kValueStartWidth, kRowHeight};
    g.codeColumnWidth = inner - kValueStartWidth >= kCodeColumnRoom ? kCodeColumnWidth : 0;
    TwipsRect code{kMargin, firstTop, g.codeColumnWidth, kRowHeight};
    if (g.codeColumnWidth > 0) {
        value.left = code.Right();
        value.width = width - kMargin - value.left;
    } else if (width == kMinimumWidth) {
        // The narrowest window gives the values the margins but a gap: they are what a sailor
        // reads from across the cabin, and a long position needs all of it.
        value.left = kGap;
        value.width = width - 2 * kGap;
    } else {
        value.width = inner;
    }

    for (std::size_t row = 0; row < kFieldCount; ++row) {
        g.codeLabels[row] = code;
        g.valueLabels[row] = value;
        code.top += kRowHeight;
        value.top += kRowHeight;
    }
    createdRows_ = kFieldCount;
    geometry_ = g;
    ++generation_;
}

int DisplayLayout::ContentHeight(std::size_t lastRow) const {
    const TwipsRect& code = geometry_.codeLabels[lastRow < kFieldCount ? lastRow : kFieldCount - 1];
    return code.Bottom() + kMargin;
}

}  // namespace wakeline
