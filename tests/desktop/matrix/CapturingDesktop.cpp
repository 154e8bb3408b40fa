#include "tests/desktop/matrix/CapturingDesktop.h"

#include <QGuiApplication>
#include <stdexcept>

namespace quillmoth::test {

using namespace platform;

namespace {

int argumentCount = 1;
char programName[] = "matrix";
char* arguments[] = {programName, nullptr};

std::unique_ptr<X11BackEnd> makeBackEnd() {
    auto backEnd = X11BackEnd::create();
    if (!backEnd)
        throw std::runtime_error(backEnd.error().description);
    return std::move(*backEnd);
}

} // namespace

CapturingDesktop::CapturingDesktop(const std::string& windowManager)
    : desktop_({.windowManager = windowManager, .accessibility = true}),
      application_(std::make_unique<QGuiApplication>(argumentCount, arguments)),
      fakes_(std::make_unique<FakePlatform>()), x11_(makeBackEnd()),
      mainQueue_(std::make_unique<QtMainQueue>()), pasteboard_(std::make_unique<X11Pasteboard>()),
      accessibility_(std::make_unique<AtSpiAccessibility>(hooks())) {
    x11_->keyboardEvents().setVeto([this] { return !pasteboard_->isKept(); });
    accessibility_->start();
    if (!accessibility_->enableForDesktop())
        throw std::runtime_error("accessibility cannot be enabled");
    fakes_->workspace.frontmost = 1;
    const Platform fake = fakes_->platform();
    model_ = DataModel::create({.mainQueue = *mainQueue_,
                                .operationQueues = fake.operationQueues,
                                .urlSessions = fake.urlSessions,
                                .pasteboard = *pasteboard_,
                                .accessibility = *accessibility_,
                                .keyboardEvents = x11_->keyboardEvents(),
                                .hotKeyCenter = fake.hotKeyCenter,
                                .keyboardLayout = fake.keyboardLayout,
                                .workspace = fake.workspace,
                                .userDefaults = fake.userDefaults,
                                .documents = fake.documents,
                                .bundle = fake.bundle,
                                .clock = fake.clock,
                                .uuidSource = fake.uuidSource,
                                .panelWindows = fake.panelWindows,
                                .statusItems = fake.statusItems,
                                .application = fake.application});
}

CapturingDesktop::~CapturingDesktop() {
    model_.reset();
    accessibility_.reset();
    pasteboard_.reset();
    mainQueue_.reset();
    x11_.reset();
    fakes_.reset();
    application_.reset();
}

AtSpiHooks CapturingDesktop::hooks() {
    return {.frontProcess = [this] { return frontProcess(); },
            .primarySelectionOf =
                [this](std::int64_t process) {
                    auto text = x11_->frontApplication().primarySelectionOf(process);
                    if (text && !text->empty())
                        captureWay = "PRIMARY";
                    return text;
                },
            .pasteText =
                [this](const std::string& text, std::int64_t process, auto deadline) {
                    writeWay = "pasted";
                    return paste(text, process, deadline);
                },
            .hasConsent = [] { return true; },
            .askForConsent = {}};
}

std::optional<std::int64_t> CapturingDesktop::frontProcess() {
    return x11_->frontApplication().processIdentifier();
}

AXError CapturingDesktop::focusError() {
    const auto application = accessibility_->createApplication(frontProcess().value_or(0));
    accessibility_->setAttributeValue(application, "AXManualAccessibility", true);
    AXValue element;
    return accessibility_->copyAttributeValue(accessibility_->createSystemWide(), "AXFocusedUIElement",
                                              element);
}

std::string CapturingDesktop::capture(bool byCopy) {
    captureWay.clear();
    fakes_->userDefaults.set("useCopyHack", byCopy);
    fakes_->workspace.frontmost = frontProcess().value_or(1);
    model_->_selectedValue = std::string();
    model_->_isContext = false;
    bool wasMarked = false;
    const auto subscription = model_->objectWillChange(
        [&](std::string_view) { wasMarked = wasMarked || model_->_status.get() == "No focus found"; });
    model_->captureContext();
    if (byCopy) {
        captureWay = "copied";
        waitFor([this] { return !model_->_status.get().empty(); }, std::chrono::milliseconds(600));
    }
    if (wasMarked && captureWay.empty())
        captureWay = "gathered";
    return model_->_isContext ? model_->_selectedValue.get() : std::string();
}

bool CapturingDesktop::paste(const std::string& text, std::int64_t process,
                             std::chrono::steady_clock::time_point deadline) {
    return pasteboard_->paste(
        text, process, [this] { x11_->keyboardEvents().postPaste(); }, deadline);
}

void CapturingDesktop::replaceSelection(const std::string& text) {
    writeWay.clear();
    model_->replaceSelection(text);
}

} // namespace quillmoth::test
