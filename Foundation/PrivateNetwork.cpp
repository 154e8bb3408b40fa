#include "Foundation/PrivateNetwork.h"

#include "Foundation/ASCII.h"
#include "Foundation/URL.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <string>

namespace quillmoth {

namespace {

using Bytes = std::span<const std::uint8_t>;

struct IPv4Block {
    std::uint32_t first;
    int prefix;
};

/// What is not for all the world: the registry of RFC 6890 and what was added to it since.
constexpr std::array kPrivateIPv4{
    IPv4Block{0x00000000, 8},  // this network
    IPv4Block{0x0A000000, 8},  // private
    IPv4Block{0x64400000, 10}, // shared by a provider's customers
    IPv4Block{0x7F000000, 8},  // loopback
    IPv4Block{0xA9FE0000, 16}, // link-local
    IPv4Block{0xAC100000, 12}, // private
    IPv4Block{0xC0000000, 24}, // of protocols
    IPv4Block{0xC0A80000, 16}, // private
    IPv4Block{0xC6120000, 15}, // measurements
    IPv4Block{0xE0000000, 4},  // multicast
    IPv4Block{0xF0000000, 4},  // reserved, broadcast
};

bool isPrivateIPv4(Bytes bytes) {
    std::uint32_t address = 0;
    for (const std::uint8_t byte : bytes)
        address = address << 8 | byte;
    return std::ranges::any_of(kPrivateIPv4, [address](const IPv4Block& block) {
        return (address ^ block.first) >> (32 - block.prefix) == 0;
    });
}

bool startsWith(Bytes bytes, std::initializer_list<std::uint8_t> start) {
    return std::equal(start.begin(), start.end(), bytes.begin());
}

bool isPrivateIPv6(Bytes bytes) {
    if (startsWith(bytes, {0x00, 0x64, 0xFF, 0x9B, 0, 0, 0, 0, 0, 0, 0, 0})) // translated
        return isPrivateIPv4(bytes.subspan(12));
    if (startsWith(bytes, {0x20, 0x02})) // 6to4
        return isPrivateIPv4(bytes.subspan(2, 4));
    const bool isGlobal = (bytes[0] & 0xE0) == 0x20; // 2000::/3; loopback, mapped, local ones are outside
    return !isGlobal || startsWith(bytes, {0x20, 0x01, 0x00, 0x00}); // Teredo
}

} // namespace

bool isPrivateAddress(Bytes bytes) {
    if (bytes.size() == 4)
        return isPrivateIPv4(bytes);
    return bytes.size() != 16 || isPrivateIPv6(bytes);
}

bool isPrivateHost(std::string_view host) {
    std::string name = lowercasedASCII(percentDecoded(std::string(host)));
    if (name.ends_with('.'))
        name.pop_back();
    if (name.empty() || name == "localhost" || name.ends_with(".localhost"))
        return true;
    if (name.starts_with('[')) {
        std::array<std::uint8_t, sizeof(in6_addr)> bytes{};
        name = name.substr(1, name.find_first_of("%]") - 1);
        return inet_pton(AF_INET6, name.c_str(), bytes.data()) != 1 || isPrivateAddress(bytes);
    }
    in_addr address{};
    if (inet_aton(name.c_str(), &address) == 0)
        return false;
    return isPrivateAddress(std::bit_cast<std::array<std::uint8_t, sizeof(address)>>(address));
}

} // namespace quillmoth
