#pragma once

#include "Platform/URLSession.h"

#include <optional>
#include <string>

/// What is wrong with an answer, in words for the user.
namespace quillmoth {

/// For the status that a request has ended with; empty for 200.
[[nodiscard]] std::string statusFault(std::optional<int> statusCode);

/// For an answer that has lost its connection before its end.
[[nodiscard]] std::string cutShortFault(const platform::URLError& lost);

/// For an answer that was cut at limits::kAnswer.
[[nodiscard]] std::string tooLongFault();

/// For an answer from `url` with no text in it, where the connection was `lost`, or some record of a chat
/// service has come, or neither.
[[nodiscard]] std::string noTextFault(const std::string& url, const std::optional<platform::URLError>& lost,
                                      bool hasRecord);

} // namespace quillmoth
