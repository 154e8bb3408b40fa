#include "tests/desktop/wayland/GnomeDesktop.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gio/gio.h>
#include <grp.h>
#include <linux/input-event-codes.h>
#include <nlohmann/json.hpp>
#include <regex>
#include <stdexcept>
#include <unistd.h>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

constexpr uid_t kOrdinaryUser = 65534;
constexpr int kCallMilliseconds = 5000;
constexpr auto kHandsPause = 30ms;

void setTo(const char* name, const std::string& value) {
    setenv(name, value.c_str(), 1); // NOLINT(concurrency-mt-unsafe): tests are set up on one thread
}

int keyThatWrites(char character) {
    constexpr std::string_view kRows[] = {"1234567890", "qwertyuiop", "asdfghjkl", "zxcvbnm"};
    constexpr int kFirst[] = {KEY_1, KEY_Q, KEY_A, KEY_Z};
    for (int row = 0; row < 4; ++row) {
        if (const auto place = kRows[row].find(character); place != std::string_view::npos)
            return kFirst[row] + static_cast<int>(place);
    }
    return character == '.' ? KEY_DOT : KEY_SPACE;
}

bool hasOwner(const std::string& name) {
    return runChild({"gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path",
                     "/org/freedesktop/DBus", "--method", "org.freedesktop.DBus.NameHasOwner", name},
                    5s)
               .output.find("true") != std::string::npos;
}

} // namespace

void becomeOrdinaryUser() {
    if (geteuid() != 0)
        return;
    // For what the tests leave behind.
    fs::create_directories("screenshots");
    if (chown("screenshots", kOrdinaryUser, kOrdinaryUser) != 0 || setgroups(0, nullptr) != 0 ||
        setresgid(kOrdinaryUser, kOrdinaryUser, kOrdinaryUser) != 0 ||
        setresuid(kOrdinaryUser, kOrdinaryUser, kOrdinaryUser) != 0)
        throw std::runtime_error("the ordinary user is not to be had");
}

GnomeDesktop::GnomeDesktop(bool hasExtension)
    : program_(""), directory_(program_.path("session")), bus_(nullptr, [](GDBusConnection* bus) {
          if (bus)
              g_object_unref(bus);
      }) {
    fs::create_directories(directory_);
    if (hasExtension)
        installExtension();
    startShell();
    startSettingsDaemon();
    connectHands();
}

GnomeDesktop::~GnomeDesktop() {
    program_.kill();
    bus_.reset();
    settingsDaemon_.reset();
    shell_.reset();
    systemBus_.reset();
}

void GnomeDesktop::installExtension() const {
    const std::string source = QUILLMOTH_SOURCE_DIRECTORY "/packaging/gnome-extension/";
    const std::string target = program_.path(".local/share/gnome-shell/extensions/shell@quillmoth.org/");
    fs::create_directories(target);
    fs::copy_file(source + "metadata.json", target + "metadata.json");
    std::ofstream code(target + "extension.js");
    for (const char* part : {"head-43.js", "service.js", "foot-43.js"})
        code << std::ifstream(source + part).rdbuf();
    runChild({"gsettings", "set", "org.gnome.shell", "enabled-extensions", "['shell@quillmoth.org']"}, 5s);
}

