// Two texts, with a byte 0xFF between them: what is written over the first one must give the second one.

#include "Fuzz.h"

#include "Foundation/Text.h"
#include "Platform/Linux/AtSpi/TextDifference.h"

namespace quillmoth::fuzz {

namespace {

constexpr char kSeparator = '\xFF';

bool isCharacterAt(std::string_view text, std::size_t place) {
    return place == text.size() || (static_cast<unsigned char>(text[place]) & 0xC0U) != 0x80U;
}

std::string_view lastCharacter(std::string_view text) {
    std::size_t place = text.size() - 1;
    while (!isCharacterAt(text, place))
        --place;
    return text.substr(place);
}

std::string_view firstCodePoint(std::string_view text) {
    std::size_t end = 1;
    while (!isCharacterAt(text, end))
        ++end;
    return text.substr(0, end);
}

} // namespace

void check(std::string_view input) {
    const std::size_t middle = input.find(kSeparator);
    const std::string before = sanitizedUTF8(input.substr(0, middle));
    const std::string after =
        middle == std::string_view::npos ? before : sanitizedUTF8(input.substr(middle + 1));
    const auto difference = platform::differenceBetween(before, after);

    promise(difference.location + difference.oldLength <= before.size(), "within the old text");
    promise(difference.location + difference.newLength <= after.size(), "within the new text");
    const auto oldPart = std::string_view(before).substr(difference.location, difference.oldLength);
    const auto newPart = std::string_view(after).substr(difference.location, difference.newLength);
    std::string applied = before;
    applied.replace(difference.location, difference.oldLength, newPart);
    promise(applied == after, "the difference leads from the old text to the new one");
    promise(isValidUTF8(oldPart) && isValidUTF8(newPart), "cut between characters");
    promise(difference.empty() == (before == after), "none for equal texts alone");
    if (oldPart.empty() || newPart.empty())
        return;
    promise(firstCodePoint(oldPart) != firstCodePoint(newPart), "no longer than needed in front");
    promise(lastCharacter(oldPart) != lastCharacter(newPart), "no longer than needed behind");
}

} // namespace quillmoth::fuzz
