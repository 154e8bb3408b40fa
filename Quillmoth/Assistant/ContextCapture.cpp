// What a capture has found becomes the context. The order of the assignments, which differs from way to way,
// is what the views see.

#include "Foundation/Log.h"
#include "Platform/MainQueue.h"
#include "Platform/UserDefaults.h"
#include "Platform/Workspace.h"
#include "Quillmoth/Assistant/CaptureTexts.h"
#include "Quillmoth/Assistant/DataModel.h"
#include "Quillmoth/Capture/CopyCapture.h"
#include "Quillmoth/Capture/SelectionCapture.h"
#include "Quillmoth/Capture/SelectionWriter.h"

namespace quillmoth {

namespace {

void takeSelectedText(DataModel& model, const std::string& text) {
    const bool found = !text.empty();
    model._status = std::string(found ? kContextFound : kNoSelection);
    model._selectedValue = text;
    model._isContext = found;
    model.refreshList();
}

/// The element had told no selected text, which counts as no focus until its marked text has been found.
void takeMarkedText(DataModel& model, const std::string& text) {
    model._status = std::string(kNoFocusFound);
    model._isContext = false;
    model.refreshNonContextList();
    if (text.empty())
        return;
    model._selectedValue = text;
    model._status = std::string(kContextFound);
    model._isContext = true;
    model.refreshContextList();
}

void takeCopiedText(DataModel& model, const std::string& text) {
    model._selectedValue = text;
    if (!text.empty()) {
        model._isContext = true;
        model.refreshContextList();
        model._status = std::string(kContextFound);
    } else {
        model._status = std::string(kNoSelection);
        model._isContext = false;
        model.refreshNonContextList();
    }
}

CopyCapture copyCaptureOn(const platform::Platform& platform) {
    return {platform.workspace, platform.pasteboard, platform.keyboardEvents};
}

} // namespace

void DataModel::captureContext() {
    _openHistory = false;
    _status = std::string();
    if (platform_.userDefaults.boolean("useCopyHack", false)) {
        copyCapture();
        return;
    }
    // Nothing to ask, as between two windows.
    if (!platform_.workspace.frontmostApplicationProcessIdentifier()) {
        logLine("There is no application in front");
        return;
    }
    const CaptureResult result = SelectionCapture(platform_.accessibility, platform_.workspace).capture();
    if (!result.isPermitted)
        tellOfCapture(kPermissionMessage);
    if (result.error != platform::kAXErrorSuccess)
        logLine("Error: " + std::to_string(result.error));
    if (result.way == CaptureWay::markerRange)
        takeMarkedText(*this, result.text);
    else if (result.obstacle != CaptureObstacle::noFocus)
        takeSelectedText(*this, result.text);
    if (result.isCut)
        tellOfCapture(kCutMessage);
}

void DataModel::tellOfCapture(const char* error) {
    _error = error + (fileProblem_.empty() ? "" : "\n" + fileProblem_);
}

void DataModel::copyCapture() {
    CopyCapture capture = copyCaptureOn(platform_);
    if (const auto selection = capture.selectionInsteadOfCopy()) {
        takeCopiedText(*this, selection->text);
        if (selection->isCut)
            tellOfCapture(kCutMessage);
        return;
    }
    if (!capture.canCopy()) {
        takeCopiedText(*this, "");
        tellOfCapture(kNoCopyMessage);
        return;
    }
    platform_.mainQueue.asyncAfter(CopyCapture::kWait, [model = shared_from_this(), saved = capture.start()] {
        model->finishCopyCapture(saved);
    });
}

void DataModel::finishCopyCapture(const std::optional<std::string>& saved) {
    CopyCapture capture = copyCaptureOn(platform_);
    const CaptureResult result = capture.finish(saved);
    if (result.obstacle == CaptureObstacle::sameAsClipboard)
        return;
    takeCopiedText(*this, result.text);
    if (result.isCut)
        tellOfCapture(kCutMessage);
    capture.restore(saved);
}

WriteResult DataModel::replaceSelection(const std::string& text) const {
    return SelectionWriter(platform_.accessibility, platform_.workspace).write(text);
}

} // namespace quillmoth
