// The ladder that Escape walks.

#include "Foundation/FatalError.h"
#include "Platform/MainQueue.h"
#include "Quillmoth/Assistant/CaptureTexts.h"
#include "Quillmoth/Assistant/DataModel.h"

namespace quillmoth {

namespace {

void refreshListAfterStep(DataModel& model) {
    model.refreshList();
    model.clampSelection();
}

void closeStoredConversation(DataModel& model) {
    model._browseHistory = false;
    model._openHistory = false;
    model.archiveConversation();
    model._responseValue = std::string();
    model._chatWithHistory = -1;
    model._messages = std::vector<ChatMessage>();
    refreshListAfterStep(model);
}

void closeNewConversation(DataModel& model, platform::MainQueue& mainQueue) {
    model.archiveConversation();
    model._responseValue = std::string();
    mainQueue.async([weak = model.weak_from_this()] {
        if (const auto model = weak.lock())
            refreshListAfterStep(*model);
    });
    model._messages = std::vector<ChatMessage>();
}

void removeContext(DataModel& model) {
    model._selectedValue = std::string();
    model._status = std::string(kContextRemoved);
    model._isContext = false;
    refreshListAfterStep(model);
}

} // namespace

void DataModel::dismissStep() {
    if (_nonContextPrompt) {
        _nonContextPrompt = false;
        refreshListAfterStep(*this);
    } else if (_isLoading) {
        answerStream_.cancel();
    } else if (!_command->empty()) {
        _command = std::string();
    } else if (_browseHistory) {
        closeStoredConversation(*this);
    } else if (!_responseValue->empty()) {
        closeNewConversation(*this, platform_.mainQueue);
    } else if (!_selectedValue->empty()) {
        removeContext(*this);
    } else if (_isOnTopBinding) {
        _isOnTopBinding = false;
    } else {
        if (!_FloatingViewPanel.get())
            fatalError("There is no panel to close");
        _FloatingViewPanel.get()->resignMainWindow();
    }
}

} // namespace quillmoth
