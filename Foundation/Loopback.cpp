#include "Foundation/Loopback.h"

#include "Foundation/ASCII.h"

#include <array>
#include <charconv>
#include <system_error>

namespace quillmoth {

namespace {

/// True for 127.0.0.0/8 as it is usually written.
bool isLoopbackIPv4(std::string_view host) {
    std::array<int, 4> bytes{};
    const char* at = host.data();
    const char* const end = host.data() + host.size();
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i > 0 && (at == end || *at++ != '.'))
            return false;
        // A zero in front would make it an octal number to some.
        if (at == end || !isASCIIDigit(*at) || (*at == '0' && at + 1 != end && isASCIIDigit(at[1])))
            return false;
        const auto read = std::from_chars(at, end, bytes[i]);
        if (read.ec != std::errc() || bytes[i] > 255)
            return false;
        at = read.ptr;
    }
    return at == end && bytes[0] == 127;
}

} // namespace

bool isLoopbackHost(std::string_view host) {
    return equalIgnoringASCIICase(host, "localhost") || host == "[::1]" || isLoopbackIPv4(host);
}

} // namespace quillmoth
