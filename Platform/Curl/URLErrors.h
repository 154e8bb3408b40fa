#pragma once

#include "Platform/Curl/Server.h"
#include "Platform/URLRequest.h"

#include <curl/curl.h>

#include <cstddef>
#include <string>

namespace quillmoth::platform {

/// Failures in words for the user. They name the server and nothing else of the request.
[[nodiscard]] URLError transferError(CURLcode code, const Server& server, const std::string& detail);
/// `fault` as EasyHandle::certificateFault() gives it.
[[nodiscard]] URLError certificateError(const Server& server, long fault);
[[nodiscard]] URLError timeoutError(const Server& server);
[[nodiscard]] URLError tooManyRedirectsError(const Server& server);
/// For a body of more than `largest` bytes.
[[nodiscard]] URLError tooLargeAnswerError(const Server& server, std::size_t largest);
[[nodiscard]] URLError tooManyHeadersError(const Server& server);
[[nodiscard]] URLError badAddressError();
[[nodiscard]] URLError badRedirectError(const Server& server);
/// For one at an address that the request may not go to.
[[nodiscard]] URLError privateAddressError(const Server& server);
/// For a redirect that leads from one server to another with what is for the first alone.
[[nodiscard]] URLError foreignRedirectError(const Server& server, const Server& target);
/// For one that leads from https to http.
[[nodiscard]] URLError unencryptedRedirectError(const Server& server, const Server& target);

} // namespace quillmoth::platform
