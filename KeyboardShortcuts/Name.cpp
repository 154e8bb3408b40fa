#include "KeyboardShortcuts/Name.h"

#include "KeyboardShortcuts/Center.h"

#include <utility>

namespace quillmoth::KeyboardShortcuts {

Name::Name(std::string rawValue) : rawValue_(std::move(rawValue)) {}

Name::Name(std::string rawValue, const Shortcut& defaultShortcut, Center& center)
    : rawValue_(std::move(rawValue)), defaultShortcut_(defaultShortcut) {
    if (!center.hasStoredObject(*this))
        center.setShortcut(defaultShortcut, *this);
}

} // namespace quillmoth::KeyboardShortcuts
