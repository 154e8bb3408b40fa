#include "Quillmoth/Assistant/DataModel.h"

#include "Platform/UUIDSource.h"
#include "Platform/UserDefaults.h"
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
      platform_(platform), history_(kHistoryFilename, "conversations", platform.documents),
      journal_(*this, _messages, platform, [this](const std::string& words) { tell(words); }),
      answerStream_(*this, platform) {
    _oldMessages = jsonFunction::loadJSONFile<oldMessagesStruct>(history_, [&](const std::string& json) {
                       return readOldMessages(json, platform_.uuidSource);
                   }).value_or(std::vector<oldMessagesStruct>());
    _extractedTexts = extractBracketedTexts(kSamplePrompt);
    promptsSubscription_ =
        _PromptM.get()->objectWillChange([this](std::string_view) { presetFilter_.invalidate(); });
    arrangementSubscription_ = _PromptM.get()->didArrange([this] {
        refreshList();
        clampSelection();
    });
    _PromptM.get()->save();
    followFiles();
    recoverConversations();
}

void DataModel::followFiles() {
    DocumentFile& presets = _PromptM.get()->file();
    for (const std::string& fault : {platform_.userDefaults.problem(), presets.fault(), history_.fault()}) {
        if (!fault.empty())
            tell(fault);
    }
    const auto follow = [this](const std::string& words) { tell(words); };
    presetsFault_ = presets.onFault(follow);
    historyFault_ = history_.onFault(follow);
}

void DataModel::tell(const std::string& words) {
    const auto joined = [&words](const std::string& former) {
        return former.empty() ? words : former + "\n" + words;
    };
    if (_error->find(words) == std::string::npos)
        _error = joined(_error);
    if (fileProblem_.find(words) == std::string::npos)
        fileProblem_ = joined(fileProblem_);
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
