#include "tests/desktop/windows/WindowsSession.h"

#include <linux/input-event-codes.h>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;
using nlohmann::json;

json preset(const std::string& name, const std::string& type) {
    return {{"id", "id of " + name},
            {"emoji", "🦉"},
            {"name", name},
            {"prompt", "prompt of " + name},
            {"promptType", type}};
}

class EditorDesktop : public WindowsSession {
protected:
    static void startWith(const json& list) {
        session().writeFile(ProgramSession::kPresets, list.dump());
        start();
    }

    static void open(const json& list) {
        startWith(list);
        run({"quillmoth://promptEditor"});
        awaitWindow("Prompt Editor");
    }

    static void awaitNames(const std::string& what, const std::vector<std::string>& expected) {
        eventually(what, [&] {
            std::vector<std::string> names;
            for (const auto& entry : presets())
                names.push_back(entry.value("name", ""));
            return names == expected;
        });
    }

    static void awaitField(std::size_t index, const char* key, const std::string& value) {
        eventually("the file holds " + value, [&] { return presets()[index].value(key, "") == value; });
    }

    static void awaitName(const std::string& name) {
        eventually("the form shows " + name, [&] { return await("text", "Name").text() == name; });
    }

    static void chooseRow(const std::string& name) {
        click(await("list item", "🦉" + name));
        awaitName(name);
    }

    static void panelLists(const std::string& name) {
        openPanel();
        EXPECT_NO_THROW(await("list item", name));
        closePanelByHotKey();
    }
};

} // namespace

TEST_F(EditorDesktop, APresetIsAddedEditedAndStandsInThePanelsListAtOnce) {
    open(json::array({preset("One", "context")}));
    EXPECT_TRUE(await("radio button", "Non-context").press());
    EXPECT_TRUE(goes("list item", "🦉One"));
    click(await("push button", "+ Add"));
    eventually("the preset is in the file", [] { return presets().size() == 2; });
    json added = presets()[1];
    EXPECT_EQ(added.value("id", "").size(), 36U);
    added.erase("id");
    EXPECT_EQ(added, (json{{"emoji", "😀"},
                           {"name", "New Prompt"},
                           {"prompt", "Hi!"},
                           {"systemPrompt", "You're a helpful assistant!"},
                           {"promptType", "nonContext"}}));
    panelLists("New Prompt");
    awaitWindow("Prompt Editor");
    input().type("Haiku");
    awaitField(1, "name", "Haiku");
    tabTo("text", "System Prompt");
    input().chord({KEY_LEFTCTRL, KEY_A});
    input().type("Poet.");
    awaitField(1, "systemPrompt", "Poet.");
    EXPECT_TRUE(await("text", "Emoji").setText("👩‍🚀"));
    awaitField(1, "emoji", "👩‍🚀");
    EXPECT_FALSE(has("push button", "Add Selected Text"));
    panelLists("Haiku");
    EXPECT_EQ(presets()[0], preset("One", "context"));
}

TEST_F(EditorDesktop, PresetsAreReorderedByPointerAndByKeyboardAndChangeTheirKind) {
    open(json::array({preset("One", "context"), preset("Other", "nonContext"), preset("Two", "context"),
                      preset("Three", "context")}));
    chooseRow("One");
    input().chord({KEY_LEFTALT, KEY_DOWN});
    awaitNames("Alt+Down moves it behind the next one of its kind", {"Other", "Two", "One", "Three"});
    const DesktopRectangle from = await("list item", "🦉Two").bounds();
    const DesktopRectangle last = await("list item", "🦉Three").bounds();
    drag(from.x + 40, from.y + from.height / 2, 0, last.y + last.height - from.y - from.height / 2);
    awaitNames("the pointer drags one to the end", {"Other", "One", "Three", "Two"});
    chooseRow("Three");
    click(await("radio button", "Non - Context"));
    awaitField(2, "promptType", "nonContext");
    EXPECT_TRUE(goes("list item", "🦉Three"));
    EXPECT_EQ(await("text", "Name").text(), "Three") << "the form stays on it";
}

