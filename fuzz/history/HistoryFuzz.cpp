// The file of stored conversations, through the model.

#include "Fuzz.h"

#include "Platform/Fake/FakePlatform.h"
#include "Quillmoth/Assistant/DataModel.h"

#include <algorithm>

namespace quillmoth::fuzz {

namespace {

using Conversations = std::vector<oldMessagesStruct>;

/// Each reading gives new ids.
Conversations withoutIDs(Conversations conversations) {
    for (oldMessagesStruct& conversation : conversations) {
        for (ChatMessage& message : conversation.message)
            message.id.reset();
    }
    return conversations;
}

void checkContent(const Conversations& read, platform::UUIDSource& ids) {
    for (const oldMessagesStruct& conversation : read) {
        for (const ChatMessage& message : conversation.message)
            promise(message.id.has_value(), "each message has an id");
    }
    const auto json = writeJSON(read);
    promise(static_cast<bool>(json), "what was read can be written");
    const auto again = readOldMessages(*json, ids);
    promise(again && withoutIDs(*again) == withoutIDs(read), "what was written reads as it was");
}

void checkStart(std::string_view input, const Result<Conversations>& read, platform::FakePlatform& platform) {
    platform.documents.put(DataModel::kHistoryFilename, std::string(input));
    auto model = DataModel::create(platform.platform());
    const Conversations found = read ? withoutIDs(*read) : Conversations();
    promise(withoutIDs(model->_oldMessages) == found, "the conversations of the file");

    // A conversation is stored on top of them.
    model->storeConversation("topic", {makeChatMessage(platform.uuidSource, "user", "question")}, -1);
    platform.runUntilIdle();
    const auto& files = platform.documents.files;
    const bool isKept =
        std::any_of(files.begin(), files.end(), [&](const auto& file) { return file.second == input; });
    promise(read || input.empty() || isKept, "what cannot be read is kept");
    const Conversations stored = withoutIDs(model->_oldMessages);
    promise(stored.size() == found.size() + 1, "one more is stored");
    model = DataModel::create(platform.platform());
    promise(withoutIDs(model->_oldMessages) == stored, "the next start finds them all");
}

} // namespace

void check(std::string_view input) {
    platform::FakePlatform platform;
    const auto read = readOldMessages(input, platform.uuidSource);
    if (read)
        checkContent(*read, platform.uuidSource);
    // A start takes long, and most damaged files are alike to it.
    if (read || std::hash<std::string_view>()(input) % 8 == 0)
        checkStart(input, read, platform);
}

} // namespace quillmoth::fuzz
