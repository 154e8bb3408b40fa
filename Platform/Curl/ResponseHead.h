#pragma once

#include "Platform/URLRequest.h"

#include <optional>
#include <string>
#include <string_view>

namespace quillmoth::platform {

/// Gathers the lines of an answer's head. Interim answers (status codes below 200) are passed over, and
/// trailers behind the body are ignored.
class ResponseHead {
public:
    /// Takes one line, its end included. True when this line completed the head.
    bool addLine(std::string_view line);

    [[nodiscard]] bool isComplete() const { return complete_; }

    [[nodiscard]] int statusCode() const { return response_.statusCode.value_or(0); }

    [[nodiscard]] std::optional<std::string> header(std::string_view name) const;

    /// The head as an answer from `url`.
    [[nodiscard]] URLResponse response(std::string url) const;

private:
    URLResponse response_;
    bool complete_ = false;
};

} // namespace quillmoth::platform
