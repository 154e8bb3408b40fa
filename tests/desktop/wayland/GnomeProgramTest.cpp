// The main job in a session of GNOME, without the program's extension of the shell and with it, driven and
// looked at from outside.

#include "tests/desktop/wayland/GnomeDesktop.h"

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;

constexpr const char* kTop = "the quick brown fox";
constexpr const char* kBelow = "stays as it is";
constexpr const char* kReply = "A better line.";
constexpr const char* kPanel = "Quillmoth Floating";
constexpr const char* kShortcutPath =
    "/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/quillmoth/";

class GnomeSession : public testing::Test {
protected:
    static void start(bool hasExtension) {
        desktop_ = new GnomeDesktop(hasExtension);
        session().server().answer("/api/v1/chat/completions", jsonAnswer(200, chatResponse("A topic")));
        session().server().answer("/api/v1/chat/completions/stream", chatStream({kReply}));
    }

    static void TearDownTestSuite() {
        delete desktop_;
        desktop_ = nullptr;
    }

    void SetUp() override {
        startProgram();
        startEditor({{"GDK_BACKEND", "wayland"}});
    }

    void startEditor(ProgramSession::Environment environment) {
        shownEditor_.reset();
        editor_.reset();
        const std::string path = session().path("letter.txt");
        std::ofstream(path) << kTop << '\n' << kBelow;
        environment.emplace_back("GSETTINGS_BACKEND", "memory");
        editor_.emplace(std::vector<std::string>{"mousepad", "--disable-server", path},
                        ChildOptions{.environment = std::move(environment)});
        shownEditor_.emplace(editor_->processIdentifier());
        ASSERT_TRUE(soon([this] { return isInFront("ousepad") && !text().empty(); }))
            << editor_->output() << desktop_->front();
    }

    void TearDown() override {
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        if (HasFailure()) {
            picture(std::string(test->test_suite_name()) + '-' + test->name());
            std::cerr << session().output() << session().shown().described();
        }
        for (int press = 0; press < 6 && isOpen(); ++press)
            desktop_->tapKey(KEY_ESC);
        EXPECT_TRUE(soon([] { return !isOpen(); }));
        shownEditor_.reset();
        editor_.reset();
    }

    static void picture(const std::string& name) {
        std::filesystem::create_directories("screenshots");
        desktop_->saveScreenshot("screenshots/" + name + ".png");
    }

    static void startProgram(const nlohmann::json& defaults = nlohmann::json::object()) {
        session().kill();
        nlohmann::json all = {
            {"KeyboardShortcuts_showFloatingPanel", R"({"carbonKeyCode":38,"carbonModifiers":4096})"}};
        all.update(defaults);
        session().writeDefaults(all);
        session().start();
    }

    static ProgramSession& session() { return desktop_->program(); }

    static bool soon(const std::function<bool()>& condition) { return holdsWithin(10s, condition); }

    static bool isInFront(const std::string& part) {
        return desktop_->front().find(part) != std::string::npos;
    }

    [[nodiscard]] std::string text() const {
        const auto element = shownEditor_->find("text");
        return element ? element->text() : "";
    }

    void selectTop() {
        // An editor that has just come up may not take the first keys as they are meant.
        ASSERT_TRUE(soon([this] {
            desktop_->chord({KEY_LEFTCTRL, KEY_HOME});
            desktop_->chord({KEY_LEFTSHIFT, KEY_END});
            return holdsWithin(1s, [this] { return shownEditor_->find("text")->selection() == kTop; });
        }));
    }

    static bool isOpen() { return session().shown().find("text", "Command").has_value(); }

    static bool hasKeyboard() {
        const auto field = session().shown().find("text", "Command");
        return field && field->isFocused();
    }

    static std::string command() {
        const auto field = session().shown().find("text", "Command");
        return field ? field->text() : "";
    }

    static void pressHotKey() {
        // What repeats is told from what is pressed again by the time between.
        letPass(betweenPresses_);
        desktop_->chord({KEY_LEFTMETA, KEY_J});
    }

    static void openPanel() {
        pressHotKey();
        ASSERT_TRUE(soon(hasKeyboard));
    }

