#include "Quillmoth/Chat/ChatRecords.h"

#include "Platform/UUIDSource.h"
#include "Quillmoth/Chat/ChatMessageJSON.h"

#include <utility>

namespace quillmoth {

ChatMessage makeChatMessage(platform::UUIDSource& uuidSource, std::string role, std::string content) {
    return {.id = uuidSource.makeUUID(), .role = std::move(role), .content = std::move(content)};
}

void makeMissingIDs(std::vector<ChatMessage>& messages, platform::UUIDSource& uuidSource) {
    for (ChatMessage& message : messages) {
        if (!message.id)
            message.id = uuidSource.makeUUID();
    }
}

} // namespace quillmoth
