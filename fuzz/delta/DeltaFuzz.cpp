// The pieces of one streamed answer, one a part of the input: the reader that remembers the former piece
// against the reading of each piece alone.

#include "Fuzz.h"

#include "Quillmoth/Chat/ChatDeltaReader.h"

namespace quillmoth::fuzz {

namespace {

// No bytes of a JSON text.
constexpr char kBetweenForms = '\x1E';
constexpr char kAroundContents = '\x1F';

std::vector<std::string> piecesOf(std::string_view form) {
    const auto parts = split(form, kAroundContents);
    if (parts.size() < 3)
        return {std::string(form)};
    std::vector<std::string> pieces;
    for (std::size_t i = 1; i + 1 < parts.size(); ++i)
        pieces.push_back(std::string(parts.front()).append(parts[i]).append(parts.back()));
    return pieces;
}

void checkPiece(ChatDeltaReader& reader, const std::string& bytes) {
    // In a buffer of just its length, so that a read beyond it is noticed.
    const std::vector<char> exact(bytes.begin(), bytes.end());
    const std::string_view piece(exact.data(), exact.size());
    const auto expected = readChatResponseDelta(piece);
    const ChatResponseDelta* delta = reader.read(piece);
    promise((delta != nullptr) == static_cast<bool>(expected), "read where the whole piece is readable");
    promise(expected || !expected.error().description.empty(), "what is not read is told");
    if (delta == nullptr)
        return;
    promise(*delta == *expected, "what the whole piece says");
    const auto written = writeJSON(*delta);
    promise(static_cast<bool>(written), "what was read can be written");
    const auto again = readChatResponseDelta(*written);
    promise(again && *again == *delta, "what was written reads as it was");
}

} // namespace

void check(std::string_view input) {
    ChatDeltaReader reader;
    for (const std::string_view form : split(input, kBetweenForms)) {
        for (const std::string& piece : piecesOf(form))
            checkPiece(reader, piece);
    }
}

} // namespace quillmoth::fuzz
