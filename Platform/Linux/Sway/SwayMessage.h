#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace quillmoth::platform {

/// A message of the compositor's socket: "i3-ipc", the length and the kind in the byte order of the machine,
/// and JSON.
struct SwayMessage {
    std::uint32_t kind = 0;
    std::string payload;
};

/// What is longer is not the compositor's.
constexpr std::uint32_t kLongestSwayMessage = 64U << 20U;

/// The kinds of events have this bit.
constexpr std::uint32_t kSwayEventBit = 1U << 31U;

[[nodiscard]] std::string writtenSwayMessage(const SwayMessage& message);

/// Takes the first message from the front of `received`, once all of it is there. `isBroken` is set where no
/// message can come any more.
[[nodiscard]] std::optional<SwayMessage> takeSwayMessage(std::string& received, bool& isBroken);

} // namespace quillmoth::platform
