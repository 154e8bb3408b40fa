#include "Platform/Linux/Sway/SwayMessage.h"

#include <cstring>
#include <string_view>

namespace quillmoth::platform {

namespace {

constexpr std::string_view kMagic = "i3-ipc";
constexpr std::size_t kHeadLength = kMagic.size() + 2 * sizeof(std::uint32_t);

} // namespace

std::string writtenSwayMessage(const SwayMessage& message) {
    std::string bytes(kMagic);
    const std::uint32_t numbers[] = {static_cast<std::uint32_t>(message.payload.size()), message.kind};
    bytes.append(reinterpret_cast<const char*>(numbers), sizeof numbers);
    return bytes + message.payload;
}

std::optional<SwayMessage> takeSwayMessage(std::string& received, bool& isBroken) {
    if (received.size() < kHeadLength)
        return std::nullopt;
    std::uint32_t numbers[2] = {};
    std::memcpy(numbers, received.data() + kMagic.size(), sizeof numbers);
    isBroken = !received.starts_with(kMagic) || numbers[0] > kLongestSwayMessage;
    if (isBroken || received.size() < kHeadLength + numbers[0])
        return std::nullopt;
    SwayMessage message{.kind = numbers[1], .payload = received.substr(kHeadLength, numbers[0])};
    received.erase(0, kHeadLength + numbers[0]);
    return message;
}

} // namespace quillmoth::platform
