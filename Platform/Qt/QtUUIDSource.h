#pragma once

#include "Platform/UUIDSource.h"

namespace quillmoth::platform {

/// UUIDs from the toolkit.
class QtUUIDSource final : public UUIDSource {
public:
    [[nodiscard]] std::string makeUUID() override;
};

} // namespace quillmoth::platform
