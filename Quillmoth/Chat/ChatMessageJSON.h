#pragma once

#include "Foundation/JSONRecord.h"
#include "Quillmoth/Chat/ChatRecords.h"

#include <vector>

namespace quillmoth {

// The JSON form of one message, for the records that hold messages.

bool visitFields(auto& fields, RecordOf<ChatMessage> auto& message) {
    return fields.required("role", message.role) && fields.required("content", message.content) &&
           fields.ignoredOnWrite("id", message.id);
}

/// Reading leaves an `id` absent that the text does not have.
void makeMissingIDs(std::vector<ChatMessage>& messages, platform::UUIDSource& uuidSource);

} // namespace quillmoth
