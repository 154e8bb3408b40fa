#include "Platform/Posix/RandomUUIDSource.h"

#include "Foundation/FatalError.h"

#include <algorithm>
#include <cerrno>
#include <sys/random.h>

namespace quillmoth::platform {

std::string RandomUUIDSource::makeUUID() {
    constexpr char kDigits[] = "0123456789ABCDEF";
    UUIDBytes bytes = takeBytes();
    // RFC 9562, 5.4: the version in the upper half of byte 6, the variant in the top bits of byte 8.
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);
    std::string text;
    text.reserve(36);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10)
            text += '-';
        text += kDigits[bytes[i] >> 4];
        text += kDigits[bytes[i] & 0x0F];
    }
    return text;
}

RandomUUIDSource::UUIDBytes RandomUUIDSource::takeBytes() {
    const std::lock_guard lock(mutex_);
    if (used_ == pool_.size())
        refill();
    UUIDBytes bytes;
    std::copy_n(pool_.begin() + static_cast<std::ptrdiff_t>(used_), kUUIDSize, bytes.begin());
    used_ += kUUIDSize;
    return bytes;
}

void RandomUUIDSource::refill() {
    std::size_t filled = 0;
    while (filled < pool_.size()) {
        const ssize_t count = getrandom(pool_.data() + filled, pool_.size() - filled, 0);
        if (count > 0)
            filled += static_cast<std::size_t>(count);
        else if (errno != EINTR)
            fatalError("The system gives no random numbers.");
    }
    used_ = 0;
}

} // namespace quillmoth::platform
