#pragma once

#include "KeyboardShortcuts/Shortcut.h"

#include <optional>
#include <string>

namespace quillmoth::KeyboardShortcuts {

class Center;

/// A named slot that holds a shortcut in the user's defaults. Two names are the same slot when their raw
/// values are equal, with whatever default.
class Name {
public:
    /// A slot that is empty until the user fills it.
    explicit Name(std::string rawValue);

    /// A slot with a default. Where the defaults store has nothing at all for it, the default is written now,
    /// as if the user had chosen it.
    Name(std::string rawValue, const Shortcut& defaultShortcut, Center& center);

    [[nodiscard]] const std::string& rawValue() const { return rawValue_; }

    [[nodiscard]] const std::optional<Shortcut>& defaultShortcut() const { return defaultShortcut_; }

    /// Where the defaults store keeps the slot.
    [[nodiscard]] std::string defaultsKey() const { return "KeyboardShortcuts_" + rawValue_; }

    friend bool operator==(const Name& first, const Name& second) {
        return first.rawValue_ == second.rawValue_;
    }

    friend bool operator<(const Name& first, const Name& second) {
        return first.rawValue_ < second.rawValue_;
    }

private:
    std::string rawValue_;
    std::optional<Shortcut> defaultShortcut_;
};

} // namespace quillmoth::KeyboardShortcuts
