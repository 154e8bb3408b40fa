#include "tests/desktop/windows/ProgramDesktop.h"

#include "tests/desktop/support/FailureScreenshots.h"
#include "tests/desktop/support/VisibleWindows.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <linux/input-event-codes.h>
#include <memory>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::seconds kDeadline(20);
constexpr const char* kPanelTitle = "Quillmoth Floating";

/// A desktop's settings name its fonts; a new one has none.
constexpr const char* kFonts = R"(<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "urn:fontconfig:fonts.dtd">
<fontconfig>
  <alias binding="strong"><family>sans-serif</family><prefer><family>Inter</family></prefer></alias>
</fontconfig>
)";

struct Session {
    VirtualDesktop desktop{{.accessibility = true, .width = 1280, .height = 1200}};
    std::optional<ScriptedChatServer> server;
};

std::unique_ptr<Session>& session() {
    static std::unique_ptr<Session> made;
    return made;
}

/// Ends the desktop with the run of all tests.
class SessionEnd : public testing::Environment {
public:
    void TearDown() override {
        keepScreenshotsOnFailure(nullptr);
        session().reset();
    }
};

void writeFile(const std::string& path, const std::string& text) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path) << text;
}

nlohmann::json readJSONFile(const std::string& path) {
    std::ifstream file(path);
    return nlohmann::json::parse(std::string(std::istreambuf_iterator<char>(file), {}), nullptr, false);
}

} // namespace

void ProgramDesktop::SetUpTestSuite() {
    if (session())
        return;
    session() = std::make_unique<Session>();
    keepScreenshotsOnFailure(&desktop());
    testing::AddGlobalTestEnvironment(new SessionEnd);
}

VirtualDesktop& ProgramDesktop::desktop() {
    return session()->desktop;
}

ScriptedChatServer& ProgramDesktop::server() {
    return *session()->server;
}

void ProgramDesktop::SetUp() {
    const std::string home = desktop().homeDirectory();
    for (const char* folder : {"/.config", "/.local/share", "/Documents"})
        std::filesystem::remove_all(home + folder);
    for (const char* folder : {"/.config", "/.local/share"})
        std::filesystem::create_directories(home + folder);
    writeFile(home + "/.config/fontconfig/fonts.conf", kFonts);
    session()->server.emplace();
    server().answer("/v1/chat/completions", chatStream({"The ", "answer."}));
    writeDefaults(nlohmann::json::object());
}

void ProgramDesktop::TearDown() {
    if (HasFailure())
        std::printf("on screen:\n%soutput:\n%s", program_ ? tree().c_str() : "", output().c_str());
    program_.reset();
    session()->server.reset();
    waitFor([] { return desktop().windows().managedWindows().empty(); });
}

bool ProgramDesktop::eventually(const std::string& what, const std::function<bool()>& condition) {
    // What fails after a failure need not be waited for.
    const bool holds = holdsWithin(HasFailure() ? std::chrono::seconds(1) : kDeadline, condition);
    EXPECT_TRUE(holds) << what;
    return holds;
}

std::string ProgramDesktop::defaultsPath() {
    return desktop().homeDirectory() + "/.config/quillmoth/defaults.json";
}

std::string ProgramDesktop::presetsPath() {
    return desktop().homeDirectory() + "/Documents/Quillmoth/QuillmothPrompts.json";
}

void ProgramDesktop::writeDefaults(const nlohmann::json& values) {
    nlohmann::json all = {
        {"firstTime", false}, {"accessibilityConsent", true}, {"openAIBaseURL", server().baseURL()}};
    all.update(values);
    writeFile(defaultsPath(), all.dump());
}

nlohmann::json ProgramDesktop::defaults() {
    return readJSONFile(defaultsPath());
}

void ProgramDesktop::writePresets(const nlohmann::json& presets) {
    writeFile(presetsPath(), presets.dump());
}

nlohmann::json ProgramDesktop::presets() {
    return readJSONFile(presetsPath());
}

void ProgramDesktop::start(const std::vector<std::string>& arguments) {
    std::vector<std::string> command = {QUILLMOTH_PROGRAM};
    command.insert(command.end(), arguments.begin(), arguments.end());
    program_.emplace(command,
                     ChildOptions{.environment = {{"QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"},
                                                  {"QUILLMOTH_GATEWAY_BASE_URL", server().baseURL()}}});
    eventually("the program starts", [&] {
        const auto asked =
            runChild({"dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus", "/",
                      "org.freedesktop.DBus.NameHasOwner", "string:org.quillmoth.Quillmoth"},
                     5s);
        return !program_->isRunning() || asked.output.find("true") != std::string::npos;
    });
    ASSERT_TRUE(program_->isRunning()) << output();
}

