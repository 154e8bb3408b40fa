#pragma once

#include "Foundation/FatalError.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// What the targets share. A target is one program: it defines check(), which the fuzzer calls with one input
/// after the other. Whatever goes wrong there ends the process, and the fuzzer keeps the input.
namespace quillmoth::fuzz {

/// Tries one input. Defined by each target; must depend on the input alone.
void check(std::string_view input);

/// What must hold for every input.
inline void promise(bool holds, const char* rule) {
    if (!holds)
        fatalError(std::string("Broken: ") + rule);
}

/// Splits an input into several: at each byte `separator`, which is no part of them.
inline std::vector<std::string_view> split(std::string_view input, char separator) {
    std::vector<std::string_view> parts;
    for (std::size_t end = input.find(separator); end != std::string_view::npos;
         end = input.find(separator)) {
        parts.push_back(input.substr(0, end));
        input.remove_prefix(end + 1);
    }
    parts.push_back(input);
    return parts;
}

} // namespace quillmoth::fuzz
