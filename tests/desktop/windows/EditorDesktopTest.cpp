#include "tests/desktop/support/VisibleWindows.h"
#include "tests/desktop/windows/ProgramDesktop.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <linux/input-event-codes.h>

namespace quillmoth::test {

namespace {

using nlohmann::json;

json preset(const std::string& name, const std::string& type) {
    return {{"id", "id of " + name},
            {"emoji", "🦉"},
            {"name", name},
            {"prompt", "prompt of " + name},
            {"promptType", type}};
}

class EditorDesktop : public ProgramDesktop {
protected:
    void open(const json& list) {
        writePresets(list);
        start();
        run({"quillmoth://promptEditor"});
        awaitWindow("Prompt Editor");
    }

    /// The names of the presets in the file, in order.
    static std::vector<std::string> names() {
        std::vector<std::string> result;
        for (const auto& entry : presets())
            result.push_back(entry.value("name", ""));
        return result;
    }

    void awaitNames(const std::string& what, const std::vector<std::string>& expected) {
        ASSERT_TRUE(eventually(what, [&] { return names() == expected; })) << presets();
    }

    void chooseRow(const std::string& label) {
        clickOn(control("list item", label));
        eventually("the form shows " + label,
                   [&] { return has("text", "Name") && label == "🦉" + control("text", "Name").text(); });
    }

    /// Whether the panel lists the preset.
    bool panelLists(const std::string& name) {
        input().chord({KEY_LEFTALT, KEY_SPACE});
        eventually("the panel opens", [] { return isPanelVisible(); });
        const bool isListed = holdsWithin(std::chrono::seconds(10), [&] { return has("list item", name); });
        input().chord({KEY_LEFTALT, KEY_SPACE});
        eventually("the panel closes", [] { return !isPanelVisible(); });
        return isListed;
    }

