#include "tests/desktop/support/VirtualDesktop.h"

#include <QImage>
#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <linux/input-event-codes.h>
#include <poll.h>
#include <stdexcept>
#include <unistd.h>
#include <xcb/xcb.h>

namespace quillmoth::test {

namespace {

constexpr std::chrono::seconds kStartDeadline(10);

/// A pipe through which a child tells where it can be reached: one line.
class AddressPipe {
public:
    AddressPipe() {
        if (pipe2(ends_, O_CLOEXEC) != 0)
            throw std::runtime_error("no pipe");
    }

    AddressPipe(const AddressPipe&) = delete;
    AddressPipe& operator=(const AddressPipe&) = delete;

    ~AddressPipe() {
        close(ends_[0]);
        close(ends_[1]);
    }

    [[nodiscard]] int writeEnd() const { return ends_[1]; }

    std::string readLine(const std::string& program) {
        std::string line;
        char character = 0;
        for (;;) {
            pollfd entry = {ends_[0], POLLIN, 0};
            if (poll(&entry, 1, 10000) <= 0 || read(ends_[0], &character, 1) != 1)
                throw std::runtime_error(program + " does not start");
            if (character == '\n')
                return line;
            line += character;
        }
    }

private:
    int ends_[2] = {-1, -1};
};

std::string variable(const char* name) {
    const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): tests are set up on one thread
    return value ? value : "";
}

} // namespace

VirtualDesktop::VirtualDesktop(VirtualDesktopOptions options) : options_(std::move(options)) {
    if (const auto wanted = variable("QUILLMOTH_WINDOW_MANAGER");
        !wanted.empty() && !options_.windowManager.empty())
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
    for (const auto& [name, value] : formerVariables_) {
        if (value)
            setenv(name.c_str(), value->c_str(), 1); // NOLINT(concurrency-mt-unsafe)
        else
            unsetenv(name.c_str()); // NOLINT(concurrency-mt-unsafe)
    }
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
}

void VirtualDesktop::setVariable(const char* name, const std::string& value) {
    const char* former = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
    formerVariables_.emplace_back(name, former ? std::optional<std::string>(former) : std::nullopt);
    setenv(name, value.c_str(), 1); // NOLINT(concurrency-mt-unsafe)
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
    AddressPipe pipe;
    const std::string screen = std::to_string(options_.width) + 'x' + std::to_string(options_.height) + "x24";
    server_.emplace(std::vector<std::string>{"Xvfb", "-displayfd", std::to_string(pipe.writeEnd()), "-screen",
                                             "0", screen, "-nolisten", "tcp", "-noreset"},
                    ChildOptions{.inheritedFileDescriptor = pipe.writeEnd()});
    display_ = ':' + pipe.readLine("Xvfb");
    setVariable("DISPLAY", display_);
}

void VirtualDesktop::connect() {
    connection_ = xcb_connect(display_.c_str(), nullptr);
    if (xcb_connection_has_error(connection_))
        throw std::runtime_error("no connection to the X server");
    rootWindow_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    input_ = std::make_unique<DesktopInput>(connection_, rootWindow_);
    windows_ = std::make_unique<DesktopWindows>(connection_, rootWindow_);
}

void VirtualDesktop::startBus() {
    AddressPipe pipe;
    bus_.emplace(std::vector<std::string>{"dbus-daemon", "--session", "--nofork", "--nopidfile",
                                          "--address=unix:path=" + directory_ + "/runtime/bus",
                                          "--print-address=" + std::to_string(pipe.writeEnd())},
                 ChildOptions{.inheritedFileDescriptor = pipe.writeEnd()});
    setVariable("DBUS_SESSION_BUS_ADDRESS", pipe.readLine("dbus-daemon"));
}

void VirtualDesktop::startAccessibility() {
    setVariable("GTK_MODULES", "");
    setVariable("NO_AT_BRIDGE", "0");
    accessibilityBus_.emplace(
        std::vector<std::string>{"/usr/libexec/at-spi-bus-launcher", "--launch-immediately", "--a11y=1"});
    const bool answered = holdsWithin(kStartDeadline, [] {
        const auto result = runChild({"dbus-send", "--session", "--print-reply", "--dest=org.a11y.Bus",
                                      "/org/a11y/bus", "org.a11y.Bus.GetAddress"},
                                     std::chrono::seconds(2));
        return result.exitCode == 0;
    });
    if (!answered)
        throw std::runtime_error("the accessibility bus does not start");
    // The call above may have had the bus started by D-Bus, which does not enable it.
    const auto enabled = runChild({"dbus-send", "--session", "--print-reply", "--dest=org.a11y.Bus",
                                   "/org/a11y/bus", "org.freedesktop.DBus.Properties.Set",
                                   "string:org.a11y.Status", "string:IsEnabled", "variant:boolean:true"},
                                  std::chrono::seconds(2));
    if (enabled.exitCode != 0)
        throw std::runtime_error("accessibility cannot be enabled: " + enabled.output);
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
    const auto cookie = xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, rootWindow_, 0, 0,
                                      static_cast<std::uint16_t>(options_.width),
                                      static_cast<std::uint16_t>(options_.height), ~0U);
    auto* reply = xcb_get_image_reply(connection_, cookie, nullptr);
    if (!reply)
        return false;
    const QImage image(xcb_get_image_data(reply), options_.width, options_.height, options_.width * 4,
                       QImage::Format_RGB32);
    const bool saved = image.save(QString::fromStdString(path), "PNG");
    std::free(reply);
    return saved;
}

} // namespace quillmoth::test
