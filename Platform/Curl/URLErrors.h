#pragma once

#include "Platform/Curl/URLParts.h"
#include "Platform/URLRequest.h"

#include <curl/curl.h>

#include <string>

namespace quillmoth::platform {

/// Failures in words for the user. They name the server and nothing else of the request.
[[nodiscard]] URLError transferError(CURLcode code, const URLParts& server, const std::string& detail);
[[nodiscard]] URLError timeoutError(const URLParts& server);
[[nodiscard]] URLError tooManyRedirectsError(const URLParts& server);
[[nodiscard]] URLError badAddressError();
[[nodiscard]] URLError badRedirectError(const URLParts& server);

} // namespace quillmoth::platform
