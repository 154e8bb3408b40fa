#pragma once

#include "Foundation/Published.h"
#include "Platform/Platform.h"
#include "Quillmoth/Assistant/JournalLines.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace quillmoth {

/// Keeps the conversation on screen in a file while it grows, so that it survives any end of the process:
/// a new message at once, and a running answer each second. Only what is new is written, behind the end of
/// the file and in the background. A closed conversation stays until it is said to be stored; when nothing is
/// left the file goes. A part of the model, which makes it and keeps it. Main thread.
class ConversationJournal {
public:
    static constexpr const char* kFilename = "QuillmothOpen.jsonl";

    using Messages = Published<std::vector<ChatMessage>>;

    /// `fault` is told in words what cannot be kept.
    ConversationJournal(ObservableObject& model, const Messages& messages, const platform::Platform& platform,
                        std::function<void(const std::string& words)> fault);
    /// Writes what is not written yet.
    ~ConversationJournal();
    ConversationJournal(const ConversationJournal&) = delete;
    ConversationJournal& operator=(const ConversationJournal&) = delete;

    /// What the last end of the process has left. To be called first, and once.
    [[nodiscard]] std::vector<JournalledConversation> recover();

    /// The conversation as it is now is complete: what comes next belongs to another one. Answers with its
    /// key; empty where nothing is journalled.
    [[nodiscard]] std::string close();

    /// The conversation is on the disk elsewhere, or of no use.
    void stored(const std::string& key);

private:
    void messagesWillChange();
    void look();
    void record();
    void begin();
    void drop();
    void append(std::string text);
    void appended(const Result<void>& result);
    [[nodiscard]] std::string lines(std::size_t firstMessage) const;
    [[nodiscard]] std::optional<std::string> path(bool create);

    const Messages& messages_;
    const platform::Platform platform_;
    std::function<void(const std::string&)> fault_;
    Subscription subscription_;
    std::string filename_ = kFilename;
    /// Of the conversation on screen; empty for none.
    std::string key_;
    /// What is written of it.
    std::uint64_t generation_ = 0;
    std::size_t messageCount_ = 0;
    std::size_t lastLength_ = 0;
    bool needsAll_ = false;
    bool isLookScheduled_ = false;
    bool isSecondScheduled_ = false;
    bool hasToldFault_ = false;
    std::uint64_t nextNumber_ = 1;
    /// The conversations that the file holds.
    std::set<std::string> kept_;
    /// Gone with the object, before what is posted.
    std::shared_ptr<ConversationJournal*> alive_ = std::make_shared<ConversationJournal*>(this);
};

} // namespace quillmoth
