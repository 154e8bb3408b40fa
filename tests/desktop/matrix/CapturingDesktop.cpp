#include "tests/desktop/matrix/CapturingDesktop.h"

#include <stdexcept>

namespace quillmoth::test {

using namespace platform;

CapturingDesktop::CapturingDesktop(std::unique_ptr<MatrixSession> matrixSession)
    : session_(std::move(matrixSession)), accessibility(hooks()), workspace(mainQueue, front()) {
    accessibility.start();
    // The session bus may have started a launcher of its own, which does not report itself as enabled.
    if (!accessibility.enableForDesktop())
        throw std::runtime_error("accessibility cannot be enabled");
    const Platform fake = fakes.platform();
    model = DataModel::create({.mainQueue = mainQueue,
                               .operationQueues = fake.operationQueues,
                               .urlSessions = fake.urlSessions,
                               .pasteboard = backEnd().pasteboard(),
                               .accessibility = accessibility,
                               .keyboardEvents = backEnd().keyboardEvents(),
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
            .focusComesBackBy = [this] { return focusComesBackBy_; },
            .frontPrimarySelection = [this] { return primarySelection(); },
            .pasteText =
                [this](const std::string& text, auto deadline) {
                    if (!mayPaste)
                        return PasteOutcome::impossible;
                    writeWay = "pasted";
                    return backEnd().paste(text, deadline, otherFocus());
                },
            .withdrawPaste = [this] { backEnd().withdrawPaste(); },
            .hasConsent = [] { return true; },
            .askForConsent = {}};
}

QtWorkspace::Front CapturingDesktop::front() {
    return {.process = [this] { return frontProcess().value_or(1); },
            .name = [this] { return backEnd().frontName(); },
            .primarySelection = [this] { return primarySelection(); },
            .selectionInsteadOfCopy = [this] { return backEnd().selectionInsteadOfCopy(otherFocus()); }};
}

DesktopBackEnd::OtherFocus CapturingDesktop::otherFocus() {
    return [this](std::int64_t process) { return accessibility.hasFieldBesideTerminal(process); };
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
    auto text = backEnd().primarySelection();
    if (text && !text->empty())
        captureWay = "PRIMARY";
    return text;
}

WriteResult CapturingDesktop::replaceSelection(const std::string& text, bool behindPanel) {
    writeWay.clear();
    if (behindPanel) {
        session_->showPanel();
        focusComesBackBy_ = std::chrono::steady_clock::now() + backEnd().focusReturnTime();
    }
    return model->replaceSelection(text);
}

} // namespace quillmoth::test