void GnomeDesktop::startShell() {
    const std::string address = "unix:path=" + directory_ + "/system-bus";
    systemBus_.emplace(std::vector<std::string>{"dbus-daemon", "--session", "--nofork", "--nopidfile",
                                                "--address=" + address});
    unsetenv("DISPLAY"); // NOLINT(concurrency-mt-unsafe)
    setTo("DBUS_SYSTEM_BUS_ADDRESS", address);
    setTo("XDG_SESSION_TYPE", "wayland");
    setTo("XDG_CURRENT_DESKTOP", "GNOME");
    runChild({"gsettings", "set", "org.gnome.shell", "welcome-dialog-last-shown-version", "99"}, 5s);
    runChild({"gsettings", "set", "org.gnome.desktop.interface", "enable-animations", "false"}, 5s);
    shell_.emplace(
        std::vector<std::string>{"gnome-shell", "--headless", "--wayland", "--virtual-monitor", "1280x800",
                                 "--unsafe-mode"},
        ChildOptions{.environment = {{"LIBGL_ALWAYS_SOFTWARE", "1"}, {"GNOME_SHELL_SESSION_MODE", "user"}}});
    std::smatch display;
    std::smatch xDisplay;
    std::string output;
    const bool isUp = holdsWithin(40s, [&] {
        output = shell_->output();
        return std::regex_search(output, display, std::regex("Using Wayland display name '([^']*)'")) &&
               std::regex_search(output, xDisplay, std::regex("Using public X11 display (:[0-9]+)")) &&
               hasOwner("org.gnome.Shell") && hasOwner("org.gnome.Mutter.RemoteDesktop");
    });
    if (!isUp)
        throw std::runtime_error("GNOME Shell does not start: " + shell_->output());
    setTo("WAYLAND_DISPLAY", display[1]);
    setTo("DISPLAY", xDisplay[1]);
    // NOLINTNEXTLINE(concurrency-mt-unsafe)
    for (const auto& entry : fs::directory_iterator(std::getenv("XDG_RUNTIME_DIR"))) {
        if (entry.path().filename().string().starts_with(".mutter-Xwaylandauth"))
            setTo("XAUTHORITY", entry.path());
    }
}

void GnomeDesktop::startSettingsDaemon() {
    settingsDaemon_.emplace(std::vector<std::string>{"/usr/libexec/gsd-media-keys"});
    waitFor([] { return hasOwner("org.gnome.SettingsDaemon.MediaKeys"); });
}

