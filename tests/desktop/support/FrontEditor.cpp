#include "tests/desktop/support/FrontEditor.h"

#include <linux/input-event-codes.h>

#include <fstream>
#include <stdexcept>

namespace quillmoth::test {

namespace {

constexpr std::chrono::seconds kEditorDeadline(20);
constexpr const char* kFileName = "letter.txt";

ChildProcess started(const std::string& path, const std::string& text) {
    std::ofstream(path) << text;
    // Its settings stay in memory: there is no store for them on a new desktop.
    return ChildProcess({"mousepad", "--disable-server", path},
                        {.environment = {{"GSETTINGS_BACKEND", "memory"}}});
}

} // namespace

FrontEditor::FrontEditor(VirtualDesktop& desktop, const std::string& text)
    : desktop_(desktop), process_(started(desktop.homeDirectory() + '/' + kFileName, text)),
      program_(process_.processIdentifier()) {
    const bool isShown = holdsWithin(kEditorDeadline, [&] {
        window_ = desktop.windows().windowTitled(kFileName).value_or(0);
        return window_ != 0 && isActive() && this->text() == text;
    });
    if (!isShown)
        throw std::runtime_error("The editor did not come up: " + process_.output());
}

std::string FrontEditor::text() const {
    const auto element = program_.find("text");
    return element ? element->text() : "";
}

std::string FrontEditor::selection() const {
    const auto element = program_.find("text");
    return element ? element->selection() : "";
}

void FrontEditor::selectFirstLine() {
    desktop_.input().chord({KEY_LEFTCTRL, KEY_HOME});
    desktop_.input().chord({KEY_LEFTSHIFT, KEY_END});
}

void FrontEditor::deselect() {
    desktop_.input().chord({KEY_LEFTCTRL, KEY_END});
}

} // namespace quillmoth::test
