// The main window's layout in twips, worked out by hand from the constants: margin 60, gap 30,
// battery line 255 high, buttons 720 x 375, rows 270 high.

#include "display/display_layout.h"

#include <gtest/gtest.h>

namespace wakeline {
namespace {

using Button = CommandButton;

const TwipsRect& At(const DisplayGeometry& g, Button b) {
    return g.buttons[static_cast<std::size_t>(b)];
}

TEST(DisplayLayout, DefaultWidthShowsBothColumnsAndOneRowOfButtons) {
    DisplayLayout layout;
    EXPECT_EQ(layout.CreatedRows(), 1U);  // row 0 comes with the window
    layout.TextWidthSize(4000, true, DisplayLayout::kStatusStartHeight);
    const DisplayGeometry& g = layout.Geometry();
    EXPECT_EQ(g.powerStatus, (TwipsRect{60, 60, 3880, 255}));
    EXPECT_EQ(g.status, (TwipsRect{60, 345, 3880, 720}));
    EXPECT_EQ(At(g, Button::Help), (TwipsRect{60, 1095, 720, 375}));
    EXPECT_EQ(At(g, Button::Wind), (TwipsRect{810, 1095, 720, 375}));
    EXPECT_EQ(At(g, Button::Tab), (TwipsRect{1560, 1095, 720, 375}));
    EXPECT_EQ(At(g, Button::Log), (TwipsRect{2310, 1095, 720, 375}));
    // 3880 - 2000 leaves 1880 beside the value column: room for the 1200 of the codes.
    EXPECT_EQ(g.codeColumnWidth, 1200);
    EXPECT_EQ(g.codeLabels[0], (TwipsRect{60, 1500, 1200, 270}));
    EXPECT_EQ(g.valueLabels[0], (TwipsRect{1260, 1500, 2680, 270}));
    for (std::size_t row = 1; row < kFieldCount; ++row) {
        EXPECT_EQ(g.valueLabels[row].top, g.valueLabels[row - 1].Bottom()) << row;
        EXPECT_EQ(g.codeLabels[row].top, g.valueLabels[row].top) << row;
        EXPECT_EQ(g.valueLabels[row].left, 1260) << row;
    }
    EXPECT_EQ(layout.ContentHeight(14), 1500 + 14 * 270 + 270 + 60);
    EXPECT_EQ(layout.ContentHeight(22), 1500 + 22 * 270 + 270 + 60);

    // A second layout creates no further rows; the first data shrinks the status label.
    layout.TextWidthSize(4000, true, 255);
    EXPECT_EQ(layout.CreatedRows(), kFieldCount);
    EXPECT_EQ(layout.Geometry().codeLabels[0].top, 1500 - 465);
    EXPECT_EQ(layout.ContentHeight(22), 7305);
}

TEST(DisplayLayout, NarrowWindowsHideTheCodesAndWrapTheButtons) {
    DisplayLayout layout;
    // 3780 - 2000 leaves 1780 beside the value column: too little for the codes.
    layout.TextWidthSize(3900, true, 255);
    EXPECT_EQ(layout.Geometry().codeColumnWidth, 0);
    EXPECT_EQ(layout.Geometry().valueLabels[5], (TwipsRect{60, 1035 + 5 * 270, 3780, 270}));

    // At the minimum the third button no longer fits beside the second, and the values keep
    // all but a gap of the width.
    layout.TextWidthSize(DisplayLayout::kMinimumWidth, true, 255);
    const DisplayGeometry& g = layout.Geometry();
    EXPECT_EQ(At(g, Button::Wind), (TwipsRect{810, 630, 720, 375}));
    EXPECT_EQ(At(g, Button::Tab), (TwipsRect{60, 1035, 720, 375}));
    EXPECT_EQ(At(g, Button::Log), (TwipsRect{810, 1035, 720, 375}));
    EXPECT_EQ(g.valueLabels[0], (TwipsRect{30, 1440, 2240, 270}));

    // Without the log button the others keep their places; the log button is not placed.
    layout.TextWidthSize(DisplayLayout::kMinimumWidth, false, 255);
    EXPECT_FALSE(layout.Geometry().logButtonVisible);
    EXPECT_EQ(At(layout.Geometry(), Button::Log), TwipsRect{});
    EXPECT_EQ(At(layout.Geometry(), Button::Tab), (TwipsRect{60, 1035, 720, 375}));

    EXPECT_EQ(DisplayLayout::ResizedWidth(1000), 2300);
    EXPECT_EQ(DisplayLayout::ResizedWidth(2301), 2301);
}

}  // namespace
}  // namespace wakeline
