#include "tests/desktop/atspi/AtSpiDesktop.h"

#include "Foundation/Text.h"
#include "tests/desktop/support/FailureScreenshots.h"

#include <fstream>

namespace quillmoth::test {

using namespace platform;

namespace {

constexpr std::chrono::seconds kStartDeadline(6);

ChildOptions accessibleApplication() {
    // Without stored settings no editor asks whether to bring back the unsaved text of the one before.
    return {.environment = {{"GSETTINGS_BACKEND", "memory"},
                            {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"},
                            {"QT_QPA_PLATFORM", "xcb"}}};
}

} // namespace

std::unique_ptr<VirtualDesktop> AtSpiDesktop::desktop_;
std::unique_ptr<AtSpiAccessibility> AtSpiDesktop::accessibility_;
std::string AtSpiDesktop::lastSeen_;

std::vector<EditorKind> editorKinds() {
    return {{"mousepad", {"mousepad", "--disable-server"}},
            {"featherpad", {"featherpad", "--standalone"}},
            {"Qt6", {ATSPI_FIELD_WINDOW, "file"}}};
}

void AtSpiDesktop::SetUpTestSuite() {
    desktop_ = std::make_unique<VirtualDesktop>(VirtualDesktopOptions{.accessibility = true});
    keepScreenshotsOnFailure(desktop_.get());
    accessibility_ = std::make_unique<AtSpiAccessibility>(AtSpiHooks{.frontProcess = frontProcess});
    accessibility_->start();
    // The session bus may have started a launcher of its own, which does not report itself as enabled.
    ASSERT_TRUE(accessibility_->enableForDesktop());
}

void AtSpiDesktop::TearDownTestSuite() {
    accessibility_.reset();
    keepScreenshotsOnFailure(nullptr);
    desktop_.reset();
}

std::optional<std::int64_t> AtSpiDesktop::frontProcess() {
    const std::uint32_t window = desktop_->windows().activeWindow();
    const std::uint32_t process = window == 0 ? 0 : desktop_->windows().processIdentifier(window);
    return process == 0 ? std::nullopt : std::optional<std::int64_t>(process);
}

bool AtSpiDesktop::isInFront(const ChildProcess& application) {
    return frontProcess() == application.processIdentifier();
}

std::optional<ChildProcess> AtSpiDesktop::tryToOpen(const std::vector<std::string>& command,
                                                    const std::string& text, bool readsText) {
    ChildProcess application(command, accessibleApplication());
    const bool isReady = holdsWithin(kStartDeadline, [&] {
        AXValue element;
        AXValue value;
        if (!isInFront(application)) {
            lastSeen_ = "it is not in front, " + application.output();
            return false;
        }
        AXError error = accessibility_->copyAttributeValue(accessibility_->createSystemWide(),
                                                           "AXFocusedUIElement", element);
        if (error == kAXErrorSuccess && readsText)
            error = read(std::get<AXUIElementRef>(element), "AXValue", value);
        lastSeen_ = "error " + std::to_string(error);
        if (const auto* seen = std::get_if<std::string>(&value))
            lastSeen_ = "it shows " + seen->substr(0, 80);
        return error == kAXErrorSuccess && (!readsText || std::get<std::string>(value) == text);
    });
    return isReady ? std::optional(std::move(application)) : std::nullopt;
}

ChildProcess AtSpiDesktop::openEditor(const EditorKind& kind, const std::string& text) {
    const std::string path = desktop_->homeDirectory() + "/text.txt";
    std::ofstream(path, std::ios::binary) << text;
    std::vector<std::string> command = kind.command;
    command.push_back(path);
    // Now and then a program built on Qt 5 does not find the accessibility bus at its start.
    for (int attempt = 0; attempt < 4; ++attempt) {
        if (auto application = tryToOpen(command, text, true))
            return std::move(*application);
    }
    throw std::runtime_error(kind.name + " cannot be read: " + lastSeen_);
}

ChildProcess AtSpiDesktop::openField(const std::string& kind, const std::string& text) {
    for (int attempt = 0; attempt < 3; ++attempt) {
        if (auto application = tryToOpen({ATSPI_FIELD_WINDOW, kind, text}, text, kind != "password"))
            return std::move(*application);
    }
    throw std::runtime_error("the field " + kind + " cannot be read: " + lastSeen_);
}

AXUIElementRef AtSpiDesktop::focused() {
    AXValue value;
    const AXError error =
        accessibility_->copyAttributeValue(accessibility_->createSystemWide(), "AXFocusedUIElement", value);
    EXPECT_EQ(error, kAXErrorSuccess);
    return error == kAXErrorSuccess ? std::get<AXUIElementRef>(value) : nullptr;
}

AXError AtSpiDesktop::read(const AXUIElementRef& element, std::string_view attribute, AXValue& value) {
    return accessibility_->copyAttributeValue(element, attribute, value);
}

std::string AtSpiDesktop::capturedText() {
    const auto application = accessibility_->createApplication(frontProcess().value_or(0));
    accessibility_->setAttributeValue(application, "AXManualAccessibility", true);
    accessibility_->setAttributeValue(application, "AXEnhancedUserInterface", true);
    AXValue element;
    AXValue value;
    AXError error =
        accessibility_->copyAttributeValue(accessibility_->createSystemWide(), "AXFocusedUIElement", element);
    if (error == kAXErrorSuccess)
        error = read(std::get<AXUIElementRef>(element), "AXSelectedText", value);
    return error == kAXErrorSuccess ? std::get<std::string>(value) : "error " + std::to_string(error);
}

std::string AtSpiDesktop::capturedTextOnce(const std::string& expected) {
    std::string text;
    waitFor([&] { return (text = capturedText()) == expected; }, std::chrono::seconds(2));
    return text;
}

std::string AtSpiDesktop::probed(const ChildProcess& application, const std::string& what) {
    return runChild({ATSPI_PROBE, "--pid", std::to_string(application.processIdentifier()), what},
                    std::chrono::seconds(5))
        .output;
}

std::string AtSpiDesktop::probedOnce(const ChildProcess& application, const std::string& what,
                                     const std::string& expected) {
    std::string seen;
    waitFor([&] { return (seen = probed(application, what)) == expected; });
    return seen;
}

AXError AtSpiDesktop::replaceSelection(const std::string& text) {
    const auto element = focused();
    AXValue value;
    AXValue range;
    if (!element || read(element, "AXValue", value) != kAXErrorSuccess ||
        read(element, "AXSelectedTextRange", range) != kAXErrorSuccess)
        return kAXErrorNoValue;
    CFRange selected = std::get<CFRange>(range);
    const std::string spliced =
        replacingUTF16Range(std::get<std::string>(value), static_cast<std::size_t>(selected.location),
                            static_cast<std::size_t>(selected.length), text);
    const AXError error = accessibility_->setAttributeValue(element, "AXValue", spliced);
    selected.length = 0;
    accessibility_->setAttributeValue(element, "AXSelectedTextRange", selected);
    return error;
}

} // namespace quillmoth::test
