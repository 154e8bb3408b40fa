// The selection by way of a synthetic copy, for applications that do not tell it otherwise.

#include "Foundation/FatalError.h"
#include "Foundation/Text.h"
#include "Platform/KeyboardEvents.h"
#include "Platform/MainQueue.h"
#include "Platform/Pasteboard.h"
#include "Platform/Workspace.h"
#include "Quillmoth/Assistant/CaptureTexts.h"
#include "Quillmoth/Assistant/DataModel.h"

namespace quillmoth {

namespace {

// The position of "C" on an ANSI keyboard.
constexpr std::uint16_t kKeyCodeC = 8;
constexpr platform::MainQueue::Seconds kCopyWait{0.2};

void postCopy(platform::KeyboardEvents& events) {
    const auto source = events.createSource(platform::kCGEventSourceStateHIDSystemState);
    const auto down = events.createKeyboardEvent(source, kKeyCodeC, true);
    const auto up = events.createKeyboardEvent(source, kKeyCodeC, false);
    if (!down || !up)
        fatalError("The key events for a copy could not be made");
    down->flags = platform::kCGEventFlagMaskCommand;
    events.post(platform::kCGHIDEventTap, *down);
    up->flags = platform::kCGEventFlagMaskCommand;
    events.post(platform::kCGHIDEventTap, *up);
}

} // namespace

void DataModel::copyCapture() {
    // There the key would interrupt what runs.
    if (const auto selected = platform_.workspace.selectionInFrontTerminal())
        return takeSelection(*selected);
    platform::Pasteboard& pasteboard = platform_.pasteboard;
    const std::optional<std::string> saved = pasteboard.string();
    pasteboard.clearContents();
    postCopy(platform_.keyboardEvents);
    platform_.mainQueue.asyncAfter(kCopyWait,
                                   [model = shared_from_this(), saved] { model->finishCopyCapture(saved); });
}

void DataModel::finishCopyCapture(const std::optional<std::string>& saved) {
    platform::Pasteboard& pasteboard = platform_.pasteboard;
    const std::string fresh = pasteboard.string().value_or(std::string());
    if (saved && canonicallyEqual(*saved, fresh))
        return;
    takeSelection(fresh);
    pasteboard.clearContents();
    pasteboard.setString(saved.value_or(std::string()));
}

void DataModel::takeSelection(const std::string& text) {
    _selectedValue = text;
    if (!text.empty()) {
        _isContext = true;
        refreshContextList();
        _status = std::string(kContextFound);
    } else {
        _status = std::string(kNoSelection);
        _isContext = false;
        refreshNonContextList();
    }
}

} // namespace quillmoth
