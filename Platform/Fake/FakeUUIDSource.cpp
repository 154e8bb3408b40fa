#include "Platform/Fake/FakeUUIDSource.h"

#include <cinttypes>
#include <cstdio>

namespace quillmoth::platform {

std::string FakeUUIDSource::uuid(std::uint64_t number) {
    char text[64];
    std::snprintf(text, sizeof text, "00000000-0000-4000-8000-%012" PRIX64, number & 0xFFFFFFFFFFFF);
    return text;
}

} // namespace quillmoth::platform
