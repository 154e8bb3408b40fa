#pragma once

#include "tests/desktop/wayland/WaylandDesktop.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillmoth::test {

/// What tests of the running program in a Wayland session do and look at, with an editor of somebody else's
/// in front. All of a process share one desktop. A test that fails leaves a picture of it, and prints what
/// was on screen.
class WaylandProgram : public testing::Test {
protected:
    static constexpr const char* kFirstLine = "the quick brown fox";
    static constexpr const char* kSecondLine = "stays as it is";
    static constexpr const char* kAnswer = "A better line.";

    /// To be called once, before the first test.
    static void startDesktop(std::unique_ptr<WaylandDesktop> desktop);

    static void endDesktop() { desktop_.reset(); }

    void TearDown() override;

    static WaylandDesktop& desktop() { return *desktop_; }

    static ProgramSession& session() { return desktop_->program(); }

    static WaylandInput& input() { return desktop_->input(); }

    static bool soon(const std::function<bool()>& condition);

    static void startProgram(const nlohmann::json& defaults = nlohmann::json::object());

    /// The editor shows a file with two lines; waits until it has the keyboard.
    void startEditor(const std::vector<std::string>& command, ProgramSession::Environment environment = {});
    void endEditor();
    [[nodiscard]] std::string text() const;
    void selectFirstLine();
    [[nodiscard]] static std::string bothLines(const std::string& first);

    static bool isOpen();
    static bool hasKeyboard();
    /// What stands in the command field.
    static std::string command();
    static DesktopRectangle place();

    static void pressHotKey();
    /// By the hot key; waits until the panel has the keyboard.
    static void openPanel();
    /// Types a command, and waits for the answer.
    static void ask();
    /// The whole job, with a picture of the answer under that name.
    void replaceFirstLine(const std::string& picture = "");

private:
    static std::unique_ptr<WaylandDesktop> desktop_;
    std::optional<ChildProcess> editor_;
    std::optional<AccessibleProgram> shownEditor_;
};

} // namespace quillmoth::test
