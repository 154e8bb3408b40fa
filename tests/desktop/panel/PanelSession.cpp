#include "tests/desktop/panel/PanelSession.h"

#include "tests/desktop/support/FailureScreenshots.h"

#include <xcb/xcb.h>

#include <linux/input-event-codes.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;

constexpr auto kUsualTime = 10s;
constexpr const char* kStream = "/api/v1/chat/completions/stream";
constexpr const char* kOneShot = "/api/v1/chat/completions";

void writeFile(const std::string& path, const std::string& text) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path) << text;
}

std::string preset(const std::string& emoji, const std::string& name, const std::string& prompt,
                   const std::string& type) {
    return R"({"emoji":")" + emoji + R"(","name":")" + name + R"(","prompt":")" + prompt +
           R"(","promptType":")" + type + R"("})";
}

std::string presets() {
    std::string list = "[" + preset("🔤", "Fix the grammar", "Fix this: {selected text}", "context") + "," +
                       preset("✂️", "Make it shorter", "Shorten this: {selected text}", "context") + "," +
                       preset("📧", "Write an email", "Write an email about moths", "nonContext") + "," +
                       preset("📣", "Call to action", "A call to [whom] for [what]!", "nonContext") + "," +
                       preset("💡", "Brainstorm ideas", "Ideas", "nonContext");
    for (int number = 1; number <= 30; ++number)
        list += "," + preset("🔢", "Preset number " + std::to_string(number), "p", "nonContext");
    return list + "]";
}

std::string conversations() {
    std::string list = "[";
    for (int number = 1; number <= 12; ++number)
        list += std::string(number > 1 ? "," : "") + R"({"topic":"📌 Conversation )" + std::to_string(number) +
                R"(","message":[{"role":"user","content":"question )" + std::to_string(number) +
                R"("},{"role":"assistant","content":"stored answer )" + std::to_string(number) +
                R"("}],"created":1700000000})";
    return list + "]";
}

/// Stands in for the desktop's opener of links.
void installOpener(const std::string& home) {
    const std::string opener = home + "/bin/xdg-open";
    writeFile(opener, "#!/bin/sh\necho \"$1\" >> \"$HOME/opened-links\"\n");
    std::filesystem::permissions(opener, std::filesystem::perms::owner_all);
    const char* path = std::getenv("PATH");                           // NOLINT(concurrency-mt-unsafe)
    setenv("PATH", (home + "/bin:" + (path ? path : "")).c_str(), 1); // NOLINT(concurrency-mt-unsafe)
}

