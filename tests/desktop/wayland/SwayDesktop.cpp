#include "tests/desktop/wayland/SwayDesktop.h"

#include "tests/desktop/wayland/WlrootsInput.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <unistd.h>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

/// sway does not run as root.
constexpr const char* kOrdinaryUser = "65534";

constexpr const char* kConfiguration = R"(output HEADLESS-1 mode 1280x800
default_border none
focus_follows_mouse no
)";

std::string firstFile(const std::string& folder, const std::string& beginning) {
    for (const auto& entry : fs::directory_iterator(folder)) {
        const std::string name = entry.path().filename();
        if (name.starts_with(beginning) && !name.ends_with(".lock"))
            return entry.path();
    }
    return {};
}

void set(const char* name, const std::string& value) {
    setenv(name, value.c_str(), 1); // NOLINT(concurrency-mt-unsafe): tests are set up on one thread
}

} // namespace

SwayDesktop::SwayDesktop() : program_("") {
    std::string pattern = fs::temp_directory_path() / "quillmoth-sway-XXXXXX";
    if (!mkdtemp(pattern.data()))
        throw std::runtime_error("no temporary folder");
    directory_ = pattern;
    std::ofstream(directory_ + "/config") << kConfiguration;
    std::vector<std::string> command = {"sway", "-c", directory_ + "/config"};
    if (geteuid() == 0) {
        const uid_t user = static_cast<uid_t>(std::stoul(kOrdinaryUser));
        if (chown(directory_.c_str(), user, user) != 0)
            throw std::runtime_error("no folder for an ordinary user");
        command.insert(command.begin(), {"setpriv", "--reuid", kOrdinaryUser, "--regid", kOrdinaryUser,
                                         "--clear-groups", "--"});
    }
    unsetenv("DISPLAY"); // NOLINT(concurrency-mt-unsafe)
    sway_.emplace(command, ChildOptions{.environment = {{"XDG_RUNTIME_DIR", directory_},
                                                        {"HOME", directory_},
                                                        {"WLR_BACKENDS", "headless"},
                                                        {"WLR_LIBINPUT_NO_DEVICES", "1"},
                                                        {"WLR_RENDERER", "pixman"}}});
    std::string display;
    std::string socket;
    const bool isUp = holdsWithin(10s, [&] {
        display = firstFile(directory_, "wayland-");
        socket = firstFile(directory_, "sway-ipc");
        return !display.empty() && !socket.empty();
    });
    if (!isUp)
        throw std::runtime_error("sway does not start: " + sway_->output());
    set("WAYLAND_DISPLAY", display);
    set("SWAYSOCK", socket);
    set("XDG_SESSION_TYPE", "wayland");
    input_ = std::make_unique<WlrootsInput>(kWidth, kHeight);
}

SwayDesktop::~SwayDesktop() {
    input_.reset();
    program_.kill();
    sway_.reset();
    std::error_code ignored;
    fs::remove_all(directory_, ignored);
}

void SwayDesktop::configure(const std::string& line) {
    std::ofstream(directory_ + "/config", std::ios::app) << line << '\n';
    command("reload");
}

void SwayDesktop::command(const std::string& text) const {
    runChild({"swaymsg", text}, 5s);
}

nlohmann::json SwayDesktop::ask(const std::string& question) {
    return nlohmann::json::parse(runChild({"swaymsg", "-t", question, "-r"}, 5s).output, nullptr, false);
}

nlohmann::json SwayDesktop::focused() {
    std::vector<nlohmann::json> waiting{ask("get_tree")};
    while (!waiting.empty()) {
        const nlohmann::json node = waiting.back();
        waiting.pop_back();
        if (node.value("focused", false))
            return node;
        for (const char* kind : {"nodes", "floating_nodes"})
            waiting.insert(waiting.end(), node[kind].begin(), node[kind].end());
    }
    return nlohmann::json::object();
}

std::string SwayDesktop::front() {
    const nlohmann::json window = focused();
    if (window.contains("app_id") && window["app_id"].is_string())
        return window["app_id"].get<std::string>();
    return window.contains("window_properties") ? window["window_properties"].value("class", "") : "";
}

DesktopRectangle SwayDesktop::frontRectangle() {
    const nlohmann::json place = focused()["rect"];
    return {.x = place["x"], .y = place["y"], .width = place["width"], .height = place["height"]};
}

std::string SwayDesktop::marks() {
    std::string all;
    for (const auto& mark : ask("get_marks"))
        all += mark.get<std::string>();
    return all;
}

std::string SwayDesktop::display() const {
    // sway tells it to those alone that it starts, and the server takes those alone that run as it does.
    const std::string file = directory_ + "/display";
    runChild({"swaymsg", "exec", "xhost +local: && printenv DISPLAY > " + file}, 5s);
    std::string name;
    waitFor([&] { return static_cast<bool>(std::ifstream(file) >> name); });
    return name;
}

std::string SwayDesktop::clipboard(bool isPrimary) {
    std::vector<std::string> command = {"wl-paste", "--no-newline"};
    if (isPrimary)
        command.emplace_back("--primary");
    return runChild(command, 2s).output;
}

void SwayDesktop::saveScreenshot(const std::string& path) {
    runChild({"grim", path}, 5s);
}

} // namespace quillmoth::test
