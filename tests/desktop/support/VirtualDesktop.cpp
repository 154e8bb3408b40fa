#include "tests/desktop/support/VirtualDesktop.h"

#include <QImage>
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <linux/input-event-codes.h>
#include <sstream>
#include <stdexcept>
#include <xcb/xcb.h>

namespace quillmoth::test {

namespace {

constexpr std::chrono::seconds kStartDeadline(10);
constexpr std::uint16_t kWidth = 1280;

/// Where the child says that it can be reached: its first whole line that fits.
std::string awaitAddress(const ChildProcess& child, bool (*fits)(std::string_view line)) {
    std::string address;
    const bool isThere = holdsWithin(kStartDeadline, [&] {
        std::istringstream output(child.output());
        for (std::string line; address.empty() && std::getline(output, line) && !output.eof();) {
            if (fits(line))
                address = line;
        }
        return !address.empty();
    });
    if (!isThere)
        throw std::runtime_error("a part of the desktop does not start: " + child.output());
    return address;
}

void setVariable(const char* name, const std::string& value) {
    setenv(name, value.c_str(), 1); // NOLINT(concurrency-mt-unsafe)
}

} // namespace

VirtualDesktop::VirtualDesktop(VirtualDesktopOptions options) : options_(std::move(options)) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): tests are set up on one thread
    const char* wanted = std::getenv("QUILLMOTH_WINDOW_MANAGER");
    if (wanted && *wanted && !options_.windowManager.empty())
        options_.windowManager = wanted;
    makeDirectories();
    startServer();
    connect();
    startBus();
    if (options_.accessibility)
        startAccessibility();
    awaitKeymap();
    startWindowManager();
}

VirtualDesktop::~VirtualDesktop() {
    manager_.reset();
    accessibilityBus_.reset();
    bus_.reset();
    xcb_disconnect(connection_);
    server_.reset();
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
}

void VirtualDesktop::makeDirectories() {
    std::string pattern = std::filesystem::temp_directory_path() / "quillmoth-desktop-XXXXXX";
    if (!mkdtemp(pattern.data()))
        throw std::runtime_error("no temporary folder");
    directory_ = pattern;
    const std::pair<const char*, const char*> folders[] = {{"HOME", "home"},
                                                           {"XDG_RUNTIME_DIR", "runtime"},
                                                           {"XDG_CONFIG_HOME", "home/.config"},
                                                           {"XDG_DATA_HOME", "home/.local/share"},
                                                           {"XDG_CACHE_HOME", "home/.cache"}};
    for (const auto& [name, folder] : folders) {
        const std::string path = directory_ + '/' + folder;
        std::filesystem::create_directories(path);
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        setVariable(name, path);
    }
}

void VirtualDesktop::startServer() {
    const std::string screen = std::to_string(kWidth) + 'x' + std::to_string(options_.height) + "x24";
    server_.emplace(std::vector<std::string>{"Xvfb", "-displayfd", "1", "-screen", "0", screen, "-nolisten",
                                             "tcp", "-noreset"});
    setVariable("DISPLAY", ':' + awaitAddress(*server_, [](std::string_view line) {
                               return !line.empty() &&
                                      line.find_first_not_of("0123456789") == std::string_view::npos;
                           }));
}

void VirtualDesktop::connect() {
    connection_ = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection_))
        throw std::runtime_error("no connection to the X server");
    rootWindow_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    input_ = std::make_unique<DesktopInput>(connection_, rootWindow_);
    windows_ = std::make_unique<DesktopWindows>(connection_, rootWindow_);
}

void VirtualDesktop::startBus() {
    bus_.emplace(std::vector<std::string>{"dbus-daemon", "--session", "--nofork", "--nopidfile",
                                          "--address=unix:path=" + directory_ + "/runtime/bus",
                                          "--print-address=1"});
    setVariable("DBUS_SESSION_BUS_ADDRESS",
                awaitAddress(*bus_, [](std::string_view line) { return line.starts_with("unix:"); }));
}

