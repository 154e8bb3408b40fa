#pragma once

#include "tests/desktop/support/AccessibleElement.h"
#include "tests/desktop/support/VirtualDesktop.h"
#include "tests/support/ScriptedChatServer.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmoth::test {

/// The program itself on a desktop of its own, with a chat server beside it, driven by keys, pointer and
/// accessibility bus. Each test begins with an empty home and ends the program. One desktop for the process.
class ProgramDesktop : public testing::Test {
protected:
    static void SetUpTestSuite();

    void SetUp() override;
    void TearDown() override;

    static VirtualDesktop& desktop();
    static ScriptedChatServer& server();

    static DesktopInput& input() { return desktop().input(); }

    /// Waits with a deadline that a loaded machine keeps, and fails the test where it passes.
    static bool eventually(const std::string& what, const std::function<bool()>& condition);

    /// What the store holds before the program starts, beside what every test wants.
    static void writeDefaults(const nlohmann::json& values);
    [[nodiscard]] static nlohmann::json defaults();
    [[nodiscard]] static std::string defaultsPath();
    [[nodiscard]] static std::string presetsPath();
    static void writePresets(const nlohmann::json& presets);
    [[nodiscard]] static nlohmann::json presets();

    /// Starts the program and waits until it answers on the bus; `arguments` of its first start.
    void start(const std::vector<std::string>& arguments = {});
    /// Ends it by its own command.
    void quit();
    /// A second start, which hands over what it is given.
    static void run(const std::vector<std::string>& arguments);

    [[nodiscard]] pid_t process() const { return program_->processIdentifier(); }

    [[nodiscard]] bool isRunning() { return program_->isRunning(); }

    [[nodiscard]] std::string output() const { return output_ + (program_ ? program_->output() : ""); }

    /// Waits for the window and for the keyboard to be in it.
    void awaitWindow(const std::string& title);
    [[nodiscard]] static bool hasWindow(const std::string& title);
    /// Closes the window in front by the keyboard.
    void closeWindow(const std::string& title);

    [[nodiscard]] static bool isPanelVisible();
    /// Opens the panel by the hot key, sends `command`, and closes the panel with its conversation.
    void ask(const std::string& command);

    /// Waits for the control; fails the test where it does not come.
    AccessibleElement control(std::string_view role, std::string_view name);
    [[nodiscard]] bool has(std::string_view role, std::string_view name) const;
    /// Whether any name or text on screen contains `text`.
    [[nodiscard]] bool shows(std::string_view text) const;
    [[nodiscard]] std::string tree() const;
    static void clickOn(const AccessibleElement& element);
    /// Presses Tab until the control has the keyboard.
    void tabTo(std::string_view role, std::string_view name);

    /// Those that streamed an answer, in the order of their arrival.
    [[nodiscard]] static std::vector<ScriptedRequest> chatRequests();

private:
    std::optional<ChildProcess> program_;
    // Of the runs before.
    std::string output_;
};

} // namespace quillmoth::test
