#pragma once
// The main window's layout in twips (1440 to the inch): the battery line and the link status
// at the top, the command buttons below them, then one row per field, a code label and a value
// label. The window turns twips into pixels by the screen's logical dots per inch, so the column
// looks the same on every screen, and this arithmetic is tested without a window.

#include <array>
#include <cstddef>
#include <cstdint>

#include "livedata/field_table.h"

namespace wakeline {

struct TwipsRect {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;

    int Right() const { return left + width; }
    int Bottom() const { return top + height; }
    bool operator==(const TwipsRect&) const = default;
};

// The command buttons in their order of placing.
enum class CommandButton { Help, Wind, Tab, Log };
inline constexpr std::size_t kCommandButtonCount = 4;

// Where everything goes for one window width.
struct DisplayGeometry {
    int width = 0;  // the window's width the geometry was made for
    TwipsRect powerStatus;
    TwipsRect status;
    std::array<TwipsRect, kCommandButtonCount> buttons;  // indexed by CommandButton
    bool logButtonVisible = false;
    // 1200 when the window leaves room for the code column beside the value column, else 0:
    // the code labels are then hidden and the values take the whole width.
    int codeColumnWidth = 0;
    std::array<TwipsRect, kFieldCount> codeLabels;
    std::array<TwipsRect, kFieldCount> valueLabels;
};

class DisplayLayout {
  public:
    static constexpr int kMinimumWidth = 2300;
    static constexpr int kValueStartWidth = 2000;
    static constexpr int kCodeColumnWidth = 1200;
    // The code column is given its width only when this much space is left beside the value
    // column's starting width.
    static constexpr int kCodeColumnRoom = 1800;
    static constexpr int kRowHeight = 270;
    // The link status label before the first data: tall enough for the instruction and the
    // " NO TRACE FILE" that may follow it, wrapped in the narrowest window.
    static constexpr int kStatusStartHeight = 720;
    static constexpr int kPowerStatusHeight = 255;
    static constexpr int kMargin = 60;
    static constexpr int kGap = 30;
    static constexpr int kButtonWidth = 720;
    static constexpr int kButtonHeight = 375;

    // The width a resized window must take: never below the minimum.
    static int ResizedWidth(int width) { return width < kMinimumWidth ? kMinimumWidth : width; }

    // textWidthSize: lays everything out for `width`. The log button is placed only when
    // visible, and the buttons after a hidden one close up. `statusHeight` is the link status
    // label's current height. The rows 1 to 22 are created by the first call.
    void TextWidthSize(int width, bool logButtonVisible, int statusHeight);

    const DisplayGeometry& Geometry() const { return geometry_; }
    // Rows whose two labels exist: 1 (row 0 comes with the window) until the first layout.
    std::size_t CreatedRows() const { return createdRows_; }
    // Counts the layouts made, so that a view applies a geometry only when it changed.
    std::uint64_t Generation() const { return generation_; }

    // The height below the caption that shows the rows up to `lastRow`: the top of its code
    // label, its height and the margin.
    int ContentHeight(std::size_t lastRow) const;

  private:
    DisplayGeometry geometry_;
    std::size_t createdRows_ = 1;
    std::uint64_t generation_ = 0;
};

}  // namespace wakeline
