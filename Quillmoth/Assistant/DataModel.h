#pragma once

#include "Foundation/Published.h"
#include "Platform/Platform.h"
#include "Quillmoth/Assistant/AnswerStream.h"
#include "Quillmoth/Assistant/ConversationJournal.h"
#include "Quillmoth/Assistant/FloatingViewPanel.h"
#include "Quillmoth/Assistant/OldMessages.h"
#include "Quillmoth/Assistant/PresetFilter.h"
#include "Quillmoth/Chat/ChatRecords.h"
#include "Quillmoth/Prompts/ExtractedText.h"
#include "Quillmoth/Prompts/PromptModel.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillmoth {

enum class WriteResult;

/// The state of the assistant and all that can be done with it. One object, made at start and kept to the end
/// of the process; views read its fields and call its operations. Main thread only; no operation waits, but
/// for the accessibility calls of captureContext and replaceSelection. An index out of range is a fatal
/// fault.
///
/// Names that begin with an underscore and a capital are reserved to the implementation of the language; the
/// compilers in use accept them as members, and the published fields keep their names.
class DataModel final : public ObservableObject, public std::enable_shared_from_this<DataModel> {
public:
    static constexpr const char* kHistoryFilename = "QuillmothHistory.json";
    /// The row of the typed command, as an index.
    static constexpr std::int64_t kTypedCommand = -1;

    /// Loads the presets and the history, writes the presets file, and stores the conversations that the last
    /// end of the process has left open as the first of the history.
    [[nodiscard]] static std::shared_ptr<DataModel> create(const platform::Platform& platform);

    // Asking the service
    void runPrompt();
    [[nodiscard]] PromptData promptForIndex(std::int64_t index) const;
    void sendPrompt(std::string text);
    void regenerate();
    /// Adds a message with a new id to the conversation.
    void appendMessage(std::string role, std::string content);

    // History
    void archiveConversation();
    /// `journalKey` is that of the conversation in the journal, which gives it up once it is on the disk.
    void storeConversation(const std::string& topic, std::vector<ChatMessage> messages, std::int64_t index,
                           const std::string& journalKey = {});
    void storeConversationWithDate(std::vector<ChatMessage> messages, std::int64_t index,
                                   const std::string& journalKey = {});

    // Lists
    void refreshContextList();
    void refreshNonContextList();
    void refreshList();
    void filterPrompts(const std::string& search);
    void clampSelection();
    void selectNext();
    void selectPrevious();

    // Context
    void captureContext();
    void copyCapture();
    void finishCopyCapture(const std::optional<std::string>& saved);
    void dismissStep();
    /// Writes `text` over the selection of the front application. Says nothing to the user.
    WriteResult replaceSelection(const std::string& text) const;

    /// Says `words` where the user looks next, behind what is said there already, until a prompt is run: a
    /// file that cannot be read or written.
    void tell(const std::string& words);

    Published<std::string> _selectedValue{*this, "_selectedValue"};
    Published<std::string> _responseValue{*this, "_responseValue"};
    Published<std::string> _command{*this, "_command"};
    Published<std::shared_ptr<FloatingViewPanel>> _FloatingViewPanel{*this, "_FloatingViewPanel"};
    Published<std::shared_ptr<PromptModel>> _PromptM;
    Published<std::shared_ptr<EventSource>> _eventSource{*this, "_eventSource"};
    Published<bool> _openHistory{*this, "_openHistory", false};
    Published<bool> _isLoading{*this, "_isLoading", false};
    Published<bool> _isOnTopBinding{*this, "_isOnTopBinding", false};
    Published<bool> _browseHistory{*this, "_browseHistory", false};
    Published<bool> _isCancelRequest{*this, "_isCancelRequest", false};
    Published<bool> _nonContextPrompt{*this, "_nonContextPrompt", false};
    Published<bool> _isContext{*this, "_isContext", false};
    Published<std::vector<ExtractedText>> _extractedTexts{*this, "_extractedTexts"};
    Published<std::int64_t> _selectedIndex{*this, "_selectedIndex", 0};
    Published<std::int64_t> _hoverIndex{*this, "_hoverIndex", -1};
    Published<std::int64_t> _keyHistorySelected{*this, "_keyHistorySelected", 0};
    Published<std::int64_t> _keyHistoryHover{*this, "_keyHistoryHover", -1};
    Published<std::int64_t> _chatWithHistory{*this, "_chatWithHistory", -1};
    Published<std::string> _status{*this, "_status"};
    Published<std::string> _error{*this, "_error"};
    Published<std::vector<ChatMessage>> _messages{*this, "_messages"};
    Published<std::vector<oldMessagesStruct>> _oldMessages{*this, "_oldMessages"};
    Published<std::vector<std::int64_t>> _filteredData{*this, "_filteredData"};
    Published<std::optional<std::int64_t>> _focusField{*this, "_focusField"};
    Published<std::vector<std::int64_t>> _focusTemp{*this, "_focusTemp"};
    Published<bool> _didFocus{*this, "_didFocus", true};

    /// For create only.
    explicit DataModel(const platform::Platform& platform);

private:
    void followFiles();
    void recoverConversations();
    void saveHistory(std::vector<std::string> journalKeys);
    // runPrompt's ways
    void sendForm();
    void runWithoutContext();
    void runWithContext();
    /// Drops the conversation for one that is to come.
    void beginConversation(std::string systemPrompt);
    /// Makes `error` the `_error`, and leaves what is told of the files until a prompt is run.
    void tellOfCapture(const char* error);

    const platform::Platform platform_;
    /// What was told of the user's files since a prompt was run last; the journal may tell more in its
    /// destructor.
    std::string fileProblem_;
    DocumentFile history_;
    ConversationJournal journal_;
    AnswerStream answerStream_;
    PresetFilter presetFilter_;
    Subscription promptsSubscription_;
    Subscription arrangementSubscription_;
    Subscription presetsFault_;
    Subscription historyFault_;
};

} // namespace quillmoth