    void drag(const AccessibleElement& from, int toY) {
        const DesktopRectangle place = from.bounds();
        const int x = place.x + 40;
        const int y = place.y + place.height / 2;
        input().movePointer(x, y);
        input().pressButton(1);
        for (int step = 1; step <= 8; ++step)
            input().movePointer(x, y + (toY - y) * step / 8);
        input().releaseButton(1);
    }
};

} // namespace

TEST_F(EditorDesktop, APresetIsAddedEditedAndStandsInThePanelsListAtOnce) {
    open(json::array({preset("One", "context")}));
    EXPECT_TRUE(control("radio button", "Non-context").press());
    eventually("the other tab is on show", [&] { return !has("list item", "🦉One"); });
    clickOn(control("push button", "+ Add"));
    eventually("the preset is in the file", [] { return presets().size() == 2; });
    json added = presets()[1];
    EXPECT_EQ(added.value("id", "").size(), 36U);
    added.erase("id");
    const json expected = {{"emoji", "😀"},
                           {"name", "New Prompt"},
                           {"prompt", "Hi!"},
                           {"systemPrompt", "You're a helpful assistant!"},
                           {"promptType", "nonContext"}};
    EXPECT_EQ(added, expected);
    EXPECT_TRUE(panelLists("New Prompt"));
    awaitWindow("Prompt Editor");
    input().type("Haiku");
    eventually("each keystroke is in the file", [] { return presets()[1].value("name", "") == "Haiku"; });
    tabTo("text", "System Prompt");
    input().chord({KEY_LEFTCTRL, KEY_A});
    input().type("Poet.");
    eventually("so is the system prompt", [] { return presets()[1].value("systemPrompt", "") == "Poet."; });
    EXPECT_TRUE(control("text", "Emoji").setText("👩‍🚀"));
    eventually("and the emoji", [] { return presets()[1].value("emoji", "") == "👩‍🚀"; });
    EXPECT_FALSE(has("push button", "Add Selected Text"));
    EXPECT_TRUE(control("radio button", "Context").isShowing());
    EXPECT_TRUE(panelLists("Haiku"));
    EXPECT_EQ(presets()[0], preset("One", "context"));
}

TEST_F(EditorDesktop, PresetsAreReorderedByPointerAndByKeyboardAndChangeTheirKind) {
    open(json::array({preset("One", "context"), preset("Other", "nonContext"), preset("Two", "context"),
                      preset("Three", "context")}));
    chooseRow("🦉One");
    input().chord({KEY_LEFTALT, KEY_DOWN});
    awaitNames("Alt+Down moves it behind the next one of its kind", {"Other", "Two", "One", "Three"});
    const DesktopRectangle last = control("list item", "🦉Three").bounds();
    drag(control("list item", "🦉Two"), last.y + last.height);
    awaitNames("the pointer drags one to the end", {"Other", "One", "Three", "Two"});
    chooseRow("🦉Three");
    const auto kinds = AccessibleElement::shownBy(process());
    const auto choice = std::find_if(kinds.begin(), kinds.end(), [](const auto& element) {
        return element.role() == "radio button" && element.name() == "Non - Context";
    });
    ASSERT_NE(choice, kinds.end());
    clickOn(*choice);
    eventually("the kind is in the file",
               [] { return presets()[2].value("promptType", "") == "nonContext"; });
    eventually("the tab lists it no more", [&] { return !has("list item", "🦉Three"); });
    EXPECT_EQ(control("text", "Name").text(), "Three") << "the form stays on it";
    EXPECT_TRUE(control("radio button", "Context").press());
    chooseRow("🦉Two");
    std::string expected = "prompt of Two";
    for (int count = 0; count < 2; ++count) {
        EXPECT_TRUE(control("push button", "Add Selected Text").press());
        expected += "{selected text}";
        eventually("the placeholder is appended",
                   [&] { return presets()[3].value("prompt", "") == expected; });
    }
}

TEST_F(EditorDesktop, DeletesGoDownToTheLastPresetAndCanBeUndone) {
    const json list = json::array({preset("One", "context"), preset("Two", "context")});
    open(list);
    chooseRow("🦉Two");
    clickOn(control("push button", "Delete"));
    awaitNames("the button deletes", {"One"});
    eventually("the selection steps back", [&] { return control("text", "Name").text() == "One"; });
    input().chord({KEY_LEFTCTRL, KEY_Z});
    awaitNames("Ctrl+Z brings it back", {"One", "Two"});
    EXPECT_EQ(presets(), list);
    chooseRow("🦉One");
    input().tapKey(KEY_DELETE);
    awaitNames("the key deletes as well", {"Two"});
    clickOn(control("push button", "Undo Delete"));
    awaitNames("the button brings it back", {"One", "Two"});
    EXPECT_EQ(presets(), list);
    chooseRow("🦉Two");
    clickOn(control("push button", "Delete"));
    awaitNames("the list shrinks again", {"One"});
    // Nothing shows that the last one was to be deleted, but what is typed next comes after it.
    input().tapKey(KEY_SPACE);
    tabTo("text", "Name");
    input().type("x");
    awaitNames("the last one stays, and can be edited", {"x"});
}

TEST_F(EditorDesktop, ALinkImportsAPresetIntoTheRunningProgramAndStartsTheOneThatDoesNotRun) {
    writePresets(json::array({preset("One", "context")}));
    start();
    // A program that was built and not installed makes itself the handler of its links.
    eventually("the scheme has a handler", [] {
        return runChild({"xdg-mime", "query", "default", "x-scheme-handler/quillmoth"},
                        std::chrono::seconds(5))
                   .output.find("quillmoth-links.desktop") != std::string::npos;
    });
    const std::string link =
        "quillmoth://add?a=1&data=%7B%22id%22%3A%22x%22%2C%22emoji%22%3A%22%F0%9F%A6%89%22%2C%22name%22%3A%22"
        "Summary%22%2C%22prompt%22%3A%22Summarise%3A%20%7Bselected%20text%7D%22%7D&data=no";
    const auto follow = [&] {
        const ChildResult opened = runChild({"xdg-open", link}, std::chrono::seconds(20));
        EXPECT_EQ(opened.exitCode, 0) << opened.output;
    };
    follow();
    awaitNames("the running program imports it", {"One", "Summary"});
    awaitWindow("Prompt Editor");
    json imported = presets()[1];
    EXPECT_NE(imported.value("id", ""), "x");
    imported.erase("id");
    EXPECT_EQ(imported,
              (json{{"emoji", "🦉"}, {"name", "Summary"}, {"prompt", "Summarise: {selected text}"}}));
    EXPECT_TRUE(control("list item", "🦉Summary").isShowing());
    eventually("the form shows the imported preset", [&] { return shows("Summarise: {selected text}"); });
    quit();
    // What xdg-open starts stays in its process group, and so with this test.
    ChildProcess opener({"xdg-open", link});
    awaitNames("the link starts the program", {"One", "Summary", "Summary"});
    awaitWindow("Prompt Editor");
    run({"--quit"});
    EXPECT_TRUE(opener.waitForExit(std::chrono::seconds(20)).has_value());
}

TEST_F(EditorDesktop, TheWholeListGoesIntoAFileAndComesBackFromIt) {
    const json list = json::array({preset("One", "context"), preset("Two", "nonContext")});
    const std::string copy = desktop().homeDirectory() + "/copy.json";
    open(list);
    // Twice the same keys: the menu, its item, and the name of the file.
    const auto chooseFile = [&](int item, const char* dialog) {
        EXPECT_TRUE(control("push button", "Import and export").press());
        eventually("the menu opens",
                   [&] { return visiblePopupOf(desktop(), static_cast<std::uint32_t>(process())) != 0; });
        for (int count = 0; count < item; ++count)
            input().tapKey(KEY_DOWN);
        input().tapKey(KEY_ENTER);
        awaitWindow(dialog);
        input().chord({KEY_LEFTCTRL, KEY_A});
        input().type(copy);
        input().tapKey(KEY_ENTER);
        eventually("the dialog closes", [&] { return !hasWindow(dialog); });
    };
    chooseFile(2, "Export All Presets");
    eventually("the file is there", [&] { return std::filesystem::exists(copy); });
    std::ifstream file(copy);
    EXPECT_EQ(json::parse(std::string(std::istreambuf_iterator<char>(file), {})), list);
    chooseRow("🦉One");
    clickOn(control("push button", "Delete"));
    awaitNames("the preset is deleted", {"Two"});
    chooseFile(1, "Import Presets");
    eventually("a sheet says what came", [&] { return shows("1 preset was added."); });
    EXPECT_TRUE(shows("1 preset of the file was in the list already."));
    awaitNames("the preset is back, at the end", {"Two", "One"});
    eventually("the form shows it", [&] { return control("text", "Name").text() == "One"; });
}

} // namespace quillmoth::test
