// Markdown through document, layout, text and hit tests.

#include "Fuzz.h"

#include "DocumentCheck.h"

#include <cstdint>

namespace quillmoth::fuzz {

void check(std::string_view input) {
    // The same text gets the same checks.
    const std::uint64_t seed = std::hash<std::string_view>()(input);
    std::string fault = markdown::faultOfDocument(input, seed);
    if (fault.empty() && seed % 4 == 0)
        fault = markdown::faultOfLaziness(input, seed);
    if (fault.empty() && seed % 4 == 1)
        fault = markdown::faultOfStream(input, seed);
    promise(fault.empty(), fault.c_str());
}

} // namespace quillmoth::fuzz
