#include "tests/desktop/atspi/AtSpiTest.h"

#include "tests/desktop/support/AccessibleProgram.h"

#include <stdexcept>

namespace quillmoth::test {

using namespace platform;
using namespace std::chrono_literals;

AtSpiAccessibility AtSpiTest::newcomer(AtSpiHooks hooks) {
    hooks.frontProcess = [] { return session().frontProcess(); };
    return AtSpiAccessibility(std::move(hooks));
}

ChildProcess AtSpiTest::open(const std::vector<std::string>& command, const std::string& text,
                             bool readsText) {
    std::string seen;
    // Now and then a program built on Qt 5 does not find the accessibility bus at its start.
    for (int attempt = 0; attempt < 4; ++attempt) {
        ChildProcess application(command, session().session().programOptions());
        const bool isReady = holdsWithin(6s, [&] {
            if (!isInFront(application)) {
                seen = "it is not in front, " + application.output();
                return false;
            }
            AXUIElementRef element;
            AXValue value;
            AXError error = session().copyFocused(element);
            if (error == kAXErrorSuccess && readsText)
                error = read(element, "AXValue", value);
            const auto* shown = std::get_if<std::string>(&value);
            seen = shown ? "it shows " + shown->substr(0, 80) : "error " + std::to_string(error);
            return error == kAXErrorSuccess && (!readsText || (shown && *shown == text));
        });
        if (isReady)
            return application;
    }
    throw std::runtime_error(command.front() + " cannot be read: " + seen);
}

ChildProcess AtSpiTest::openEditor(const Editor& editor, const std::string& text) {
    return open(editor.commandOn(desktop().homeDirectory(), text), text, true);
}

ChildProcess AtSpiTest::openField(const std::string& kind, const std::string& text) {
    return open({ATSPI_FIELD_WINDOW, kind, text}, text, kind != "password");
}

void AtSpiTest::inEachEditor(const std::string& text,
                             const std::function<void(const ChildProcess& editor)>& check) {
    for (const Editor& editor : lightEditors()) {
        SCOPED_TRACE(editor.name);
        check(openEditor(editor, text));
    }
}

AXUIElementRef AtSpiTest::focused() {
    AXUIElementRef element;
    EXPECT_EQ(session().copyFocused(element), kAXErrorSuccess);
    return element;
}

AXError AtSpiTest::read(const AXUIElementRef& element, std::string_view attribute, AXValue& value) {
    return accessibility().copyAttributeValue(element, attribute, value);
}

void AtSpiTest::select(CFRange range) {
    EXPECT_EQ(accessibility().setAttributeValue(focused(), "AXSelectedTextRange", range), kAXErrorSuccess);
}

void AtSpiTest::selectAll(const std::string& text) {
    input().chord({KEY_LEFTCTRL, KEY_A});
    ASSERT_EQ(capturedOnce(text), text);
}

CFRange AtSpiTest::selectedRange() {
    AXValue range;
    EXPECT_EQ(read(focused(), "AXSelectedTextRange", range), kAXErrorSuccess);
    const auto* value = std::get_if<CFRange>(&range);
    return value ? *value : CFRange{-1, -1};
}

std::string AtSpiTest::capturedOnce(const std::string& expected) {
    std::string text;
    waitFor([&] { return (text = session().capture()) == expected; }, 2s);
    return text + (session().captureWay.empty() ? "" : " (" + session().captureWay + ")");
}

std::string AtSpiTest::textOf(const ChildProcess& application) {
    for (const AccessibleElement& element : AccessibleProgram(application.processIdentifier()).showing())
        if (element.isFocused())
            if (std::string text = element.text(); !text.empty())
                return text;
    return {};
}

std::string AtSpiTest::textOnce(const ChildProcess& application, const std::string& expected) {
    std::string text;
    waitFor([&] { return (text = textOf(application)) == expected; });
    return text;
}

WriteResult AtSpiTest::write(const std::string& text) {
    session().mayPaste = false;
    const WriteResult result = session().model->replaceSelection(text);
    session().mayPaste = true;
    return result;
}

double millisecondsOf(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

} // namespace quillmoth::test