    static void ask() {
        desktop_->type("improve this");
        ASSERT_TRUE(soon([] { return command() == "improve this"; })) << command();
        desktop_->tapKey(KEY_ENTER);
        ASSERT_TRUE(soon([] { return session().shown().shows(kReply); }));
    }

    void replaceTop(const std::string& name) {
        selectTop();
        openPanel();
        EXPECT_TRUE(soon([] { return session().shown().shows("Context found"); }));
        ask();
        EXPECT_EQ(text(), std::string(kTop) + '\n' + kBelow);
        picture(name);
        desktop_->chord({KEY_LEFTCTRL, KEY_ENTER});
        EXPECT_TRUE(soon([this] { return text() == std::string(kReply) + '\n' + kBelow; })) << text();
        EXPECT_FALSE(isOpen());
    }

    void checkThatTheClipboardIsKept() {
        const ChildProcess owner({"wl-copy", "--foreground", "--type", "text/html", "<b>kept</b>"});
        const auto html = [] { return GnomeDesktop::clipboard(false, "text/html"); };
        ASSERT_TRUE(soon([&] { return html() == "<b>kept</b>" && isInFront("ousepad"); })) << html();
        replaceTop("gnome-kept");
        EXPECT_TRUE(soon([&] { return html() == "<b>kept</b>"; })) << html();
        // One step to the editor's own undo, as only a paste is.
        desktop_->chord({KEY_LEFTCTRL, KEY_Z});
        EXPECT_TRUE(soon([this] { return text() == std::string(kTop) + '\n' + kBelow; })) << text();
    }

    void checkThatATerminalIsNotPastedInto(const std::string& name) {
        const std::string typed = session().path("typed");
        ChildProcess terminal(
            {"foot", "--app-id=foot", "sh", "-c", "printf selected; exec cat > '" + typed + "'"},
            {.environment = {{"LC_ALL", "C.UTF-8"}}});
        ASSERT_TRUE(soon([] { return isInFront("foot"); }));
        openPanel();
        ask();
        desktop_->chord({KEY_LEFTCTRL, KEY_ENTER});
        EXPECT_TRUE(soon([] { return session().shown().shows("clipboard"); }))
            << session().shown().described();
        EXPECT_TRUE(soon([] { return GnomeDesktop::clipboard() == kReply; })) << GnomeDesktop::clipboard();
        picture(name);
        EXPECT_EQ(session().readFile("typed"), "");
    }

    void checkThatItCloses() {
        const auto closesBy = [](const std::string& way, const std::function<void()>& act) {
            SCOPED_TRACE(way);
            openPanel();
            act();
            EXPECT_TRUE(soon([] { return !isOpen(); })) << way;
            EXPECT_TRUE(soon([] { return isInFront("ousepad"); })) << way << ": " << desktop_->front();
        };
        closesBy("a press", [] {
            const DesktopRectangle editor = desktop_->rectangleOf("~/letter.txt - Mousepad");
            desktop_->click(editor.x + 5, editor.y + editor.height - 40);
        });
        closesBy("Escape", [] {
            for (int press = 0; press < 4 && isOpen(); ++press)
                desktop_->tapKey(KEY_ESC);
        });
        closesBy("the hot key", [] { pressHotKey(); });
        desktop_->type("x");
        EXPECT_TRUE(soon([this] { return text().find('x') != std::string::npos; })) << text();
    }

    int arrivedPresses(int presses) {
        int arrived = 0;
        for (int press = 1; press <= presses; ++press) {
            const bool opens = press % 2 == 1;
            pressHotKey();
            arrived += soon([opens] { return opens ? hasKeyboard() : !isOpen(); }) ? 1 : 0;
        }
        return arrived;
    }

    static GnomeDesktop* desktop_;
    static std::chrono::milliseconds betweenPresses_;
    std::optional<ChildProcess> editor_;
    std::optional<AccessibleProgram> shownEditor_;
};

GnomeDesktop* GnomeSession::desktop_ = nullptr;
std::chrono::milliseconds GnomeSession::betweenPresses_{0};

