#include "Foundation/Text.h"

#include "Foundation/ASCII.h"

#include <simdjson.h>
#include <unicode/brkiter.h>
#include <unicode/normalizer2.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <limits>
#include <memory>

namespace quillmoth {

namespace {

std::int32_t length32(std::string_view text) {
    return static_cast<std::int32_t>(
        std::min<std::size_t>(text.size(), std::numeric_limits<std::int32_t>::max()));
}

icu::UnicodeString toUTF16(std::string_view text) {
    return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), length32(text)));
}

/// The code point at `offset`, which moves behind it; negative where the bytes are ill-formed.
UChar32 nextCodePoint(std::string_view text, std::int32_t& offset) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    UChar32 codePoint = 0;
    U8_NEXT(bytes, offset, length32(text), codePoint);
    return codePoint;
}

std::unique_ptr<icu::BreakIterator> makeCharacterIterator() {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::BreakIterator> iterator(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    return U_SUCCESS(status) ? std::move(iterator) : nullptr;
}

/// One for each thread: to make the first one takes milliseconds.
icu::BreakIterator* characterIterator() {
    thread_local const std::unique_ptr<icu::BreakIterator> iterator = makeCharacterIterator();
    // The iterator lives as long as the thread.
    return iterator.get(); // NOLINT(clang-analyzer-cplusplus.NewDelete)
}

/// ASCII joins to longer characters in one place alone, the end of a line as CR and LF.
std::vector<std::string_view> charactersOfASCII(std::string_view text) {
    std::vector<std::string_view> result;
    result.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = text.starts_with("\r\n") ? 2 : 1;
        result.push_back(text.substr(0, length));
        text.remove_prefix(length);
    }
    return result;
}

/// Byte offset of the UTF-16 offset `target`; within a surrogate pair the offset of its start, or of its end.
std::size_t byteOffset(std::string_view text, std::size_t target, bool roundUp) {
    std::size_t units = 0;
    std::int32_t offset = 0;
    while (units < target && offset < length32(text)) {
        const std::int32_t start = offset;
        const UChar32 codePoint = nextCodePoint(text, offset);
        units += codePoint > 0xFFFF ? 2 : 1;
        if (units > target && !roundUp)
            return static_cast<std::size_t>(start);
    }
    return static_cast<std::size_t>(offset);
}

} // namespace

bool isValidUTF8(std::string_view text) {
    return simdjson::validate_utf8(text);
}

std::string sanitizedUTF8(std::string_view text) {
    if (isValidUTF8(text))
        return std::string(text);
    std::string result;
    toUTF16(text).toUTF8String(result);
    return result;
}

std::vector<std::string_view> characters(std::string_view text) {
    if (isASCII(text))
        return charactersOfASCII(text);
    std::vector<std::string_view> result;
    UErrorCode status = U_ZERO_ERROR;
    UText* utext = utext_openUTF8(nullptr, text.data(), static_cast<std::int64_t>(text.size()), &status);
    icu::BreakIterator* iterator = characterIterator();
    if (iterator != nullptr && utext != nullptr) {
        iterator->setText(utext, status);
        std::int32_t start = iterator->first();
        for (std::int32_t end = iterator->next(); end != icu::BreakIterator::DONE; end = iterator->next()) {
            result.push_back(
                text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start)));
            start = end;
        }
    }
    utext_close(utext);
    return result;
}

std::string_view prefixOfBytes(std::string_view text, std::size_t size) {
    constexpr unsigned kContinuationMask = 0xC0;
    constexpr unsigned kContinuation = 0x80;
    // A code point has at most three of them; more are ill-formed, and may be cut anywhere.
    constexpr int kMostContinuations = 3;
    if (size >= text.size())
        return text;
    std::size_t end = size;
    for (int step = 0; step < kMostContinuations && end > 0; ++step) {
        if ((static_cast<unsigned char>(text[end]) & kContinuationMask) != kContinuation)
            break;
        --end;
    }
    return text.substr(0, end);
}

std::string_view firstCharacter(std::string_view text) {
    // No character in use is longer than this; the bound keeps the cost independent of the text's length.
    constexpr std::size_t kLongest = 256;
    const auto found = characters(text.substr(0, kLongest));
    return found.empty() ? std::string_view() : text.substr(0, found.front().size());
}

std::string uppercased(std::string_view text) {
    std::string result(text);
    if (isASCII(text)) {
        for (char& c : result) {
            if (c >= 'a' && c <= 'z')
                c = static_cast<char>(c - 'a' + 'A');
        }
        return result;
    }
    icu::UnicodeString upper = toUTF16(text);
    upper.toUpper(icu::Locale::getRoot());
    result.clear();
    return upper.toUTF8String(result);
}

bool canonicallyEqual(std::string_view first, std::string_view second) {
    if (first == second)
        return true;
    // Normalising makes a text three times as long, or as short, at most (UAX #15, section 14).
    constexpr std::size_t kFactor = 9;
    const bool areComparable =
        first.size() <= kFactor * second.size() && second.size() <= kFactor * first.size();
    if (!areComparable || (isASCII(first) && isASCII(second)))
        return false;
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* nfc = icu::Normalizer2::getNFCInstance(status);
    return U_SUCCESS(status) &&
           nfc->normalize(toUTF16(first), status) == nfc->normalize(toUTF16(second), status);
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\n";
    const auto start = text.find_first_not_of(kBlanks);
    if (start == std::string_view::npos)
        return {};
    return text.substr(start, text.find_last_not_of(kBlanks) - start + 1);
}

std::size_t utf16Length(std::string_view text) {
    std::size_t units = 0;
    for (std::int32_t offset = 0; offset < length32(text);)
        units += nextCodePoint(text, offset) > 0xFFFF ? 2 : 1;
    return units;
}

std::string replacingUTF16Range(std::string_view text, std::size_t location, std::size_t length,
                                std::string_view replacement) {
    const std::size_t start = byteOffset(text, location, false);
    const std::size_t end = std::max(start, byteOffset(text, location + length, length > 0));
    std::string result;
    result.reserve(start + replacement.size() + (text.size() - end));
    result.append(text.substr(0, start)).append(replacement).append(text.substr(end));
    return result;
}

std::string replacingAll(std::string_view text, std::string_view search, std::string_view replacement) {
    std::string result;
    std::size_t start = 0;
    for (std::size_t found = text.find(search); found != std::string_view::npos;
         found = text.find(search, start)) {
        result.append(text.substr(start, found - start)).append(replacement);
        start = found + search.size();
    }
    return result.append(text.substr(start));
}

} // namespace quillmoth
