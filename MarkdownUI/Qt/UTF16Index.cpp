#include "MarkdownUI/Qt/UTF16Index.h"

#include "Foundation/ASCII.h"

#include <QStringDecoder>

#include <algorithm>

namespace quillmoth::markdown {

namespace {

/// The length of the character that starts at `start`, at least 1; what is ill-formed counts byte by byte.
std::size_t characterLength(std::string_view text, std::size_t start) {
    const auto lead = static_cast<unsigned char>(text[start]);
    const std::size_t expected = lead < 0xC2 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 1;
    for (std::size_t index = 1; index < expected; ++index) {
        const bool continues =
            start + index < text.size() && (static_cast<unsigned char>(text[start + index]) & 0xC0U) == 0x80U;
        if (!continues)
            return 1;
    }
    return expected;
}

} // namespace

UTF16Index::UTF16Index(std::string_view utf8) {
    if (isASCII(utf8)) {
        text_ = QString::fromLatin1(utf8.data(), static_cast<qsizetype>(utf8.size()));
        return;
    }
    bytes_.reserve(utf8.size() + 1);
    text_.reserve(static_cast<qsizetype>(utf8.size()));
    for (std::size_t start = 0; start < utf8.size();) {
        const std::size_t length = characterLength(utf8, start);
        const auto size = static_cast<qsizetype>(length);
        const bool isOneByte = length == 1;
        text_ += isOneByte && static_cast<signed char>(utf8[start]) >= 0
                     ? QString(QLatin1Char(utf8[start]))
                     : QString::fromUtf8(utf8.data() + start, size);
        bytes_.resize(static_cast<std::size_t>(text_.size()), static_cast<std::uint32_t>(start));
        start += length;
    }
    bytes_.push_back(static_cast<std::uint32_t>(utf8.size()));
}

int UTF16Index::utf16Of(std::size_t byte) const {
    if (bytes_.empty())
        return static_cast<int>(std::min(byte, static_cast<std::size_t>(text_.size())));
    const auto after = std::upper_bound(bytes_.begin(), bytes_.end(), byte);
    if (after == bytes_.end())
        return static_cast<int>(text_.size());
    // both halves of a surrogate pair have the byte of the character: take the first
    const auto first = std::lower_bound(bytes_.begin(), after, *(after - 1));
    return static_cast<int>(first - bytes_.begin());
}

std::size_t UTF16Index::byteOf(int utf16) const {
    const int offset = std::clamp(utf16, 0, static_cast<int>(text_.size()));
    return bytes_.empty() ? static_cast<std::size_t>(offset) : bytes_[static_cast<std::size_t>(offset)];
}

} // namespace quillmoth::markdown
