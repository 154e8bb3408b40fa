#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace quillmoth::highlighting {

enum class CharacterClass : std::uint8_t { other, blank, letter, digit };

/// Bytes outside ASCII count as letters: names may hold any script.
constexpr std::array<CharacterClass, 256> makeCharacterClasses() {
    std::array<CharacterClass, 256> classes{};
    for (std::size_t byte = 0; byte < classes.size(); ++byte) {
        const bool isLetter =
            (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || byte == '_' || byte >= 0x80;
        if (isLetter) {
            classes[byte] = CharacterClass::letter;
        } else if (byte >= '0' && byte <= '9') {
            classes[byte] = CharacterClass::digit;
        } else if (byte == ' ' || (byte >= '\t' && byte <= '\r')) {
            classes[byte] = CharacterClass::blank;
        }
    }
    return classes;
}

inline constexpr std::array<CharacterClass, 256> kCharacterClasses = makeCharacterClasses();

constexpr CharacterClass classOf(char byte) {
    return kCharacterClasses[static_cast<unsigned char>(byte)];
}

constexpr bool isBlank(char byte) {
    return classOf(byte) == CharacterClass::blank;
}

constexpr bool isWordByte(char byte) {
    return classOf(byte) == CharacterClass::letter || classOf(byte) == CharacterClass::digit;
}

constexpr bool isUpper(char byte) {
    return byte >= 'A' && byte <= 'Z';
}

} // namespace quillmoth::highlighting
