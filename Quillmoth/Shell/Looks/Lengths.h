#pragma once

namespace quillmoth {

/// Lengths of the panel, in device-independent pixels.
namespace panel {

inline constexpr int kNaturalWidth = 612;
inline constexpr int kNaturalListHeight = 320;
inline constexpr int kLeastListHeight = 200;
inline constexpr int kPadding = 10;
inline constexpr int kCornerRadius = 10;
inline constexpr int kCommandLine = 24;
inline constexpr int kCommandRow = 34;
inline constexpr int kLargestCommandArea = 300;
inline constexpr int kGapAboveDivider = 6;
inline constexpr int kGapBelowDivider = 8;
inline constexpr int kDivider = 1;
inline constexpr int kBottomBar = 20;
inline constexpr int kListEnds = 6;
inline constexpr int kRowPadding = 10;
inline constexpr int kRowGap = 2;
inline constexpr int kRowRadius = 10;
inline constexpr int kMessagePadding = 30;
inline constexpr int kSpinner = 17;
inline constexpr int kSpinnerInset = 27;
inline constexpr int kIcon = 14;

/// All that is above and below the command area and the list area.
inline constexpr int kFixedHeight =
    2 * kPadding + kGapAboveDivider + 2 * kDivider + kGapBelowDivider + kBottomBar;

} // namespace panel

/// Lengths of the ordinary windows, in device-independent pixels.
namespace window {

/// Of push buttons, pickers and fields.
inline constexpr int kControlHeight = 28;
/// Of the items of a menu, and of the rows of a list.
inline constexpr int kRowHeight = 30;

} // namespace window

} // namespace quillmoth
