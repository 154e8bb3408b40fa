#pragma once

#include "tests/desktop/support/ProgramTest.h"

#include <string>
#include <vector>

namespace quillmoth::test {

/// The program by itself, started by the test. Each test begins with an empty home and ends the program.
class WindowsSession : public ProgramTest {
protected:
    static void SetUpTestSuite() { startSession(1200); }

    void SetUp() override;
    void TearDown() override;

    /// What the store holds before the program starts, beside what every test wants.
    static void writeDefaults(const nlohmann::json& values);

    static nlohmann::json defaults() { return session().defaults(); }

    static nlohmann::json presets();

    static void start(const std::vector<std::string>& arguments = {});

    /// Ends it by its own command.
    static void quit() { EXPECT_EQ(session().quit(), 0) << session().output(); }

    /// A second start, which hands over what it is given.
    static void run(const std::vector<std::string>& arguments);

    /// Waits for the window and for the keyboard to be in it.
    static void awaitWindow(const std::string& title);

    static bool hasWindow(const std::string& title) { return windows().windowTitled(title).has_value(); }

    /// Closes the window in front by the keyboard.
    static void closeWindow(const std::string& title);
    /// Waits until the store holds the value; a null value stands for none.
    static void awaitStored(const char* key, const nlohmann::json& value);
    static void awaitText(const std::string& text);
    static void closePanelByHotKey();
    /// The program's menu while one is open, otherwise 0.
    static std::uint32_t openMenu();
    /// Opens the panel by the hot key, sends `command`, and closes the panel with its conversation.
    static void ask(const std::string& command);
    /// Those that streamed an answer, in the order of their arrival.
    [[nodiscard]] static std::vector<ScriptedRequest> chatRequests();
};

} // namespace quillmoth::test
