// Markdown through document, layout, text and hit tests. Whatever goes wrong ends the process: run it under
// the sanitizers. Inputs come from clang's fuzzer where that is linked, else from GeneratedInputs.cpp.

#include "Foundation/FatalError.h"

#include "DocumentCheck.h"

#include <cstdint>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quillmoth::markdown;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    // The same text gets the same checks.
    const std::uint64_t seed = std::hash<std::string_view>()(text);
    std::string fault = faultOfDocument(text, seed);
    if (fault.empty() && seed % 4 == 0)
        fault = faultOfLaziness(text, seed);
    if (fault.empty() && seed % 4 == 1)
        fault = faultOfStream(text, seed);
    if (!fault.empty())
        quillmoth::fatalError(fault);
    return 0;
}
