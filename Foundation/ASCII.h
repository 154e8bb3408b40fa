#pragma once

#include <algorithm>
#include <string>
#include <string_view>

/// What protocols and file formats know of letters: those of ASCII alone, in every locale.
namespace quillmoth {

[[nodiscard]] constexpr bool isASCII(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

[[nodiscard]] constexpr bool isASCIICapital(char c) {
    return c >= 'A' && c <= 'Z';
}

[[nodiscard]] constexpr bool isASCIIDigit(char c) {
    return c >= '0' && c <= '9';
}

[[nodiscard]] constexpr bool isASCIILetterOrDigit(char c) {
    return isASCIICapital(c) || (c >= 'a' && c <= 'z') || isASCIIDigit(c);
}

[[nodiscard]] constexpr char lowercasedASCII(char c) {
    return isASCIICapital(c) ? static_cast<char>(c - 'A' + 'a') : c;
}

[[nodiscard]] inline std::string lowercasedASCII(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), [](char c) { return lowercasedASCII(c); });
    return result;
}

/// As names of header fields, schemes and hosts compare (RFC 9110, section 5.1; RFC 3986, section 6.2.2.1).
[[nodiscard]] constexpr bool equalIgnoringASCIICase(std::string_view first, std::string_view second) {
    return std::equal(first.begin(), first.end(), second.begin(), second.end(),
                      [](char a, char b) { return lowercasedASCII(a) == lowercasedASCII(b); });
}

} // namespace quillmoth
