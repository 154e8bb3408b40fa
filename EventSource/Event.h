#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quillmoth {

/// One event of a stream. An event with no field at all is a valid value.
struct Event {
    std::optional<std::string> id;
    std::optional<std::string> event;
    std::optional<std::string> data;
    /// What the wire calls "retry", as text.
    std::optional<std::string> time;

    /// `time` as a signed decimal number, blanks around it allowed; absent where it does not read as one or
    /// needs more than 64 bits. In the stream's own unit.
    [[nodiscard]] std::optional<std::int64_t> retryTime() const;

    /// True when `time` is the only field.
    [[nodiscard]] bool onlyRetryEvent() const;

    friend bool operator==(const Event&, const Event&) = default;
};

/// Parses one block of a stream, the text between two blank lines. `block` is well-formed UTF-8.
[[nodiscard]] Event parseEvent(std::string_view block);

} // namespace quillmoth
