#pragma once

#include <string>

namespace quillmoth::platform {

/// Any thread.
class UUIDSource {
public:
    virtual ~UUIDSource() = default;

    /// A new random UUID (RFC 9562, version 4) as 36 characters in upper case.
    [[nodiscard]] virtual std::string makeUUID() = 0;
};

} // namespace quillmoth::platform
