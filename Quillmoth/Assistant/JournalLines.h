#pragma once

#include "Quillmoth/Chat/ChatRecords.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmoth {

/// One line of the journal: what has happened to a conversation. With `created` the conversation begins, or
/// begins again; `role` and `content` are its next message, `more` goes behind its last one, and after `done`
/// the conversation is elsewhere or has gone.
struct JournalLine {
    std::string conversation;
    std::optional<double> created = {};
    std::optional<std::string> role = {};
    std::optional<std::string> content = {};
    std::optional<std::string> more = {};
    std::optional<bool> done = {};
};

/// The line with its line feed. Ill-formed UTF-8 becomes U+FFFD.
[[nodiscard]] std::string journalText(const JournalLine& line);

/// A conversation that the journal holds.
struct JournalledConversation {
    std::string key;
    /// Seconds since 1970-01-01 00:00 UTC.
    double created = 0;
    std::vector<ChatMessage> messages = {};
};

struct JournalContent {
    /// In the order in which they were begun.
    std::vector<JournalledConversation> conversations = {};
    /// Lines that could not be read; an incomplete last one does not count.
    std::size_t damagedLines = 0;
};

/// Reads as much as can be read. The messages get new ids.
[[nodiscard]] JournalContent readJournal(std::string_view text, platform::UUIDSource& uuidSource);

} // namespace quillmoth
