#pragma once

#include "Quillmoth/Chat/ChatRecords.h"

#include <vector>

namespace quillmoth {

class JSONFields;
class JSONWriter;

// The JSON form of one message, for the records that hold messages.

void writeFields(JSONWriter& writer, const ChatMessage& message);

/// Leaves `id` absent where the text has none; see makeMissingIDs.
bool readFields(JSONFields& fields, ChatMessage& message);

void makeMissingIDs(std::vector<ChatMessage>& messages, platform::UUIDSource& uuidSource);

} // namespace quillmoth
