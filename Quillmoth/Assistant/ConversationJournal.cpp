#include "Quillmoth/Assistant/ConversationJournal.h"

#include "Foundation/Log.h"
#include "Platform/Clock.h"
#include "Platform/Documents.h"
#include "Platform/MainQueue.h"
#include "Quillmoth/Prompts/DocumentFolder.h"

#include <utility>

namespace quillmoth {

namespace {

/// How long a new message waits: what follows it at once goes with it.
constexpr platform::MainQueue::Seconds kMessagePause(0.05);
/// How much of a running answer an end of the process may take.
constexpr platform::MainQueue::Seconds kAnswerPause(1);
/// More journals that cannot be read than these are not passed over.
constexpr int kMostUnread = 100;

} // namespace

ConversationJournal::ConversationJournal(ObservableObject& model, const Messages& messages,
                                         const platform::Platform& platform,
                                         std::function<void(const std::string& words)> fault)
    : messages_(messages), platform_(platform), fault_(std::move(fault)),
      subscription_(model.objectWillChange([this](std::string_view field) {
          if (field == messages_.name())
              messagesWillChange();
      })) {}

ConversationJournal::~ConversationJournal() {
    record();
}

std::vector<JournalledConversation> ConversationJournal::recover() {
    for (int number = 2; number < kMostUnread; ++number) {
        const auto file = path(false);
        if (!file || !platform_.documents.fileExists(*file))
            return {};
        if (const auto text = platform_.documents.readFile(*file)) {
            JournalContent content = readJournal(*text, platform_.uuidSource);
            if (content.damagedLines > 0)
                (void)keepDamaged(filename_, *text, platform_.documents);
            for (const JournalledConversation& each : content.conversations)
                kept_.insert(each.key);
            return std::move(content.conversations);
        }
        logLine("The open conversation in \"" + *file + "\" cannot be read. It stays as it is.");
        filename_ = kFilename + std::string(".") + std::to_string(number);
    }
    return {};
}

std::string ConversationJournal::close() {
    record();
    return std::exchange(key_, {});
}

void ConversationJournal::stored(const std::string& key) {
    if (kept_.erase(key) == 0)
        return;
    if (!kept_.empty()) {
        append(journalText({.conversation = key, .done = true}));
        return;
    }
    if (const auto file = path(false))
        platform_.documents.removeFile(*file, [](const Result<void>&) {});
}

void ConversationJournal::messagesWillChange() {
    if (std::exchange(isLookScheduled_, true))
        return;
    platform_.mainQueue.asyncAfter(kMessagePause, [weak = std::weak_ptr(alive_)] {
        if (const auto journal = weak.lock())
            (*journal)->look();
    });
}

/// A running answer alone can wait longer.
void ConversationJournal::look() {
    isLookScheduled_ = false;
    const bool hasGrownInLength = !key_.empty() && generation_ == messages_.generation() &&
                                  messageCount_ == messages_->size() && !needsAll_;
    if (!hasGrownInLength) {
        record();
        return;
    }
    if (std::exchange(isSecondScheduled_, true))
        return;
    platform_.mainQueue.asyncAfter(kAnswerPause, [weak = std::weak_ptr(alive_)] {
        if (const auto journal = weak.lock()) {
            (*journal)->isSecondScheduled_ = false;
            (*journal)->record();
        }
    });
}

void ConversationJournal::record() {
    if (messages_->empty()) {
        drop();
        return;
    }
    const bool isWritten = !key_.empty() && generation_ == messages_.generation() && !needsAll_;
    if (!isWritten)
        begin();
    else if (messageCount_ < messages_->size() || lastLength_ < messages_->back().content.size())
        append(lines(messageCount_));
    generation_ = messages_.generation();
    messageCount_ = messages_->size();
    lastLength_ = messages_->back().content.size();
}

/// Writes the whole conversation, in the place of what is written of it or of one that the user has replaced.
void ConversationJournal::begin() {
    if (key_.empty())
        key_ = messages_->front().id.value_or("") + "-" + std::to_string(nextNumber_++);
    kept_.insert(key_);
    needsAll_ = false;
    messageCount_ = 0;
    lastLength_ = 0;
    // Begins a line of its own, should one that could not be written to its end stand before it.
    append('\n' + journalText({.conversation = key_, .created = platform_.clock.secondsSince1970()}) +
           lines(0));
}

void ConversationJournal::drop() {
    if (!key_.empty())
        stored(std::exchange(key_, {}));
}

/// What there is to say of the messages behind `firstMessage`, and of the length of the one before it.
std::string ConversationJournal::lines(std::size_t firstMessage) const {
    std::string text;
    if (firstMessage > 0 && lastLength_ < (*messages_)[firstMessage - 1].content.size())
        text = journalText(
            {.conversation = key_, .more = (*messages_)[firstMessage - 1].content.substr(lastLength_)});
    for (std::size_t place = firstMessage; place < messages_->size(); ++place) {
        const ChatMessage& message = (*messages_)[place];
        text += journalText({.conversation = key_, .role = message.role, .content = message.content});
    }
    return text;
}

void ConversationJournal::append(std::string text) {
    const auto file = path(true);
    if (!file)
        return;
    platform_.documents.appendToFile(*file, std::move(text),
                                     [weak = std::weak_ptr(alive_)](const Result<void>& result) {
                                         if (const auto journal = weak.lock())
                                             (*journal)->appended(result);
                                     });
}

void ConversationJournal::appended(const Result<void>& result) {
    if (result) {
        hasToldFault_ = false;
        return;
    }
    needsAll_ = true;
    logLine("The open conversation was not kept. " + result.error().description);
    if (!std::exchange(hasToldFault_, true))
        fault_("This conversation is not kept on the disk while it is open. " + result.error().description +
               ". It is stored when it is closed, if that can be written.");
}

std::optional<std::string> ConversationJournal::path(bool create) {
    const auto file = documentPath(filename_, platform_.documents);
    if (!file)
        return std::nullopt;
    if (create && !platform_.documents.fileExists(*file)) {
        const auto directory = platform_.documents.documentsDirectory(true);
        if (!directory || !platform_.documents.createDirectory(file->substr(0, file->rfind('/')))) {
            appended(Error{directory ? "Its folder cannot be made" : directory.error().description});
            return std::nullopt;
        }
    }
    return *file;
}

} // namespace quillmoth
