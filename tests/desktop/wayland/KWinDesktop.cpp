#include "tests/desktop/wayland/KWinDesktop.h"

#include "tests/desktop/wayland/KWinInput.h"
#include "tests/desktop/wayland/KWinPicture.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

constexpr const char* kProgram = "/usr/bin/kwin_wayland";
constexpr const char* kSocket = "wayland-kwin";

/// KWin takes input from those programs alone whose entry asks for it. It goes by the whole path of the
/// program, without arguments.
std::string inputEntry(const std::string& program) {
    return "[Desktop Entry]\nType=Application\nName=Test\nNoDisplay=true\n"
           "X-KDE-Wayland-Interfaces=org_kde_kwin_fake_input\nExec=" +
           program + '\n';
}

/// What KWin starts as its session, and ends with: it tells how to reach the X server beside it.
constexpr const char* kSession = R"(#!/bin/sh
printf '%s\n%s\n' "$DISPLAY" "$XAUTHORITY" > "$HOME/display.new"
mv "$HOME/display.new" "$HOME/display"
exec sleep infinity
)";

void setForAll(const char* name, const std::string& value) {
    setenv(name, value.c_str(), 1); // NOLINT(concurrency-mt-unsafe): tests are set up on one thread
}

ChildResult callKeyService(const std::string& method, const std::vector<std::string>& arguments) {
    std::vector<std::string> command = {"gdbus",
                                        "call",
                                        "--session",
                                        "--dest",
                                        "org.kde.kglobalaccel",
                                        "--object-path",
                                        "/kglobalaccel",
                                        "--method",
                                        "org.kde.KGlobalAccel." + method};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return runChild(command, 5s);
}

constexpr const char* kOtherAction = "['org.example.runner', 'run', 'Runner', 'Run a Command']";

} // namespace

bool KWinDesktop::isThere() {
    return fs::exists(kProgram);
}

KWinDesktop::KWinDesktop() : program_("", kHeight) {
    const std::string folder = program_.desktop().temporaryDirectory();
    // The installed file has a capability, which not every machine grants; a copy has none.
    const std::string program = folder + "/kwin_wayland";
    fs::copy_file(kProgram, program);
    const std::string session = folder + "/session";
    std::ofstream(session) << kSession;
    fs::permissions(session, fs::perms::owner_all);
    const std::string entries = folder + "/kwin/applications";
    fs::create_directories(entries);
    std::ofstream(entries + "/test.desktop") << inputEntry(fs::read_symlink("/proc/self/exe"));
    std::ofstream(entries + "/program.desktop") << inputEntry(ProgramSession::program());
    unsetenv("DISPLAY"); // NOLINT(concurrency-mt-unsafe): tests are set up on one thread
    kwin_.emplace(std::vector<std::string>{program, "--virtual", "--width", std::to_string(kWidth),
                                           "--height", std::to_string(kHeight), "--no-lockscreen",
                                           "--xwayland", "--socket", kSocket, "--exit-with-session", session},
                  // The entries stand in that menu, and nothing that the program does to its home makes KWin
                  // read them anew.
                  ChildOptions{.environment = {{"XDG_MENU_PREFIX", "kf5-"},
                                               {"XDG_DATA_HOME", folder + "/kwin"},
                                               {"XDG_CONFIG_HOME", folder + "/kwin"},
                                               {"KWIN_SCREENSHOT_NO_PERMISSION_CHECKS", "1"}}});
    if (!holdsWithin(30s, [this] { return fs::exists(program_.path("display")); }))
        throw std::runtime_error("KWin does not start: " + kwin_->output());
    setForAll("WAYLAND_DISPLAY", kSocket);
    setForAll("XDG_SESSION_TYPE", "wayland");
    input_ = std::make_unique<KWinInput>();
}

KWinDesktop::~KWinDesktop() {
    input_.reset();
    program_.kill();
    kwin_.reset();
}

ProgramSession::Environment KWinDesktop::onXwayland() const {
    std::ifstream file(program_.path("display"));
    std::string display;
    std::string authority;
    std::getline(file, display);
    std::getline(file, authority);
    return {
        {"DISPLAY", display}, {"XAUTHORITY", authority}, {"GDK_BACKEND", "x11"}, {"QT_QPA_PLATFORM", "xcb"}};
}

void KWinDesktop::bindElsewhere(int key) {
    callKeyService("doRegister", {kOtherAction});
    callKeyService("setShortcutKeys", {kOtherAction, "[([" + std::to_string(key) + ", 0, 0, 0],)]", "6"});
}

void KWinDesktop::freeElsewhere() {
    callKeyService("unregister", {"org.example.runner", "run"});
}

std::string KWinDesktop::componentsWithKeys() {
    return callKeyService("allMainComponents", {}).output;
}

void KWinDesktop::saveScreenshot(const std::string& path) {
    saveKWinPicture(path);
}

} // namespace quillmoth::test
