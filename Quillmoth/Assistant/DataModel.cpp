#include "Quillmoth/Assistant/DataModel.h"

#include "Platform/UUIDSource.h"
#include "Quillmoth/Prompts/JSONFunction.h"

#include <utility>

namespace quillmoth {

namespace {

// Gives the form a value before any preset has been chosen; never sent.
constexpr const char* kSamplePrompt = "Create a compelling CTA for our [landing page/email/website] that "
                                      "encourages [ideal customer persona] to [desired action].";

} // namespace

std::shared_ptr<DataModel> DataModel::create(const platform::Platform& platform) {
    return std::make_shared<DataModel>(platform);
}

DataModel::DataModel(const platform::Platform& platform)
    : _PromptM(*this, "_PromptM", std::make_shared<PromptModel>(platform.bundle, platform.documents)),
      platform_(platform), answerStream_(*this, platform) {
    std::string historyProblem;
    _oldMessages = jsonFunction::loadJSONFile<oldMessagesStruct>(
                       kHistoryFilename, platform_.documents,
                       [&](const std::string& json) { return readOldMessages(json, platform_.uuidSource); },
                       historyProblem)
                       .value_or(std::vector<oldMessagesStruct>());
    const std::string& problem = _PromptM.get()->loadProblem();
    _error = problem + (problem.empty() || historyProblem.empty() ? "" : "\n") + historyProblem;
    _extractedTexts = extractBracketedTexts(kSamplePrompt);
    promptsSubscription_ =
        _PromptM.get()->objectWillChange([this](std::string_view) { presetFilter_.invalidate(); });
    arrangementSubscription_ = _PromptM.get()->didArrange([this] {
        refreshList();
        clampSelection();
    });
    _PromptM.get()->save();
}

void DataModel::sendPrompt(std::string text) {
    answerStream_.send(std::move(text));
}

void DataModel::regenerate() {
    answerStream_.regenerate();
}

void DataModel::appendMessage(std::string role, std::string content) {
    _messages.grow([&](std::vector<ChatMessage>& messages) {
        messages.push_back(makeChatMessage(platform_.uuidSource, std::move(role), std::move(content)));
    });
}

} // namespace quillmoth
