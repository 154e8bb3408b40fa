#pragma once

#include "Platform/UUIDSource.h"

#include <cstdint>

namespace quillmoth::platform {

/// Counts: 00000000-0000-4000-8000-000000000001 and on. One thread.
class FakeUUIDSource final : public UUIDSource {
public:
    [[nodiscard]] std::string makeUUID() override { return uuid(++count_); }

    /// The text that the `number`th call gives, from 1.
    [[nodiscard]] static std::string uuid(std::uint64_t number);

    [[nodiscard]] std::uint64_t count() const { return count_; }

private:
    std::uint64_t count_ = 0;
};

} // namespace quillmoth::platform
