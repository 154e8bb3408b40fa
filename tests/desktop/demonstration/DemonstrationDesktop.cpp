#include "tests/desktop/demonstration/DemonstrationDesktop.h"

#include <xcb/xcb.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <utility>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;

constexpr const char* kPanelTitle = "Quillmoth Floating";
constexpr auto kStartDeadline = 20s;

void writeFile(const std::string& path, const std::string& text) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path) << text;
}

std::string readFile(const std::string& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// A desktop's settings name its fonts; a new one has none.
constexpr const char* kFonts = R"(<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "urn:fontconfig:fonts.dtd">
<fontconfig>
  <alias binding="strong"><family>sans-serif</family><prefer><family>Inter</family></prefer></alias>
  <alias binding="strong"><family>Sans</family><prefer><family>Inter</family></prefer></alias>
  <alias binding="strong"><family>monospace</family><prefer><family>JetBrains Mono</family></prefer></alias>
</fontconfig>
)";

template<class Reply>
std::unique_ptr<Reply, void (*)(void*)> owned(Reply* reply) {
    return {reply, std::free};
}

bool isViewable(xcb_connection_t* connection, xcb_window_t window) {
    const auto reply = owned(
        xcb_get_window_attributes_reply(connection, xcb_get_window_attributes(connection, window), nullptr));
    return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

} // namespace

DemonstrationDesktop::DemonstrationDesktop(DemonstrationOptions options)
    : options_(std::move(options)),
      desktop_(
          {.windowManager = options_.windowManager, .accessibility = true, .width = 1280, .height = 800}) {
    writeFile(desktop_.homeDirectory() + "/.config/fontconfig/fonts.conf", kFonts);
    std::filesystem::create_directories(options_.output);
    for (const auto& entry : std::filesystem::directory_iterator(options_.output)) {
        if (entry.path().extension() == ".png")
            std::filesystem::remove(entry.path());
    }
}

bool DemonstrationDesktop::check(const std::string& what, const std::function<bool()>& condition,
                                 const std::function<std::string()>& details,
                                 std::chrono::milliseconds deadline) {
    const auto start = std::chrono::steady_clock::now();
    const bool passed = holdsWithin(deadline, condition);
    const auto time =
        std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start);
    report_.add(
        {.what = what, .passed = passed, .time = time, .details = !passed && details ? details() : ""});
    if (!passed)
        takePicture("failed");
    return passed;
}

void DemonstrationDesktop::takePicture(const std::string& name) {
    const std::string number = std::to_string(++pictureCount_);
    desktop_.saveScreenshot(options_.output + "/" + (number.size() < 2 ? "0" : "") + number + "-" + name +
                            ".png");
}

void DemonstrationDesktop::startServer(const std::string& script) {
    const std::string path = desktop_.temporaryDirectory() + "/script.json";
    writeFile(path, script);
    server_.emplace(
        std::vector<std::string>{options_.server, "--port", "0", "--delay-ms", "30", "--script", path});
    const auto address = [this] {
        const std::string output = server_->output();
        const std::size_t start = output.find("http://");
        const std::size_t end = output.find_first_of(" \n", start);
        return start == std::string::npos || end == std::string::npos ? ""
                                                                      : output.substr(start, end - start);
    };
    if (!holdsWithin(kStartDeadline, [&] { return !address().empty(); }))
        throw std::runtime_error("The chat server did not start: " + server_->output());
    serverAddress_ = address();
    while (serverAddress_.back() == '/' || serverAddress_.back() == '.')
        serverAddress_.pop_back();
}

void DemonstrationDesktop::startEditor(const std::string& text) {
    const std::string path = desktop_.homeDirectory() + "/letter.txt";
    writeFile(path, text);
    // Its settings stay in memory: there is no store for them on a new desktop.
    editor_.emplace(std::vector<std::string>{"mousepad", "--disable-server", path},
                    ChildOptions{.environment = {{"GSETTINGS_BACKEND", "memory"}}});
    const bool shown = holdsWithin(kStartDeadline, [&] {
        editorWindow_ = desktop_.windows().windowTitled("letter.txt").value_or(0);
        return editorWindow_ != 0 && desktop_.windows().activeWindow() == editorWindow_;
    });
    if (!shown || !holdsWithin(kStartDeadline, [&] { return editorText() == text; }))
        throw std::runtime_error("The editor did not come up: " + editor_->output());
}

void DemonstrationDesktop::startProgram() {
    writeFile(desktop_.homeDirectory() + "/.config/quillmoth/defaults.json",
              R"({"firstTime":false,"accessibilityConsent":true})");
    program_.emplace(std::vector<std::string>{options_.program},
                     ChildOptions{.environment = {{"QUILLMOTH_GATEWAY_BASE_URL", serverAddress_},
                                                  {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"}}});
}

std::optional<int> DemonstrationDesktop::quitProgram() {
    const ChildResult asked = runChild({options_.program, "--quit"}, 5s);
    return asked.exitCode == 0 ? program_->waitForExit(5s) : asked.exitCode;
}

bool DemonstrationDesktop::isEditorActive() const {
    const DesktopWindows& windows = desktop_.windows();
    return windows.activeWindow() == editorWindow_;
}

std::uint32_t DemonstrationDesktop::panelWindow() const {
    xcb_connection_t* connection = desktop_.connection();
    const auto tree =
        owned(xcb_query_tree_reply(connection, xcb_query_tree(connection, desktop_.rootWindow()), nullptr));
    if (!tree)
        return 0;
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    const DesktopWindows& windows = desktop_.windows();
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
        if (isViewable(connection, children[i]) && windows.title(children[i]) == kPanelTitle)
            return children[i];
    }
    return 0;
}

bool DemonstrationDesktop::isPanelVisible() const {
    return panelWindow() != 0;
}

std::string DemonstrationDesktop::probe(const ChildProcess& process, const std::string& what) const {
    return runChild({ATSPI_PROBE, "--pid", std::to_string(process.processIdentifier()), what}, 5s).output;
}

std::string DemonstrationDesktop::editorText() const {
    return probe(*editor_, "--text");
}

std::string DemonstrationDesktop::editorSelection() const {
    return probe(*editor_, "--selection");
}

std::string DemonstrationDesktop::panelContents() const {
    return probe(*program_, "--tree");
}

bool DemonstrationDesktop::panelShows(const std::string& text) const {
    return panelContents().find(text) != std::string::npos;
}

std::string DemonstrationDesktop::document(const std::string& name) const {
    return readFile(desktop_.homeDirectory() + "/Documents/Quillmoth/" + name);
}

} // namespace quillmoth::test