TEST_F(EditorDesktop, DeletesByButtonAndKeyCanBeUndoneAndTheLastPresetStays) {
    const json list = json::array({preset("One", "context"), preset("Two", "context")});
    open(list);
    chooseRow("Two");
    click(await("push button", "Delete"));
    awaitNames("the button deletes", {"One"});
    awaitName("One");
    input().chord({KEY_LEFTCTRL, KEY_Z});
    awaitNames("Ctrl+Z brings it back", {"One", "Two"});
    chooseRow("One");
    input().tapKey(KEY_DELETE);
    awaitNames("the key deletes as well", {"Two"});
    click(await("push button", "Undo Delete"));
    awaitNames("the button brings it back", {"One", "Two"});
    EXPECT_EQ(presets(), list);
}

TEST_F(EditorDesktop, ALinkImportsAPresetIntoTheRunningProgramAndStartsTheOneThatDoesNotRun) {
    startWith(json::array({preset("One", "context")}));
    // A program that was built and not installed makes itself the handler of its links.
    eventually("the scheme has a handler", [] {
        return runChild({"xdg-mime", "query", "default", "x-scheme-handler/quillmoth"}, 5s)
                   .output.find("quillmoth-links.desktop") != std::string::npos;
    });
    const std::string link =
        "quillmoth://add?a=1&data=%7B%22id%22%3A%22x%22%2C%22emoji%22%3A%22%F0%9F%A6%89%22%2C%22name%22%3A%22"
        "Summary%22%2C%22prompt%22%3A%22Summarise%3A%20%7Bselected%20text%7D%22%7D&data=no";
    const ChildResult opened = runChild({"xdg-open", link}, 20s);
    EXPECT_EQ(opened.exitCode, 0) << opened.output;
    awaitWindow("Add a Preset?");
    awaitText("Summarise: {selected text}");
    EXPECT_EQ(presets().size(), 1U) << "nothing is added before the answer";
    EXPECT_TRUE(await("push button", "Add Preset").press());
    awaitNames("the running program imports it", {"One", "Summary"});
    awaitWindow("Prompt Editor");
    json imported = presets()[1];
    EXPECT_NE(imported.value("id", ""), "x");
    imported.erase("id");
    EXPECT_EQ(imported,
              (json{{"emoji", "🦉"}, {"name", "Summary"}, {"prompt", "Summarise: {selected text}"}}));
    awaitText("Summarise: {selected text}");
    quit();
    // What xdg-open starts stays in its process group, and so with this test.
    ChildProcess opener({"xdg-open", link});
    awaitWindow("Add a Preset?");
    run({"--quit"});
    awaitNames("the link starts the program, which asks too", {"One", "Summary"});
    EXPECT_TRUE(opener.waitForExit(20s).has_value());
}

TEST_F(EditorDesktop, TheWholeListGoesIntoAFileAndComesBackFromIt) {
    const json list = json::array({preset("One", "context"), preset("Two", "nonContext")});
    open(list);
    // Twice the same keys: the menu, its item, and the name of the file.
    const auto chooseFile = [&](int item, const char* dialog) {
        EXPECT_TRUE(await("push button", "Import and export").press());
        eventually("the menu opens", [] { return openMenu() != 0; });
        for (int count = 0; count < item; ++count)
            input().tapKey(KEY_DOWN);
        input().tapKey(KEY_ENTER);
        awaitWindow(dialog);
        input().chord({KEY_LEFTCTRL, KEY_A});
        input().type(session().path("copy.json"));
        input().tapKey(KEY_ENTER);
        eventually("the dialog closes", [&] { return !hasWindow(dialog); });
    };
    chooseFile(2, "Export All Presets");
    eventually("the file is there", [] { return json::accept(session().readFile("copy.json")); });
    EXPECT_EQ(json::parse(session().readFile("copy.json")), list);
    chooseRow("One");
    click(await("push button", "Delete"));
    awaitNames("the preset is deleted", {"Two"});
    chooseFile(1, "Import Presets");
    awaitText("1 preset was added.");
    EXPECT_TRUE(shows("1 preset of the file was in the list already."));
    awaitNames("the preset is back, at the end", {"Two", "One"});
    awaitName("One");
}

} // namespace quillmoth::test
