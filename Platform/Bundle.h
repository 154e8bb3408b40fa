#pragma once

#include "Foundation/Result.h"

#include <optional>
#include <string>
#include <string_view>

namespace quillmoth::platform {

/// What ships with the program. Any thread.
class Bundle {
public:
    virtual ~Bundle() = default;

    /// Where the resource is; none where there is no such resource.
    [[nodiscard]] virtual std::optional<std::string> urlForResource(std::string_view filename) const = 0;

    /// The bytes at a place that urlForResource gave.
    [[nodiscard]] virtual Result<std::string> read(const std::string& resourceURL) const = 0;

    /// A value of the program's own description, such as "CFBundleShortVersionString".
    [[nodiscard]] virtual std::optional<std::string> info(std::string_view key) const = 0;
};

} // namespace quillmoth::platform