void VirtualDesktop::startAccessibility() {
    setVariable("GTK_MODULES", "");
    setVariable("NO_AT_BRIDGE", "0");
    accessibilityBus_.emplace(
        std::vector<std::string>{"/usr/libexec/at-spi-bus-launcher", "--launch-immediately", "--a11y=1"});
    // D-Bus may have started another one for the call, which does not enable it; so it is set.
    if (!holdsWithin(kStartDeadline, [] { return setAccessible(true); }))
        throw std::runtime_error("accessibility cannot be enabled");
}

bool VirtualDesktop::setAccessible(bool isAccessible) {
    return runChild({"dbus-send", "--session", "--print-reply", "--dest=org.a11y.Bus", "/org/a11y/bus",
                     "org.freedesktop.DBus.Properties.Set", "string:org.a11y.Status", "string:IsEnabled",
                     isAccessible ? "variant:boolean:true" : "variant:boolean:false"},
                    std::chrono::seconds(5))
               .exitCode == 0;
}

bool VirtualDesktop::grabKeyboard() const {
    const auto cookie = xcb_grab_keyboard(connection_, 0, rootWindow_, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC,
                                          XCB_GRAB_MODE_ASYNC);
    const auto reply = ownedReply(xcb_grab_keyboard_reply(connection_, cookie, nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

void VirtualDesktop::ungrabKeyboard() const {
    xcb_ungrab_keyboard(connection_, XCB_CURRENT_TIME);
    xcb_flush(connection_);
}

void VirtualDesktop::awaitKeymap() {
    // The first synthetic key makes the server swap the keymap for that of the XTEST keyboard, which drops
    // passive grabs; that is to happen before a test looks.
    input_->tapKey(KEY_LEFTSHIFT);
    waitFor(
        [this] {
            bool mapped = false;
            while (auto* event = xcb_poll_for_event(connection_)) {
                mapped = mapped || (event->response_type & 0x7f) == XCB_MAPPING_NOTIFY;
                std::free(event);
            }
            return mapped;
        },
        std::chrono::milliseconds(500));
}

void VirtualDesktop::startWindowManager() {
    if (options_.windowManager.empty())
        return;
    std::vector<std::string> command = {options_.windowManager};
    if (options_.windowManager == "openbox")
        command.emplace_back("--sm-disable");
    else if (options_.windowManager == "xfwm4")
        command.insert(command.end(), {"--sm-client-disable", "--compositor=off"});
    else if (options_.windowManager == "mutter")
        command.insert(command.end(), {"--x11", "--sm-disable"});
    manager_.emplace(command);
    // A manager announces itself before it manages anything, and what is mapped in between may stay unseen;
    // so show it a window until it takes one.
    const bool manages = holdsWithin(kStartDeadline, [this] {
        const auto window = showProbe();
        const bool managed = holdsWithin(std::chrono::milliseconds(200), [&] {
            const auto windows = windows_->managedWindows();
            return std::find(windows.begin(), windows.end(), window) != windows.end();
        });
        xcb_destroy_window(connection_, window);
        xcb_flush(connection_);
        return managed;
    });
    if (!manages)
        throw std::runtime_error(options_.windowManager + " does not start: " + manager_->output());
    waitFor([this] { return windows_->managedWindows().empty(); });
}

std::uint32_t VirtualDesktop::showProbe() {
    const auto window = xcb_generate_id(connection_);
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, rootWindow_, 0, 0, 10, 10, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_map_window(connection_, window);
    xcb_flush(connection_);
    return window;
}

void VirtualDesktop::stopWindowManager() {
    manager_.reset();
}

bool VirtualDesktop::saveScreenshot(const std::string& path) const {
    const auto cookie = xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, rootWindow_, 0, 0, kWidth,
                                      static_cast<std::uint16_t>(options_.height), ~0U);
    const auto reply = ownedReply(xcb_get_image_reply(connection_, cookie, nullptr));
    if (!reply)
        return false;
    const QImage image(xcb_get_image_data(reply.get()), kWidth, options_.height, kWidth * 4,
                       QImage::Format_RGB32);
    return image.save(QString::fromStdString(path), "PNG");
}

} // namespace quillmoth::test
