#pragma once

#include "Foundation/Subscription.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace quillmoth::platform {

using DefaultsValue = std::variant<bool, std::int64_t, double, std::string>;

/// The per-user settings. Main thread. A read gives what is in the store now, other processes' changes
/// included.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    [[nodiscard]] virtual std::optional<DefaultsValue> object(std::string_view key) const = 0;
    virtual void set(std::string_view key, DefaultsValue value) = 0;
    virtual void remove(std::string_view key) = 0;

    /// Why what was stored could not be used, in words for the user; empty where it could.
    [[nodiscard]] virtual std::string problem() const { return {}; }

    /// Why the value of `key`, which is there, cannot be read for now, in words for the user; empty where it
    /// can, or where there is none.
    [[nodiscard]] virtual std::string obstacle(std::string_view key) const {
        (void)key;
        return {};
    }

    /// The user wants what needs the value of `key`: does in the background what makes it readable, for which
    /// the desktop may ask the user. Subscribers are told when it is.
    virtual void makeReadable(std::string_view key) { (void)key; }

    /// Called after a change, by this process or by another one.
    virtual Subscription onChange(std::function<void()> subscriber) = 0;

    /// The value where it is a text, otherwise none.
    [[nodiscard]] std::optional<std::string> string(std::string_view key) const {
        const auto value = object(key);
        const auto* text = value ? std::get_if<std::string>(&*value) : nullptr;
        return text ? std::optional(*text) : std::nullopt;
    }

    /// The value where it is a Boolean, otherwise `fallback`.
    [[nodiscard]] bool boolean(std::string_view key, bool fallback) const {
        const auto value = object(key);
        const auto* boolean = value ? std::get_if<bool>(&*value) : nullptr;
        return boolean ? *boolean : fallback;
    }

    /// The value where it is a number, otherwise `fallback`.
    [[nodiscard]] double number(std::string_view key, double fallback) const {
        const auto value = object(key);
        if (!value)
            return fallback;
        if (const auto* real = std::get_if<double>(&*value))
            return *real;
        const auto* integer = std::get_if<std::int64_t>(&*value);
        return integer ? static_cast<double>(*integer) : fallback;
    }
};

} // namespace quillmoth::platform
