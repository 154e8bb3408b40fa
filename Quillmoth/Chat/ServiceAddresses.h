#pragma once

#include <string>
#include <string_view>

namespace quillmoth {

/// The built-in address of the chat-completions service.
inline constexpr std::string_view kOpenAI = "https://api.openai.com";

/// True for an http or https URL of scheme, host, and maybe a port and a path; nothing else may be in it.
[[nodiscard]] bool isServiceAddress(std::string_view address);

} // namespace quillmoth
