#pragma once

#include <string_view>

namespace quillmoth {

/// True for a host of a URL that is this machine for certain: "localhost", 127.0.0.0/8 in its usual spelling
/// and
/// "[::1]". What is sent there passes no network.
[[nodiscard]] bool isLoopbackHost(std::string_view host);

} // namespace quillmoth
