#pragma once

#include "Quillmoth/Assistant/FloatingViewController.h"

#include <QKeyEvent>

#include <memory>
#include <optional>

namespace quillmoth {

/// The key equivalent that an event stands for; none for any other key.
[[nodiscard]] std::optional<FloatingViewController::Key> panelKeyFor(const QKeyEvent& event);

/// A combination with Ctrl typed in another alphabet, as the same key gives it in the Latin one; none for
/// what is Latin already. A layout without any Latin letters has "Ctrl+С" where "Ctrl+C" is meant.
[[nodiscard]] std::unique_ptr<QKeyEvent> latinEquivalent(const QKeyEvent& event);

/// Whether a held key goes on acting. With the others one press is one step.
[[nodiscard]] bool actsOnRepeat(FloatingViewController::Key key);

} // namespace quillmoth
