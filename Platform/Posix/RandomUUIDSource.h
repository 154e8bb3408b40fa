#pragma once

#include "Platform/UUIDSource.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <mutex>

namespace quillmoth::platform {

/// UUIDs from the kernel's random numbers, fetched for many at a time.
class RandomUUIDSource final : public UUIDSource {
public:
    [[nodiscard]] std::string makeUUID() override;

private:
    static constexpr std::size_t kUUIDSize = 16;
    using UUIDBytes = std::array<std::uint8_t, kUUIDSize>;

    UUIDBytes takeBytes();
    void refill();

    std::mutex mutex_;
    std::array<std::uint8_t, 256 * kUUIDSize> pool_{};
    std::size_t used_ = sizeof pool_;
};

} // namespace quillmoth::platform
