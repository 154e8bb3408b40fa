// A 200 promises an answer. What is missing of it is told when the stream has ended.

#include "Quillmoth/Assistant/DataModel.h"

#include <algorithm>
#include <string_view>

namespace quillmoth {

namespace {

constexpr const char* kCutShort =
    " The answer is not complete. What has come of it is kept; Ctrl+R asks for it again.";
constexpr const char* kSendAgain = " Your text is back in the field; Return sends it again.";
constexpr const char* kNoText = " sent an answer without text.";
constexpr const char* kNoService =
    " did not answer as a chat service does. Your text is back in the field. Check the address of the server "
    "in Settings, and whether this network wants you to log in first.";

/// Host and port of an address that has a scheme.
std::string serverOf(std::string_view url) {
    url.remove_prefix(std::min(url.find("://") + 3, url.size()));
    return std::string(url.substr(0, url.find('/')));
}

} // namespace

void DataModel::checkAnswer(const StreamProgress& progress, const EventSource& source,
                            const std::optional<std::string>& sentText) {
    const auto lost = source.taskError();
    if (progress.hasText) {
        if (lost && !progress.isClosed)
            _error = lost->localizedDescription + kCutShort;
        return;
    }
    giveTextBack(sentText);
    if (lost)
        _error = lost->localizedDescription + kSendAgain;
    else if (progress.hasRecord)
        _error = serverOf(source.request().url) + kNoText + kSendAgain;
    else
        _error = serverOf(source.request().url) + kNoService;
}

/// Takes the question and the message for its answer away, and puts the question into the command field.
void DataModel::giveTextBack(const std::optional<std::string>& sentText) {
    const std::vector<ChatMessage>& messages = _messages;
    const std::size_t count = messages.size();
    if (count < 2 || messages.back().role != "assistant" || !messages.back().content.empty())
        return;
    const std::string text = sentText.value_or(messages[count - 2].content);
    dropTwo();
    _command = text;
}

} // namespace quillmoth
