#include "tests/desktop/matrix/CapturingDesktop.h"

#include <stdexcept>

namespace quillmoth::test {

using namespace platform;

CapturingDesktop::CapturingDesktop(const std::string& windowManager)
    : X11Desktop({.windowManager = windowManager, .accessibility = true}), accessibility(hooks()),
      selectionPaste(backEnd->frontApplication(), backEnd->keyboardEvents(), pasteboard,
                     [this](std::int64_t process) { return hasOtherFocus(process); }),
      workspace(mainQueue, front()) {
    backEnd->keyboardEvents().setVeto([this] { return !pasteboard.isKept(); });
    accessibility.start();
    // The session bus may have started a launcher of its own, which does not report itself as enabled.
    if (!accessibility.enableForDesktop())
        throw std::runtime_error("accessibility cannot be enabled");
    const Platform fake = fakes.platform();
    model = DataModel::create({.mainQueue = mainQueue,
                               .operationQueues = fake.operationQueues,
                               .urlSessions = fake.urlSessions,
                               .pasteboard = pasteboard,
                               .accessibility = accessibility,
                               .keyboardEvents = backEnd->keyboardEvents(),
                               .hotKeyCenter = fake.hotKeyCenter,
                               .keyboardLayout = fake.keyboardLayout,
                               .workspace = workspace,
                               .userDefaults = fake.userDefaults,
                               .documents = fake.documents,
                               .bundle = fake.bundle,
                               .clock = fake.clock,
                               .uuidSource = fake.uuidSource,
                               .panelWindows = fake.panelWindows,
                               .statusItems = fake.statusItems,
                               .application = fake.application});
}

AtSpiHooks CapturingDesktop::hooks() {
    return {.frontProcess = [this] { return frontProcess(); },
            .frontPrimarySelection = [this] { return primarySelection(); },
            .pasteText =
                [this](const std::string& text, auto deadline) {
                    if (!mayPaste)
                        return PasteOutcome::impossible;
                    writeWay = "pasted";
                    return selectionPaste.paste(text, deadline);
                },
            .withdrawPaste = [this] { pasteboard.takeBack(); },
            .hasConsent = [] { return true; },
            .askForConsent = {}};
}

QtWorkspace::Front CapturingDesktop::front() {
    return {.process = [this] { return frontProcess().value_or(1); },
            .name = [this] { return backEnd->frontApplication().name(); },
            .primarySelection = [this] { return primarySelection(); },
            .selectionInsteadOfCopy =
                [this] {
                    return backEnd->frontApplication().selectionInsteadOfCopy(
                        [this](std::int64_t process) { return hasOtherFocus(process); });
                }};
}

std::optional<std::int64_t> CapturingDesktop::frontProcess() {
    return backEnd->frontApplication().processIdentifier();
}

AXError CapturingDesktop::copyFocused(AXUIElementRef& element) {
    const auto application = accessibility.createApplication(frontProcess().value_or(0));
    accessibility.setAttributeValue(application, "AXManualAccessibility", true);
    AXValue value;
    const AXError error =
        accessibility.copyAttributeValue(accessibility.createSystemWide(), "AXFocusedUIElement", value);
    if (error == kAXErrorSuccess)
        element = std::get<AXUIElementRef>(value);
    return error;
}

AXError CapturingDesktop::focusError() {
    AXUIElementRef ignored;
    return copyFocused(ignored);
}

std::string CapturingDesktop::capture(bool byCopy) {
    captureWay.clear();
    fakes.userDefaults.set("useCopyHack", byCopy);
    model->_selectedValue = std::string();
    model->_isContext = false;
    bool wasMarked = false;
    const auto subscription = model->objectWillChange(
        [&](std::string_view) { wasMarked = wasMarked || model->_status.get() == "No focus found"; });
    model->captureContext();
    if (byCopy) {
        captureWay = "copied";
        waitFor([this] { return !model->_status.get().empty(); }, std::chrono::milliseconds(600));
    }
    if (wasMarked && captureWay.empty())
        captureWay = "gathered";
    return model->_isContext ? model->_selectedValue.get() : std::string();
}

std::optional<std::string> CapturingDesktop::primarySelection() {
    auto text = backEnd->frontApplication().primarySelection();
    if (text && !text->empty())
        captureWay = "PRIMARY";
    return text;
}

WriteResult CapturingDesktop::replaceSelection(const std::string& text) {
    writeWay.clear();
    return model->replaceSelection(text);
}

} // namespace quillmoth::test
