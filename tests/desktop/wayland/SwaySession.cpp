#include "tests/desktop/wayland/SwaySession.h"

#include "tests/desktop/support/WaitFor.h"

#include <algorithm>
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

SwaySession::SwaySession() {
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
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "SWAYSOCK"})
        unsetenv(name); // NOLINT(concurrency-mt-unsafe)
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

SwaySession::~SwaySession() {
    input_.reset();
    sway_.reset();
    std::error_code ignored;
    fs::remove_all(directory_, ignored);
}

void SwaySession::configure(const std::string& line) {
    std::ofstream(directory_ + "/config", std::ios::app) << line << '\n';
    command("reload");
}

void SwaySession::command(const std::string& text) const {
    runChild({"swaymsg", text}, 5s);
}

nlohmann::json SwaySession::ask(const std::string& question) {
    return nlohmann::json::parse(runChild({"swaymsg", "-t", question, "-r"}, 5s).output, nullptr, false);
}

std::vector<nlohmann::json> SwaySession::leaves() {
    std::vector<nlohmann::json> found;
    std::vector<nlohmann::json> waiting{ask("get_tree")};
    while (!waiting.empty()) {
        const nlohmann::json node = std::move(waiting.back());
        waiting.pop_back();
        if (!node.is_object())
            continue;
        if (node.contains("pid") || node.value("focused", false))
            found.push_back(node);
        for (const char* kind : {"nodes", "floating_nodes"}) {
            const auto nodes = node.find(kind);
            if (nodes != node.end())
                waiting.insert(waiting.end(), nodes->begin(), nodes->end());
        }
    }
    return found;
}

nlohmann::json SwaySession::focused() {
    for (const nlohmann::json& leaf : leaves()) {
        if (leaf.value("focused", false))
            return leaf;
    }
    return nlohmann::json::object();
}

bool SwaySession::hasWindows() {
    const auto all = leaves();
    return std::any_of(all.begin(), all.end(), [](const auto& leaf) { return leaf.contains("pid"); });
}

std::optional<std::string> SwaySession::frontTitle() {
    const nlohmann::json window = focused();
    if (!window.contains("pid"))
        return std::nullopt;
    return window["name"].is_string() ? window["name"].get<std::string>() : "";
}

std::string SwaySession::front() {
    const nlohmann::json window = focused();
    if (window.contains("app_id") && window["app_id"].is_string())
        return window["app_id"].get<std::string>();
    return window.contains("window_properties") ? window["window_properties"].value("class", "") : "";
}

DesktopRectangle SwaySession::frontRectangle() {
    const nlohmann::json place = focused()["rect"];
    return {.x = place["x"], .y = place["y"], .width = place["width"], .height = place["height"]};
}

std::string SwaySession::marks() {
    std::string all;
    for (const auto& mark : ask("get_marks"))
        all += mark.get<std::string>();
    return all;
}

std::string SwaySession::display() const {
    // sway tells it to those alone that it starts, and the server takes those alone that run as it does.
    const std::string file = directory_ + "/display";
    fs::remove(file);
    runChild({"swaymsg", "exec", "xhost +local: && printenv DISPLAY > " + file}, 5s);
    std::string name;
    waitFor([&] { return static_cast<bool>(std::ifstream(file) >> name); });
    return name;
}

std::string SwaySession::clipboard(bool isPrimary, const std::string& mediaType) {
    std::vector<std::string> command = {"wl-paste", "--no-newline", "--type", mediaType};
    if (isPrimary)
        command.emplace_back("--primary");
    return runChild(command, 2s).output;
}

void SwaySession::saveScreenshot(const std::string& path, const std::string& output) {
    std::vector<std::string> command = {"grim", path};
    if (!output.empty())
        command.insert(command.begin() + 1, {"-o", output});
    runChild(command, 5s);
}

} // namespace quillmoth::test
