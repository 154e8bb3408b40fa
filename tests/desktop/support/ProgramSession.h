#pragma once

#include "tests/desktop/support/FrontEditor.h"
#include "tests/support/ScriptedChatServer.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quillmoth::test {

/// The program on a virtual desktop of its own, with a chat server beside it and, where wanted, an editor in
/// front: each is driven and looked at from outside. All of it ends with the object.
class ProgramSession {
public:
    using Environment = std::vector<std::pair<std::string, std::string>>;

    explicit ProgramSession(const std::string& windowManager = "openbox", int height = 800);

    VirtualDesktop& desktop() { return desktop_; }

    DesktopInput& input() { return desktop_.input(); }

    DesktopWindows& windows() { return desktop_.windows(); }

    ScriptedChatServer& server() { return *server_; }

    /// Ends the program, and begins with an empty home and a server that was asked nothing.
    void beginAnew();

    // The user's files, by their paths below the home folder
    [[nodiscard]] std::string path(const std::string& name) const;
    void writeFile(const std::string& name, const std::string& text) const;
    /// Empty for none.
    [[nodiscard]] std::string readFile(const std::string& name) const;
    static constexpr const char* kDefaults = ".config/quillmoth/defaults.json";
    static constexpr const char* kPresets = "Documents/Quillmoth/QuillmothPrompts.json";
    static constexpr const char* kHistory = "Documents/Quillmoth/QuillmothHistory.json";

    /// What the program finds in its store, beside what spares the user its first questions.
    void writeDefaults(const nlohmann::json& values) const;
    [[nodiscard]] nlohmann::json defaults() const;

    void startEditor(const std::string& text) { editor_.emplace(desktop_, text); }

    FrontEditor& editor() { return *editor_; }

    [[nodiscard]] static std::string program();
    /// Starts the program and waits until it answers on the bus, or has ended.
    void start(const std::vector<std::string>& arguments = {}, const Environment& environment = {});
    /// A second start, which hands over what it is given.
    ChildResult run(const std::vector<std::string>& arguments) const;
    /// Ends the program by its own command; its exit code.
    std::optional<int> quit();
    void kill();

    [[nodiscard]] bool isRunning() { return process_ && process_->isRunning(); }

    [[nodiscard]] pid_t process() const { return process_->processIdentifier(); }

    /// What the program shows.
    AccessibleProgram& shown() { return *shown_; }

    /// What it has printed, also where it has ended.
    [[nodiscard]] std::string output() const { return process_ ? process_->output() : ""; }

    /// The panel's window while it is on screen, otherwise 0.
    [[nodiscard]] std::uint32_t panelWindow() const;
    void pressHotKey();

private:
    VirtualDesktop desktop_;
    std::optional<ScriptedChatServer> server_;
    std::optional<FrontEditor> editor_;
    std::optional<ChildProcess> process_;
    std::optional<AccessibleProgram> shown_;
};

} // namespace quillmoth::test
