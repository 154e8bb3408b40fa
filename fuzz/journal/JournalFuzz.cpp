// The journal of the open conversation: read, written anew, cut off, and through the model of the next start.

#include "Fuzz.h"

#include "Foundation/Text.h"
#include "Platform/Fake/FakePlatform.h"
#include "Quillmoth/Assistant/DataModel.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace quillmoth::fuzz {

namespace {

using Conversations = std::vector<JournalledConversation>;

bool sameWords(const std::vector<ChatMessage>& first, const std::vector<ChatMessage>& second) {
    return std::equal(first.begin(), first.end(), second.begin(), second.end(),
                      [](const ChatMessage& one, const ChatMessage& other) {
                          return one.role == other.role && one.content == other.content;
                      });
}

bool same(const Conversations& first, const Conversations& second) {
    return std::equal(first.begin(), first.end(), second.begin(), second.end(),
                      [](const auto& one, const auto& other) {
                          return one.key == other.key && one.created == other.created &&
                                 sameWords(one.messages, other.messages);
                      });
}

/// As a conversation is journalled whose messages come in two halves.
std::string linesOf(const JournalledConversation& conversation) {
    std::string text = journalText({.conversation = conversation.key, .created = conversation.created});
    for (const ChatMessage& message : conversation.messages) {
        std::size_t half = message.content.size() / 2;
        while (!isValidUTF8(std::string_view(message.content).substr(0, half)))
            --half;
        text += journalText({.conversation = conversation.key,
                             .role = message.role,
                             .content = message.content.substr(0, half)});
        text += journalText({.conversation = conversation.key, .more = message.content.substr(half)});
    }
    return text;
}

void checkContent(std::string_view input, const JournalContent& content, platform::UUIDSource& ids) {
    std::set<std::string> keys;
    std::string rewritten;
    for (const JournalledConversation& conversation : content.conversations) {
        promise(keys.insert(conversation.key).second, "each conversation is there once");
        rewritten += linesOf(conversation);
    }
    const JournalContent again = readJournal(rewritten, ids);
    promise(again.damagedLines == 0 && same(again.conversations, content.conversations),
            "what was written reads as it was");

    // Whatever stands there, and wherever it was broken off: what is appended as a new start does is found.
    const JournalledConversation open{
        .key = "fuzzed",
        .created = 1,
        .messages = {makeChatMessage(ids, "user", "question"), makeChatMessage(ids, "assistant", "answer")}};
    const std::string lines = "\n" + linesOf(open);
    // Twice, as where it is written anew behind a failure.
    const auto appended = readJournal(std::string(input) + lines + lines, ids).conversations;
    const auto found = std::find_if(appended.begin(), appended.end(),
                                    [&](const auto& each) { return each.key == open.key; });
    promise(found != appended.end() && same({*found}, {open}), "what is appended is found");

    // An end of the process in the middle of a line takes no more than that line.
    const std::size_t lastLine = input.rfind('\n') + 1;
    const JournalContent complete = readJournal(input.substr(0, lastLine), ids);
    const bool isTailOfUse = readJournal(std::string(input.substr(lastLine)) + "\n", ids).damagedLines == 0;
    promise(isTailOfUse || same(complete.conversations, content.conversations), "complete lines are kept");
}

/// The clock of the fake has no further days.
bool isWithinTheCalendar(double seconds) {
    return std::abs(seconds) < 3e11;
}

void checkNextStart(std::string_view input, const JournalContent& content, platform::FakePlatform& platform) {
    platform.documents.put(ConversationJournal::kFilename, std::string(input));
    const auto& [conversations, damagedLines] = content;
    for (const JournalledConversation& each : conversations) {
        if (!isWithinTheCalendar(each.created))
            return;
    }
    for (int start = 0; start < 2; ++start) {
        const auto model = DataModel::create(platform.platform());
        platform.runUntilIdle();
        std::size_t answered = 0;
        for (const JournalledConversation& each : conversations) {
            const bool isAnswered =
                std::any_of(each.messages.begin(), each.messages.end(), [](const ChatMessage& message) {
                    return message.role == "assistant" && !message.content.empty();
                });
            answered += isAnswered ? 1 : 0;
            const bool isStored = std::any_of(
                model->_oldMessages->begin(), model->_oldMessages->end(),
                [&](const oldMessagesStruct& stored) { return sameWords(stored.message, each.messages); });
            promise(isStored == isAnswered, "an answered conversation is in the history");
        }
        promise(model->_oldMessages->size() <= answered, "and is there once");
        const auto& files = platform.documents.files;
        const bool isKept =
            std::any_of(files.begin(), files.end(), [&](const auto& file) { return file.second == input; });
        promise(damagedLines == 0 || isKept, "what cannot be read is kept");
    }
}

} // namespace

void check(std::string_view input) {
    platform::FakePlatform platform;
    const JournalContent content = readJournal(input, platform.uuidSource);
    checkContent(input, content, platform.uuidSource);
    // A start takes long.
    if (!content.conversations.empty())
        checkNextStart(input, content, platform);
}

} // namespace quillmoth::fuzz
