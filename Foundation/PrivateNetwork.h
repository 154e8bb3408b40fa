#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace quillmoth {

/// False for the address of a server that anybody can reach; true for loopback, link-local, private,
/// multicast and reserved ones (RFC 6890), IPv6 addresses that hold such an IPv4 address, and for what is no
/// address. `bytes` are 4 or 16, the highest first.
[[nodiscard]] bool isPrivateAddress(std::span<const std::uint8_t> bytes);

/// True for a host of a URL that is written as such an address, in any spelling that a network library takes
/// ("127.1", "0x7f000001", "[::1]"), and for "localhost" and the names below it. Other names may still lead
/// to one.
[[nodiscard]] bool isPrivateHost(std::string_view host);

} // namespace quillmoth
