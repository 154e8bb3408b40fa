#pragma once

#include "Platform/Curl/Server.h"
#include "Platform/URLRequest.h"

#include <curl/curl.h>

#include <string>

namespace quillmoth::platform {

/// Failures in words for the user. They name the server and nothing else of the request.
[[nodiscard]] URLError transferError(CURLcode code, const Server& server, const std::string& detail);
[[nodiscard]] URLError timeoutError(const Server& server);
[[nodiscard]] URLError tooManyRedirectsError(const Server& server);
[[nodiscard]] URLError badAddressError();
[[nodiscard]] URLError badRedirectError(const Server& server);

} // namespace quillmoth::platform
