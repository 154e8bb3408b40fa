#include "Foundation/JSONWriter.h"

#include "Foundation/Text.h"

#include <charconv>
#include <cstdint>
#include <cstring>

namespace quillmoth {

namespace {

/// The two-character escape of `c`, or 0 where it has none.
char shortEscape(char c) {
    switch (c) {
    case '"':
    case '\\':
        return c;
    case '\b':
        return 'b';
    case '\f':
        return 'f';
    case '\n':
        return 'n';
    case '\r':
        return 'r';
    case '\t':
        return 't';
    default:
        return 0;
    }
}

bool isEscaped(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == '"' || c == '\\';
}

/// The place of the first byte from `place` on that is escaped; the length of the text where there is none.
std::size_t nextEscaped(std::string_view text, std::size_t place) {
    // Eight bytes at once: a subtraction borrows into the top bit of those that are too small.
    constexpr std::uint64_t kEach = 0x0101010101010101;
    constexpr std::uint64_t kTops = 0x8080808080808080;
    for (; place + sizeof(std::uint64_t) <= text.size(); place += sizeof(std::uint64_t)) {
        std::uint64_t bytes = 0;
        std::memcpy(&bytes, text.data() + place, sizeof bytes);
        const std::uint64_t quotes = bytes ^ (kEach * '"');
        const std::uint64_t backslashes = bytes ^ (kEach * '\\');
        const std::uint64_t hits = ((bytes - kEach * 0x20) & ~bytes) | ((quotes - kEach) & ~quotes) |
                                   ((backslashes - kEach) & ~backslashes);
        if ((hits & kTops) != 0)
            break;
    }
    while (place < text.size() && !isEscaped(text[place]))
        ++place;
    return place;
}

void appendEscaped(std::string& output, std::string_view text) {
    constexpr char kHexadecimal[] = "0123456789abcdef";
    std::size_t plain = 0;
    for (std::size_t i = nextEscaped(text, 0); i < text.size(); i = nextEscaped(text, plain)) {
        const char c = text[i];
        output.append(text.substr(plain, i - plain));
        plain = i + 1;
        output += '\\';
        if (const char letter = shortEscape(c)) {
            output += letter;
        } else {
            output.append("u00");
            output += kHexadecimal[(c >> 4) & 0xF];
            output += kHexadecimal[c & 0xF];
        }
    }
    output.append(text.substr(plain));
}

template<class Number>
void appendNumber(std::string& output, Number number) {
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, number);
    output.append(buffer, result.ptr);
}

} // namespace

void JSONWriter::separate() {
    if (needsComma_)
        output_ += ',';
    needsComma_ = true;
}

void JSONWriter::beginObject() {
    separate();
    output_ += '{';
    needsComma_ = false;
}

void JSONWriter::endObject() {
    output_ += '}';
    needsComma_ = true;
}

void JSONWriter::beginArray() {
    separate();
    output_ += '[';
    needsComma_ = false;
}

void JSONWriter::endArray() {
    output_ += ']';
    needsComma_ = true;
}

void JSONWriter::key(std::string_view name) {
    value(name);
    output_ += ':';
    needsComma_ = false;
}

void JSONWriter::value(std::string_view text) {
    separate();
    output_ += '"';
    if (isValidUTF8(text)) {
        appendEscaped(output_, text);
    } else {
        appendEscaped(output_, sanitizedUTF8(text));
        hasReplacedText_ = true;
    }
    output_ += '"';
}

void JSONWriter::value(bool boolean) {
    separate();
    output_.append(boolean ? "true" : "false");
}

void JSONWriter::value(std::int64_t number) {
    separate();
    appendNumber(output_, number);
}

void JSONWriter::value(double number) {
    separate();
    appendNumber(output_, number);
}

void JSONWriter::value(float number) {
    separate();
    appendNumber(output_, number);
}

} // namespace quillmoth
