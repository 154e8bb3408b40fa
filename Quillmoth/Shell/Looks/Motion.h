#pragma once

class QWidget;

namespace quillmoth {

/// How long what moves takes, in milliseconds.
namespace motion {

inline constexpr int kHover = 90;
inline constexpr int kScrollBar = 120;
inline constexpr int kSwitch = 140;
inline constexpr int kPress = 100;
inline constexpr int kRelease = 160;

} // namespace motion

/// From now on the control fades into its look under the pointer, and out of it.
void fadeOnHover(QWidget& control, int milliseconds = motion::kHover);

/// How far it has come: 0 at rest, 1 under the pointer.
[[nodiscard]] double hoverShare(const QWidget& control);

} // namespace quillmoth