void GnomeDesktop::connectHands() {
    bus_.reset(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    std::string answer;
    std::smatch path;
    const bool isThere = holdsWithin(10s, [&] {
        answer = call("org.gnome.Mutter.RemoteDesktop", "/org/gnome/Mutter/RemoteDesktop",
                      "org.gnome.Mutter.RemoteDesktop", "CreateSession", "()");
        return std::regex_search(answer, path, std::regex("'(/[^']*)'"));
    });
    if (!isThere)
        throw std::runtime_error("no session of a remote desktop: " + shell_->output());
    handsPath_ = path[1];
    hands("Start", "()");
    // Programs look for a keyboard and a pointer once these have been used.
    tapKey(KEY_LEFTSHIFT);
    movePointer(kWidth / 2, kHeight - 1);
    // A shell that has just started shows all windows from above.
    waitFor([this] { return evaluate("Main.layoutManager._startingUp").find("false") != std::string::npos; });
    evaluate("Main.overview.hide()");
    waitFor([this] { return evaluate("Main.overview.visible") == "false"; });
}

std::string GnomeDesktop::call(const char* service, const std::string& path, const char* interface,
                               const char* method, const std::string& arguments) const {
    GVariant* parameters = g_variant_parse(nullptr, arguments.c_str(), nullptr, nullptr, nullptr);
    GVariant* reply =
        g_dbus_connection_call_sync(bus_.get(), service, path.c_str(), interface, method, parameters, nullptr,
                                    G_DBUS_CALL_FLAGS_NONE, kCallMilliseconds, nullptr, nullptr);
    if (!reply)
        return {};
    gchar* text = g_variant_print(reply, FALSE);
    std::string answer = text;
    g_free(text);
    g_variant_unref(reply);
    return answer;
}

std::string GnomeDesktop::evaluate(const std::string& line) const {
    GVariant* reply =
        g_dbus_connection_call_sync(bus_.get(), "org.gnome.Shell", "/org/gnome/Shell", "org.gnome.Shell",
                                    "Eval", g_variant_new("(s)", line.c_str()), nullptr,
                                    G_DBUS_CALL_FLAGS_NONE, kCallMilliseconds, nullptr, nullptr);
    if (!reply)
        return {};
    gboolean isDone = FALSE;
    const gchar* text = nullptr;
    g_variant_get(reply, "(b&s)", &isDone, &text);
    std::string answer = text;
    g_variant_unref(reply);
    return answer;
}

void GnomeDesktop::hands(const char* method, const std::string& arguments) const {
    call("org.gnome.Mutter.RemoteDesktop", handsPath_, "org.gnome.Mutter.RemoteDesktop.Session", method,
         arguments);
}

void GnomeDesktop::sendKey(int key, bool isDown) {
    hands("NotifyKeyboardKeycode", "(uint32 " + std::to_string(key) + (isDown ? ", true)" : ", false)"));
}

void GnomeDesktop::tapKey(int key) {
    pressKey(key);
    releaseKey(key);
}

void GnomeDesktop::chord(const std::vector<int>& keys) {
    for (const int key : keys)
        pressKey(key);
    releaseKey(keys.back());
    // Keys go by way of an input method, which modifiers overtake.
    letPass(kHandsPause);
    for (auto key = std::next(keys.rbegin()); key != keys.rend(); ++key)
        releaseKey(*key);
}

void GnomeDesktop::type(std::string_view text) {
    for (const char character : text)
        tapKey(keyThatWrites(character));
}

void GnomeDesktop::sendButton(bool isDown) {
    hands("NotifyPointerButton", "(int32 " + std::to_string(BTN_LEFT) + (isDown ? ", true)" : ", false)"));
}

void GnomeDesktop::movePointer(int x, int y) {
    // Into a corner first, since only steps can be told.
    hands("NotifyPointerMotionRelative", "(9000.0, 9000.0)");
    hands("NotifyPointerMotionRelative",
          "(" + std::to_string(x - kWidth + 1) + ".0, " + std::to_string(y - kHeight + 1) + ".0)");
}

void GnomeDesktop::click(int x, int y, int clicks) {
    movePointer(x, y);
    for (int count = 0; count < clicks; ++count) {
        sendButton(true);
        sendButton(false);
    }
}

void GnomeDesktop::drag(int fromX, int fromY, int byX, int byY) {
    constexpr int kSteps = 10;
    movePointer(fromX, fromY);
    sendButton(true);
    for (int step = 0; step < kSteps; ++step)
        hands("NotifyPointerMotionRelative",
              "(" + std::to_string(byX / kSteps) + ".0, " + std::to_string(byY / kSteps) + ".0)");
    sendButton(false);
}

std::string GnomeDesktop::front() const {
    const auto name =
        nlohmann::json::parse(evaluate("global.display.focus_window?.get_wm_class() ?? ''"), nullptr, false);
    return name.is_string() ? name.get<std::string>() : "";
}

DesktopRectangle GnomeDesktop::rectangleOf(const std::string& title) const {
    const auto place = nlohmann::json::parse(
        evaluate(
            "(() => { const w = global.get_window_actors().map(a => a.meta_window).find(w => w.title === '" +
            title +
            "'); const r = w?.get_frame_rect(); return r ? [r.x, r.y, r.width, r.height] : [0, 0, 0, 0]; "
            "})()"),
        nullptr, false);
    if (!place.is_array())
        return {};
    return {.x = place[0], .y = place[1], .width = place[2], .height = place[3]};
}

std::string GnomeDesktop::clipboard(bool isPrimary, const std::string& type) {
    std::vector<std::string> command = {"xclip", "-o", "-selection", isPrimary ? "primary" : "clipboard"};
    if (!type.empty())
        command.insert(command.end(), {"-t", type});
    return runChild(command, 2s).output;
}

void GnomeDesktop::saveScreenshot(const std::string& path) const {
    call("org.gnome.Shell.Screenshot", "/org/gnome/Shell/Screenshot", "org.gnome.Shell.Screenshot",
         "Screenshot", "(false, false, '" + fs::absolute(path).string() + "')");
}

} // namespace quillmoth::test
