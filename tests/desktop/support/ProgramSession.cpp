#include "tests/desktop/support/ProgramSession.h"

#include <linux/input-event-codes.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;
using nlohmann::json;

constexpr std::chrono::seconds kProgramDeadline(20);

/// A desktop's settings name its fonts; a new one has none.
constexpr const char* kFonts = R"(<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "urn:fontconfig:fonts.dtd">
<fontconfig>
  <alias binding="strong"><family>sans-serif</family><prefer><family>Inter</family></prefer></alias>
  <alias binding="strong"><family>Sans</family><prefer><family>Inter</family></prefer></alias>
  <alias binding="strong"><family>monospace</family><prefer><family>JetBrains Mono</family></prefer></alias>
</fontconfig>
)";

std::vector<std::string> commandWith(const std::vector<std::string>& arguments) {
    std::vector<std::string> command = {ProgramSession::program()};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return command;
}

bool answersOnTheBus() {
    return runChild({"dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus", "/",
                     "org.freedesktop.DBus.NameHasOwner", "string:org.quillmoth.Quillmoth"},
                    5s)
               .output.find("true") != std::string::npos;
}

} // namespace

ProgramSession::ProgramSession(const std::string& windowManager, int height)
    : desktop_({.windowManager = windowManager, .accessibility = true, .height = height}) {
    beginAnew();
}

void ProgramSession::beginAnew() {
    kill();
    for (const char* folder : {".config", ".local/share", "Documents"}) {
        // What else runs on the desktop may be at work in there.
        waitFor([&] {
            std::error_code error;
            std::filesystem::remove_all(path(folder), error);
            return !error;
        });
    }
    std::filesystem::create_directories(path(".local/share"));
    writeFile(".config/fontconfig/fonts.conf", kFonts);
    server_.emplace();
    writeDefaults(json::object());
}

std::string ProgramSession::path(const std::string& name) const {
    return desktop_.homeDirectory() + '/' + name;
}

void ProgramSession::writeFile(const std::string& name, const std::string& text) const {
    std::filesystem::create_directories(std::filesystem::path(path(name)).parent_path());
    std::ofstream(path(name)) << text;
}

std::string ProgramSession::readFile(const std::string& name) const {
    std::ifstream file(path(name));
    return {std::istreambuf_iterator<char>(file), {}};
}

void ProgramSession::writeDefaults(const json& values) const {
    json all = {{"firstTime", false}, {"accessibilityConsent", true}};
    all.update(values);
    writeFile(kDefaults, all.dump());
}

json ProgramSession::defaults() const {
    return json::parse(readFile(kDefaults), nullptr, false);
}

std::string ProgramSession::program() {
    return QUILLMOTH_PROGRAM;
}

void ProgramSession::start(const std::vector<std::string>& arguments, const Environment& environment) {
    ChildOptions options{.environment = environment};
    options.environment.emplace_back("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
    options.environment.emplace_back("QUILLMOTH_GATEWAY_BASE_URL", server_->baseURL());
    process_.emplace(commandWith(arguments), options);
    shown_.emplace(process());
    waitFor([this] { return !isRunning() || answersOnTheBus(); }, kProgramDeadline);
}

ChildResult ProgramSession::run(const std::vector<std::string>& arguments) const {
    return runChild(commandWith(arguments), kProgramDeadline);
}

std::optional<int> ProgramSession::quit() {
    const ChildResult asked = run({"--quit"});
    const auto exitCode = asked.exitCode == 0 ? process_->waitForExit(kProgramDeadline) : asked.exitCode;
    kill();
    return exitCode;
}

void ProgramSession::kill() {
    shown_.reset();
    if (process_)
        process_->terminate();
}

std::uint32_t ProgramSession::panelWindow() const {
    return desktop_.windows().visibleWindowTitled("Quillmoth Floating");
}

void ProgramSession::pressHotKey() {
    input().chord({KEY_LEFTALT, KEY_SPACE});
}

} // namespace quillmoth::test
