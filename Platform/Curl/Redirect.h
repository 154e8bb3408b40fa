#pragma once

#include "Platform/URLRequest.h"

#include <map>
#include <string>

namespace quillmoth::platform {

/// True for the status codes that send the client to the address in the Location header.
[[nodiscard]] bool isRedirect(int statusCode);

/// True where `request`, sent with the headers in `added`, is for its server alone: it has a body or
/// credentials.
[[nodiscard]] bool isConfidential(const URLRequest& request, const std::map<std::string, std::string>& added);

/// The request to make at `url` after `request` was answered by a redirect (RFC 9110, section 15.4): 301 and
/// 302 turn POST into GET, 303 all but HEAD, and 307 and 308 keep method and body.
[[nodiscard]] URLRequest redirectedRequest(const URLRequest& request, int statusCode, std::string url);

} // namespace quillmoth::platform
