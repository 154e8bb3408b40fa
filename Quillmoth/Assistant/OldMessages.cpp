#include "Quillmoth/Assistant/OldMessages.h"

#include "Foundation/JSONReader.h"
#include "Foundation/JSONWriter.h"
#include "Quillmoth/Chat/ChatMessageJSON.h"

namespace quillmoth {

static bool visitFields(auto& fields, RecordOf<oldMessagesStruct> auto& conversation) {
    return fields.required("topic", conversation.topic) && fields.required("message", conversation.message) &&
           fields.required("created", conversation.created);
}

/// The length of the JSON text, with an eighth on top for escapes: growing a large text would copy it, and
/// pages that stay unused cost nothing.
static std::size_t expectedSize(const std::vector<oldMessagesStruct>& conversations) {
    constexpr std::size_t kConversation = 64;
    constexpr std::size_t kMessage = 32;
    std::size_t size = 2;
    for (const oldMessagesStruct& conversation : conversations) {
        size += kConversation + conversation.topic.size();
        for (const ChatMessage& message : conversation.message)
            size += kMessage + message.role.size() + message.content.size();
    }
    return size + size / 8;
}

Result<std::string> writeJSON(const std::vector<oldMessagesStruct>& conversations) {
    return writeJSONText(conversations, expectedSize(conversations));
}

Result<std::vector<oldMessagesStruct>> readOldMessages(std::string_view json,
                                                       platform::UUIDSource& uuidSource) {
    auto conversations = readJSONArray<oldMessagesStruct>(json);
    if (conversations) {
        for (oldMessagesStruct& conversation : *conversations)
            makeMissingIDs(conversation.message, uuidSource);
    }
    return conversations;
}

} // namespace quillmoth