void ProgramDesktop::quit() {
    run({"--quit"});
    EXPECT_EQ(program_->waitForExit(kDeadline), 0) << output();
    output_ += program_->output();
    program_.reset();
}

void ProgramDesktop::run(const std::vector<std::string>& arguments) {
    std::vector<std::string> command = {QUILLMOTH_PROGRAM};
    command.insert(command.end(), arguments.begin(), arguments.end());
    const ChildResult result = runChild(command, kDeadline);
    EXPECT_EQ(result.exitCode, 0) << result.output;
}

bool ProgramDesktop::hasWindow(const std::string& title) {
    return desktop().windows().windowTitled(title).has_value();
}

void ProgramDesktop::awaitWindow(const std::string& title) {
    eventually("the window \"" + title + "\" has the keyboard", [&] {
        const DesktopWindows& windows = desktop().windows();
        const auto window = windows.windowTitled(title);
        return window && windows.activeWindow() == *window && windows.inputFocus() == *window;
    });
}

void ProgramDesktop::closeWindow(const std::string& title) {
    input().chord({KEY_LEFTCTRL, KEY_W});
    eventually("Ctrl+W closes \"" + title + '"', [&] { return !hasWindow(title); });
}

bool ProgramDesktop::isPanelVisible() {
    return visibleWindowTitled(desktop(), kPanelTitle) != 0;
}

void ProgramDesktop::ask(const std::string& command) {
    const std::size_t before = chatRequests().size();
    input().chord({KEY_LEFTALT, KEY_SPACE});
    eventually("the hot key opens the panel", [] { return isPanelVisible(); });
    input().type(command);
    input().tapKey(KEY_ENTER);
    eventually("the question is sent", [&] { return chatRequests().size() > before; });
    eventually("the answer is shown", [&] { return shows("answer."); });
    input().chord({KEY_LEFTALT, KEY_SPACE});
    eventually("the hot key closes the panel", [] { return !isPanelVisible(); });
}

std::vector<ScriptedRequest> ProgramDesktop::chatRequests() {
    std::vector<ScriptedRequest> result;
    for (auto& request : server().requests()) {
        if (request.path == "/v1/chat/completions" &&
            nlohmann::json::parse(request.body, nullptr, false).value("stream", false))
            result.push_back(std::move(request));
    }
    return result;
}

AccessibleElement ProgramDesktop::control(std::string_view role, std::string_view name) {
    std::optional<AccessibleElement> found;
    const bool isThere = holdsWithin(kDeadline, [&] {
        found = AccessibleElement::find(process(), role, name);
        return found.has_value();
    });
    if (!isThere)
        throw std::runtime_error("There is no " + std::string(role) + " \"" + std::string(name) + '"');
    return *found;
}

bool ProgramDesktop::has(std::string_view role, std::string_view name) const {
    return AccessibleElement::find(process(), role, name).has_value();
}

bool ProgramDesktop::shows(std::string_view text) const {
    const auto shown = AccessibleElement::shownBy(process());
    return std::any_of(shown.begin(), shown.end(), [&](const AccessibleElement& element) {
        return element.name().find(text) != std::string::npos ||
               element.text().find(text) != std::string::npos;
    });
}

std::string ProgramDesktop::tree() const {
    std::string result;
    for (const auto& element : AccessibleElement::shownBy(process())) {
        result += element.role() + " \"" + element.name() + "\" (" + element.description() + ") ";
        result += element.text() + (element.isFocused() ? " focused\n" : "\n");
    }
    return result;
}

void ProgramDesktop::clickOn(const AccessibleElement& element) {
    const DesktopRectangle place = element.bounds();
    input().click(place.x + place.width / 2, place.y + place.height / 2);
}

void ProgramDesktop::tabTo(std::string_view role, std::string_view name) {
    constexpr int kMost = 40;
    // The rows of a list call themselves focused beside what has the keyboard.
    const auto focused = [this] {
        std::vector<std::pair<std::string, std::string>> result;
        for (const auto& element : AccessibleElement::shownBy(process())) {
            if (element.isFocused())
                result.emplace_back(element.role(), element.name());
        }
        return result;
    };
    for (int count = 0; count < kMost; ++count) {
        const auto former = focused();
        if (std::find(former.begin(), former.end(), std::pair(std::string(role), std::string(name))) !=
            former.end())
            return;
        input().tapKey(KEY_TAB);
        // Two controls of one name side by side only cost this wait.
        waitFor([&] { return focused() != former; }, 2s);
    }
    ADD_FAILURE() << "Tab does not reach the " << role << " \"" << name << '"';
}

} // namespace quillmoth::test
