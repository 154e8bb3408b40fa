#pragma once

#include "tests/desktop/demonstration/Report.h"
#include "tests/desktop/support/VirtualDesktop.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace quillmoth::test {

struct DemonstrationOptions {
    /// The program to show, and the scripted chat server that stands in for a model.
    std::string program;
    std::string server;
    /// Where pictures and report go.
    std::string output = "demo-output";
    std::string windowManager = "openbox";
};

/// A virtual desktop with a text editor, a chat server and the program, each a real process, and what an
/// onlooker can find out about them from outside: through the X server, the accessibility bus and files.
class DemonstrationDesktop {
public:
    explicit DemonstrationDesktop(DemonstrationOptions options);

    /// Runs `condition` again and again until it holds, and reports how long that took. `details` is asked
    /// for what was seen where it does not hold in time.
    bool check(const std::string& what, const std::function<bool()>& condition,
               const std::function<std::string()>& details = {},
               std::chrono::milliseconds deadline = std::chrono::seconds(10));
    /// Numbers the pictures.
    void takePicture(const std::string& name);

    void startServer(const std::string& script);

    /// Instead of a server of its own: one that runs already.
    void useServer(std::string address) { serverAddress_ = std::move(address); }

    void startEditor(const std::string& text);
    void startProgram();
    /// Asks the program to quit, and waits for its end.
    [[nodiscard]] std::optional<int> quitProgram();

    [[nodiscard]] bool isEditorActive() const;
    [[nodiscard]] bool isPanelVisible() const;
    /// What the accessibility bus tells of the editor's text and selection.
    [[nodiscard]] std::string editorText() const;
    [[nodiscard]] std::string editorSelection() const;
    /// What the accessibility bus tells of all that the program shows, a line each.
    [[nodiscard]] std::string panelContents() const;
    [[nodiscard]] bool panelShows(const std::string& text) const;

    [[nodiscard]] std::string programOutput() const { return program_->output(); }

    /// The user's file `name` of the program.
    [[nodiscard]] std::string document(const std::string& name) const;

    DesktopInput& input() { return desktop_.input(); }

    VirtualDesktop& desktop() { return desktop_; }

    [[nodiscard]] std::uint32_t editorWindow() const { return editorWindow_; }

    /// The panel's window while it is on screen, otherwise 0.
    [[nodiscard]] std::uint32_t panelWindow() const;

    [[nodiscard]] ChildProcess& editor() { return *editor_; }

    [[nodiscard]] ChildProcess& program() { return *program_; }

    Report& report() { return report_; }

    [[nodiscard]] const DemonstrationOptions& options() const { return options_; }

private:
    [[nodiscard]] std::string probe(const ChildProcess& process, const std::string& what) const;

    DemonstrationOptions options_;
    // Looking at the desktop changes nothing of it.
    mutable VirtualDesktop desktop_;
    Report report_;
    std::string serverAddress_;
    std::uint32_t editorWindow_ = 0;
    int pictureCount_ = 0;
    std::optional<ChildProcess> server_;
    std::optional<ChildProcess> editor_;
    std::optional<ChildProcess> program_;
};

} // namespace quillmoth::test
