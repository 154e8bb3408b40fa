#pragma once

#include "Quillmoth/Assistant/FloatingViewController.h"

#include <optional>

class QKeyEvent;

namespace quillmoth {

/// The key equivalent that an event stands for; none for any other key.
[[nodiscard]] std::optional<FloatingViewController::Key> panelKeyFor(const QKeyEvent& event);

/// Whether a held key goes on acting. With the others one press is one step.
[[nodiscard]] bool actsOnRepeat(FloatingViewController::Key key);

} // namespace quillmoth
