#include "Foundation/Text.h"
#include "tests/desktop/atspi/AtSpiDesktop.h"

#include <linux/input-event-codes.h>

using namespace quillmoth;
using namespace quillmoth::platform;
using namespace quillmoth::test;

namespace {

using WriteBackTest = AtSpiDesktop;

const std::string kBefore = "first \U0001F600 line\nthe \u05E9\u05DC\u05D5\u05DD middle\n";
const std::string kOld = "replace \U0001F601 me";
const std::string kAfter = "\nand e\u0301 the rest\nto the end";
const auto kPlace = static_cast<std::int64_t>(utf16Length(kBefore));

} // namespace

TEST_F(WriteBackTest, putsTheAnswerInPlaceOfTheSelectionInEachEditor) {
    const std::vector<std::string> answers = {
        "short",
        "an answer of\nseveral lines,\nwith \U0001F680 and na\u00EFve \u05E2\u05D5\u05DC\u05DD",
        "",
        "replace \U0001F602 me",
    };
    for (const EditorKind& kind : editorKinds()) {
        SCOPED_TRACE(kind.name);
        const auto editor = openEditor(kind, kBefore + kOld + kAfter);
        std::string held = kOld;
        for (const std::string& answer : answers) {
            const auto length = static_cast<std::int64_t>(utf16Length(held));
            accessibility().setAttributeValue(focused(), "AXSelectedTextRange", CFRange{kPlace, length});
            ASSERT_EQ(capturedTextOnce(held), held);
            EXPECT_EQ(replaceSelection(answer), kAXErrorSuccess);
            const std::string expected = kBefore + answer + kAfter;
            const std::string caret = std::to_string(kPlace) + ",0";
            EXPECT_EQ(probedOnce(editor, "--text", expected), expected);
            EXPECT_EQ(probedOnce(editor, "--range", caret), caret) << "at the start of the answer";
            held = answer;
        }
    }
}

TEST_F(WriteBackTest, insertsAtTheCaretWhereNothingIsSelected) {
    for (const EditorKind& kind : editorKinds()) {
        SCOPED_TRACE(kind.name);
        const auto editor = openEditor(kind, "one two");
        desktop().input().chord({KEY_LEFTCTRL, KEY_END});
        ASSERT_TRUE(holdsWithin(std::chrono::seconds(2), [&] { return probed(editor, "--range") == "7,0"; }));
        EXPECT_EQ(replaceSelection(" three"), kAXErrorSuccess);
        EXPECT_EQ(probedOnce(editor, "--text", "one two three"), "one two three");
        EXPECT_EQ(probedOnce(editor, "--range", "7,0"), "7,0");
    }
}

TEST_F(WriteBackTest, aLongTextKeepsAllButTheChange) {
    std::string line = "a line of some words, with an accent \u00E9 in it\n";
    std::string text;
    while (text.size() < 200'000)
        text += line;
    for (const EditorKind& kind : editorKinds()) {
        SCOPED_TRACE(kind.name);
        const auto editor = openEditor(kind, text);
        const std::int64_t place = 1000 * static_cast<std::int64_t>(utf16Length(line));
        accessibility().setAttributeValue(focused(), "AXSelectedTextRange", CFRange{place, 6});
        ASSERT_EQ(capturedTextOnce("a line"), "a line");
        EXPECT_EQ(replaceSelection("WORDS \U0001F600"), kAXErrorSuccess);
        std::string expected = text;
        expected.replace(1000 * line.size(), 6, "WORDS \U0001F600");
        EXPECT_TRUE(probedOnce(editor, "--text", expected) == expected);
    }
}
