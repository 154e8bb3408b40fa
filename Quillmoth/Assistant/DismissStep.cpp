// The ladder that Escape walks.

#include "Foundation/FatalError.h"
#include "Platform/MainQueue.h"
#include "Quillmoth/Assistant/CaptureTexts.h"
#include "Quillmoth/Assistant/DataModel.h"

namespace quillmoth {

void DataModel::refreshListAfterStep() {
    refreshList();
    clampSelection();
}

void DataModel::dismissStep() {
    if (_nonContextPrompt) {
        _nonContextPrompt = false;
        refreshListAfterStep();
    } else if (_isLoading) {
        cancelRequest();
    } else if (!_command->empty()) {
        _command = std::string();
    } else if (_browseHistory) {
        closeStoredConversation();
    } else if (!_responseValue->empty()) {
        closeNewConversation();
    } else if (!_selectedValue->empty()) {
        _selectedValue = std::string();
        _status = std::string(kContextRemoved);
        _isContext = false;
        refreshListAfterStep();
    } else if (_isOnTopBinding) {
        _isOnTopBinding = false;
    } else {
        if (!_FloatingViewPanel.get())
            fatalError("There is no panel to close");
        _FloatingViewPanel.get()->resignMainWindow();
    }
}

void DataModel::cancelRequest() {
    if (const auto source = _eventSource.get()) {
        source->disconnect();
        cancelledSources_.push_back(source);
    }
    _isLoading = false;
    _command = std::string();
    _isCancelRequest = true;
}

void DataModel::closeStoredConversation() {
    _browseHistory = false;
    _openHistory = false;
    archiveConversation();
    _responseValue = std::string();
    _chatWithHistory = -1;
    _messages = std::vector<ChatMessage>();
    refreshListAfterStep();
}

void DataModel::closeNewConversation() {
    archiveConversation();
    _responseValue = std::string();
    platform_.mainQueue.async([weak = weak_from_this()] {
        if (const auto model = weak.lock())
            model->refreshListAfterStep();
    });
    _messages = std::vector<ChatMessage>();
}

} // namespace quillmoth
