#pragma once

class QWidget;

namespace quillmoth {

/// From now on the control fades into its colour under the pointer, and out of it.
void fadeOnHover(QWidget* control);

/// How far it has come: 0 at rest, 1 under the pointer.
[[nodiscard]] double hoverShare(const QWidget* control);

} // namespace quillmoth
