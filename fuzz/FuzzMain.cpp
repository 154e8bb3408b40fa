#include "Fuzz.h"

#include "Foundation/Log.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Millions of inputs would fill the output with what the program says of them.
    static const quillmoth::ScopedLogCapture silence([](const std::string&) {});
    quillmoth::fuzz::check({reinterpret_cast<const char*>(data), size});
    return 0;
}