/// Nothing installed, and the shortcut of GNOME's switched on.
class GnomeProgram : public GnomeSession {
protected:
    static void SetUpTestSuite() {
        start(false);
        betweenPresses_ = 250ms;
        runChild({"gsettings", "set", "org.gnome.settings-daemon.plugins.media-keys", "custom-keybindings",
                  std::string("['") + kShortcutPath + "']"},
                 5s);
    }
};

class GnomeProgramWithExtension : public GnomeSession {
protected:
    static void SetUpTestSuite() {
        start(true);
        betweenPresses_ = 0ms;
    }
};

std::string shortcutOf(const char* key) {
    return runChild({"gsettings", "get",
                     std::string("org.gnome.settings-daemon.plugins.media-keys.custom-keybinding:") +
                         kShortcutPath,
                     key},
                    5s)
        .output;
}

} // namespace

TEST_F(GnomeProgram, TheSelectionIsReplacedByTheAnswer) {
    replaceTop("gnome-answer");
}

TEST_F(GnomeProgram, WhatIsOnTheClipboardIsThereAgainInAllItsForms) {
    checkThatTheClipboardIsKept();
}

TEST_F(GnomeProgram, ATerminalIsNotPastedInto) {
    checkThatATerminalIsNotPastedInto("gnome-terminal");
}

TEST_F(GnomeProgram, APressElsewhereClosesItAndEscapeToo) {
    checkThatItCloses();
}

TEST_F(GnomeProgram, EachPressCountsOnceAndAHeldKeyToo) {
    EXPECT_EQ(arrivedPresses(10), 10);
    letPass(betweenPresses_);
    desktop_->pressKey(KEY_LEFTMETA);
    desktop_->pressKey(KEY_J);
    EXPECT_TRUE(soon(hasKeyboard));
    letPass(1500ms);
    desktop_->releaseKey(KEY_J);
    desktop_->releaseKey(KEY_LEFTMETA);
    letPass(500ms);
    EXPECT_TRUE(hasKeyboard());
}

TEST_F(GnomeProgram, TheShortcutIsGnomesAsLongAsTheUserWantsIt) {
    EXPECT_NE(shortcutOf("command").find("quillmoth --toggle"), std::string::npos);
    EXPECT_EQ(shortcutOf("binding"), "'<Super>j'\n");
    const std::string page = session().run({"--diagnose"}).output;
    for (const char* line : {"served by GNOME", "active, as a shortcut of GNOME's", "mousepad (gtk)",
                             "Synthetic keys: as a remote desktop", "Write-back: through accessibility"})
        EXPECT_NE(page.find(line), std::string::npos) << line << " in\n" << page;
    session().run({"--settings"});
    const auto control = [] { return session().shown().find("check box", "Open the panel with a shortcut"); };
    ASSERT_TRUE(soon([&] { return control().has_value(); })) << session().shown().described();
    picture("gnome-settings");
    ASSERT_TRUE(control()->press());
    EXPECT_TRUE(soon([] { return shortcutOf("binding") == "''\n"; })) << shortcutOf("binding");
    EXPECT_TRUE(session().shown().shows("GNOME gives programs no hot key"));
    ASSERT_TRUE(control()->press());
    EXPECT_TRUE(soon([] { return shortcutOf("binding") == "'<Super>j'\n"; })) << shortcutOf("binding");
    // A key that GNOME has is named with what it does.
    startProgram({{"KeyboardShortcuts_showFloatingPanel", R"({"carbonKeyCode":49,"carbonModifiers":2048})"}});
    session().run({"--settings"});
    EXPECT_TRUE(soon([] { return session().shown().shows("Activate the window menu"); }));
    startProgram();
}

TEST_F(GnomeProgramWithExtension, TheSelectionIsReplacedByTheAnswer) {
    replaceTop("gnome-extension-answer");
}

TEST_F(GnomeProgramWithExtension, WhatIsOnTheClipboardIsThereAgainInAllItsForms) {
    checkThatTheClipboardIsKept();
}

