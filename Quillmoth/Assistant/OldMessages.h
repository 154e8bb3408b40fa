#pragma once

#include "Quillmoth/Chat/ChatRecords.h"

#include <string>
#include <string_view>
#include <vector>

namespace quillmoth {

/// One stored conversation.
struct oldMessagesStruct {
    /// One line, as the service wrote it, or one with the date.
    std::string topic;
    /// Oldest first.
    std::vector<ChatMessage> message;
    /// Seconds since 1970-01-01 00:00 UTC at the first storing.
    double created = 0;

    friend bool operator==(const oldMessagesStruct&, const oldMessagesStruct&) = default;
};

/// JSON text of an array of stored conversations. Fails where a text is not UTF-8.
[[nodiscard]] Result<std::string> writeJSON(const std::vector<oldMessagesStruct>& conversations);
/// Every message gets a new id.
[[nodiscard]] Result<std::vector<oldMessagesStruct>> readOldMessages(std::string_view json,
                                                                     platform::UUIDSource& uuidSource);

} // namespace quillmoth
