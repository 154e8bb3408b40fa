#pragma once

namespace quillmoth::KeyboardShortcuts {

/// The two moments of a shortcut.
enum class EventType { keyDown, keyUp };

} // namespace quillmoth::KeyboardShortcuts