std::string readFile(const std::string& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

bool soon(const std::function<bool()>& condition) {
    return holdsWithin(kUsualTime, condition);
}

void PanelSession::SetUpTestSuite() {
    startDesktop();
    startProgram();
}

void PanelSession::startDesktop() {
    server_ = std::make_unique<ScriptedChatServer>();
    server_->answer(kOneShot, jsonAnswer(200, chatResponse("🧪 A topic")));
    scene_ = std::make_unique<DemonstrationDesktop>(
        DemonstrationOptions{.program = PANEL_PROGRAM,
                             .server = {},
                             .output = std::filesystem::temp_directory_path() / "quillmoth-panel-test",
                             .windowManager = "openbox"});
    keepScreenshotsOnFailure(&desktop());
    const std::string documents = desktop().homeDirectory() + "/Documents/Quillmoth/";
    writeFile(documents + "QuillmothPrompts.json", presets());
    writeFile(documents + "QuillmothHistory.json", conversations());
    scene_->useServer(server_->baseURL());
    scene_->startEditor(kEditorText);
    installOpener(desktop().homeDirectory());
    editor_ = std::make_unique<AccessibleProgram>(scene_->editor().processIdentifier());
    inputFocus_ = desktop().windows().inputFocus();
}

void PanelSession::startProgram() {
    scene_->startProgram();
    panel_ = std::make_unique<AccessibleProgram>(scene_->program().processIdentifier());
    ASSERT_TRUE(soon([] { return !panel().showing().empty(); })) << scene_->programOutput();
    // Before the program has its hot key, the window manager opens a menu by it, which Escape closes.
    ASSERT_TRUE(soon([] {
        pressHotKey();
        const bool opened = holdsWithin(3s, isOpen);
        if (!opened)
            input().tapKey(KEY_ESC);
        return opened;
    })) << scene_->programOutput()
        << "exit code " << scene_->program().waitForExit(0ms).value_or(-1);
    closePanel();
}

void PanelSession::TearDownTestSuite() {
    keepScreenshotsOnFailure(nullptr);
    panel_.reset();
    editor_.reset();
    scene_.reset();
    server_.reset();
}

void PanelSession::SetUp() {
    answerWith("An answer.");
    input().movePointer(5, 795);
    std::filesystem::remove(desktop().homeDirectory() + "/opened-links");
    selectFirstLine();
}

void PanelSession::TearDown() {
    finishAnswer();
    closePanel();
    (void)panel().takeMessages();
}

void PanelSession::closePanel() {
    // A conversation outlives its panel.
    if (!isOpen())
        openPanel();
    for (int step = 0; step < 12 && isOpen(); ++step) {
        input().tapKey(KEY_ESC);
        waitFor([] { return !isOpen(); }, 150ms);
    }
    EXPECT_FALSE(isOpen()) << panel().described();
}

void PanelSession::pressHotKey() {
    input().pressKey(KEY_LEFTALT);
    input().tapKey(KEY_SPACE);
    input().releaseKey(KEY_LEFTALT);
}

void PanelSession::openPanel() {
    pressHotKey();
    ASSERT_TRUE(soon(isOpen)) << scene_->programOutput();
    // The keyboard arrives a moment behind the picture.
    ASSERT_TRUE(soon([] { return isFocused("text Command"); })) << panel().described();
}

void PanelSession::selectFirstLine() {
    const auto text = editor().find("text");
    ASSERT_TRUE(text) << editor().described();
    input().chord({KEY_LEFTCTRL, KEY_HOME});
    input().chord({KEY_LEFTSHIFT, KEY_END});
    ASSERT_TRUE(soon([&] { return editor().selection(*text) == kFirstLine; })) << editor().selection(*text);
}

void PanelSession::deselect() {
    const auto text = editor().find("text");
    ASSERT_TRUE(text);
    input().chord({KEY_LEFTCTRL, KEY_END});
    ASSERT_TRUE(soon([&] { return editor().selection(*text).empty(); }));
}

void PanelSession::click(const AccessibleObject& object, int clicks) {
    hover(object);
    for (int count = 0; count < clicks; ++count) {
        input().pressButton(1);
        input().releaseButton(1);
    }
}

void PanelSession::hover(const AccessibleObject& object) {
    const DesktopRectangle place = panel().extents(object);
    input().movePointer(place.x + place.width / 2, place.y + place.height / 2);
}

void PanelSession::converse(const std::string& command, const std::string& answer) {
    answerWith(answer);
    input().type(command);
    EXPECT_TRUE(soon([&] { return PanelSession::command() == command; })) << PanelSession::command();
    input().tapKey(KEY_ENTER);
    (void)await("push button", "New chat");
}

void PanelSession::answerStreams(ScriptedChatServer::Handler handler) {
    server().answer(kStream, std::move(handler));
}

void PanelSession::answerWith(const std::string& text) {
    answerStreams([text](const ScriptedRequest&) { return chatStream({text}); });
}

void PanelSession::answerSlowly(const std::string& beginning, const std::string& end) {
    latch_ = makeLatch();
    answerStreams([beginning, end, latch = latch_](const ScriptedRequest&) {
        ScriptedAnswer answer = chatStream({beginning, end});
        answer.steps.insert(answer.steps.begin() + 1, WaitFor{latch});
        return answer;
    });
}

void PanelSession::finishAnswer() {
    if (latch_)
        latch_->release();
}

void PanelSession::answerWithStatus(int status) {
    answerStreams([status](const ScriptedRequest&) { return jsonAnswer(status, "{}"); });
}

bool PanelSession::closes() {
    return soon([] { return !isOpen(); });
}

AccessibleObject PanelSession::await(std::string_view role, std::string_view name) {
    std::optional<AccessibleObject> found;
    EXPECT_TRUE(soon([&] {
        found = panel().find(role, name);
        return found.has_value();
    })) << role
        << " \"" << name << "\" in\n"
        << panel().described();
    return found.value_or(AccessibleObject());
}

bool PanelSession::shows(std::string_view role, std::string_view name) {
    return panel().find(role, name).has_value();
}

bool PanelSession::goes(std::string_view role, std::string_view name) {
    return soon([&] { return !shows(role, name); });
}

bool PanelSession::isSelected(std::string_view row) {
    const auto found = panel().find("list item", row);
    return found && found->has(ATSPI_STATE_SELECTED);
}

bool PanelSession::isFocused(std::string_view object) {
    return panel().focus().starts_with(object);
}

std::string PanelSession::command() {
    const auto field = panel().find("text", "Command");
    return field ? panel().text(*field) : "";
}

std::string PanelSession::clipboard() {
    return runChild({"xclip", "-selection", "clipboard", "-o"}, 2s).output;
}

std::string PanelSession::openedLinks() {
    return readFile(desktop().homeDirectory() + "/opened-links");
}

std::string PanelSession::stored(const std::string& key) {
    const std::string all = readFile(desktop().homeDirectory() + "/.config/quillmoth/defaults.json");
    const std::size_t found = all.find('"' + key + '"');
    if (found == std::string::npos)
        return {};
    const std::size_t start = all.find_first_not_of(": ", found + key.size() + 2);
    return all.substr(start, all.find_first_of(",}\n", start) - start);
}

std::uint32_t PanelSession::pixel(int x, int y) {
    xcb_connection_t* connection = desktop().connection();
    const auto cookie = xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, desktop().rootWindow(),
                                      static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 1, 1, ~0U);
    auto* reply = xcb_get_image_reply(connection, cookie, nullptr);
    if (!reply)
        return 0;
    const std::uint8_t* bytes = xcb_get_image_data(reply);
    const std::uint32_t color = bytes[0] | (bytes[1] << 8U) | (bytes[2] << 16U);
    std::free(reply);
    return color;
}

std::uint32_t PanelSession::pixelIn(const AccessibleObject& object, int fromLeft, int fromTop) {
    const DesktopRectangle place = panel().extents(object);
    return pixel(place.x + fromLeft, place.y + fromTop);
}

void PanelSession::expectFrontKept(const std::string& selection) {
    EXPECT_TRUE(scene_->isEditorActive());
    EXPECT_EQ(desktop().windows().inputFocus(), inputFocus_);
    const auto text = editor().find("text");
    EXPECT_EQ(text ? editor().selection(*text) : "no text", selection);
}

} // namespace quillmoth::test