TEST_F(GnomeProgramWithExtension, ATerminalIsNotPastedInto) {
    checkThatATerminalIsNotPastedInto("gnome-extension-terminal");
    EXPECT_TRUE(session().shown().shows("terminal"));
}

TEST_F(GnomeProgramWithExtension, APressElsewhereClosesItAndEscapeToo) {
    checkThatItCloses();
}

TEST_F(GnomeProgramWithExtension, EachPressCountsOnce) {
    EXPECT_EQ(arrivedPresses(100), 100);
    EXPECT_EQ(text(), std::string(kTop) + '\n' + kBelow);
}

TEST_F(GnomeProgramWithExtension, AHeldHotKeyOpensOnceItIsReleased) {
    desktop_->pressKey(KEY_LEFTMETA);
    desktop_->pressKey(KEY_J);
    letPass(1200ms);
    EXPECT_FALSE(isOpen());
    desktop_->releaseKey(KEY_J);
    desktop_->releaseKey(KEY_LEFTMETA);
    EXPECT_TRUE(soon(hasKeyboard));
}

TEST_F(GnomeProgramWithExtension, ThePanelIsAboveAllAndKeepsItsPlace) {
    openPanel();
    const DesktopRectangle before = desktop_->rectangleOf(kPanel);
    EXPECT_EQ(desktop_->evaluate("global.display.focus_window.is_above()"), "true");
    desktop_->drag(before.x + 20, before.y + before.height - 12, 150, 60);
    EXPECT_TRUE(soon([&] { return desktop_->rectangleOf(kPanel).x != before.x; }));
    const DesktopRectangle moved = desktop_->rectangleOf(kPanel);
    for (int press = 0; press < 4 && isOpen(); ++press)
        desktop_->tapKey(KEY_ESC);
    ASSERT_TRUE(soon([] { return !isOpen(); }));
    openPanel();
    EXPECT_TRUE(soon([&] { return desktop_->rectangleOf(kPanel).x == moved.x; }))
        << desktop_->rectangleOf(kPanel).x << " for " << moved.x;
    EXPECT_EQ(desktop_->rectangleOf(kPanel).y, moved.y);
}

TEST_F(GnomeProgramWithExtension, TheAlternativeMethodCopiesAndPutsBackWhatWasThere) {
    startProgram({{"useCopyHack", true}});
    std::ofstream(session().path("kept")) << "<i>kept</i>";
    const ChildProcess owner(
        {"xclip", "-quiet", "-selection", "clipboard", "-t", "text/html", session().path("kept")});
    selectTop();
    openPanel();
    EXPECT_TRUE(soon([] { return session().shown().shows("Context found"); }));
    EXPECT_EQ(GnomeDesktop::clipboard(false, "text/html"), "<i>kept</i>");
}

TEST_F(GnomeProgramWithExtension, ItServesNobodyElse) {
    const auto ask = [](const char* method) {
        return runChild({"gdbus", "call", "--session", "--dest", "org.quillmoth.Shell", "--object-path",
                         "/org/quillmoth/Shell", "--method", method},
                        5s)
            .output;
    };
    for (const char* method : {"org.quillmoth.Shell1.Front", "org.quillmoth.Shell1.Places"})
        EXPECT_NE(ask(method).find("AccessDenied"), std::string::npos) << ask(method);
    const std::string keys = runChild({"gdbus", "call", "--session", "--dest", "org.quillmoth.Shell",
                                       "--object-path", "/org/quillmoth/Shell", "--method",
                                       "org.quillmoth.Shell1.SendKeys", "[(30, true), (30, false)]"},
                                      5s)
                                 .output;
    EXPECT_NE(keys.find("AccessDenied"), std::string::npos) << keys;
    EXPECT_EQ(text(), std::string(kTop) + '\n' + kBelow);
}

} // namespace quillmoth::test

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (!testing::GTEST_FLAG(list_tests) && access("/usr/bin/gnome-shell", X_OK) != 0) {
        std::cout << "GNOME Shell is not installed; \"tools/setup wayland\" does so.\n";
        return 0;
    }
    quillmoth::test::becomeOrdinaryUser();
    return RUN_ALL_TESTS();
}
