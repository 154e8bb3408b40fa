#include "Platform/Linux/X11/Selection/X11Pasteboard.h"
#include "Platform/Linux/X11/Selection/X11SelectionOwner.h"
#include "Platform/Linux/X11/Selection/X11SelectionReader.h"
#include "Platform/Qt/QtPasteboard.h"
#include "tests/desktop/support/SessionTest.h"
#include "tests/desktop/tray/OtherClipboards.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <atomic>
#include <fstream>
#include <thread>

namespace quillmoth::platform {

namespace {

using namespace std::chrono_literals;
using test::ChildProcess;
using test::holdsWithin;
using test::onClipboard;

class ClipboardTest : public test::SessionTest<test::ApplicationDesktop<QApplication>> {
protected:
    /// Another program that puts the file's content there and keeps running while it owns the clipboard.
    static ChildProcess copyFile(const std::string& content, const std::string& target = "UTF8_STRING") {
        static int number = 0;
        const std::string file = desktop().temporaryDirectory() + "/copied" + std::to_string(++number);
        std::ofstream(file, std::ios::binary) << content;
        const auto former = owner();
        ChildProcess other(
            {"sh", "-c",
             "exec xclip -selection clipboard -i -quiet -t " + target + " " + file + " >/dev/null 2>&1"});
        EXPECT_TRUE(holdsWithin(10s, [&] { return owner() != former; }));
        return other;
    }

    static xcb_window_t owner() {
        auto* connection = desktop().connection();
        const auto cookie = xcb_get_selection_owner(connection, desktop().windows().atom("CLIPBOARD"));
        return test::ownedReply(xcb_get_selection_owner_reply(connection, cookie, nullptr))->owner;
    }

    /// What the program does around a synthetic copy, while the front application copies "selected".
    static std::string capture(X11Pasteboard& pasteboard) {
        const auto saved = pasteboard.string();
        pasteboard.clearContents();
        std::optional<ChildProcess> front;
        if (pasteboard.isKept())
            front.emplace(copyFile("selected"));
        test::letPass(200ms);
        const auto fresh = pasteboard.string();
        pasteboard.clearContents();
        pasteboard.setString(saved.value_or(""));
        return fresh.value_or("nothing");
    }
};

double secondsOf(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// A clipboard manager that saves the text of whoever asks for it.
class Manager {
public:
    Manager() {
        EXPECT_TRUE(holdsWithin(5s, [this] { return isReady_.load(); }));
    }

    [[nodiscard]] bool hasSaved() const { return hasSaved_; }

private:
    void run(const std::stop_token& stop) {
        X11SelectionConnection connection;
        const xcb_atom_t name = connection.atom("CLIPBOARD_MANAGER");
        const xcb_atom_t clipboard = connection.atom("CLIPBOARD");
        X11SelectionOwner owner(connection, clipboard);
        X11SelectionReader reader(connection);
        connection.setHandler([&](const xcb_generic_event_t& event) {
            const auto& request = reinterpret_cast<const xcb_selection_request_event_t&>(event);
            const bool isOurs =
                (event.response_type & 0x7F) == XCB_SELECTION_REQUEST && request.selection == name;
            if (!isOurs)
                return owner.handle(event);
            auto content = reader.content(clipboard, X11SelectionConnection::Clock::now() + 2s);
            owner.own(std::make_shared<const SelectionContent>(std::move(content)));
            xcb_selection_notify_event_t notice = {};
            notice.response_type = XCB_SELECTION_NOTIFY;
            notice.requestor = request.requestor;
            notice.selection = name;
            notice.target = request.target;
            notice.property = request.property;
            char bytes[32] = {};
            memcpy(bytes, &notice, sizeof notice);
            xcb_send_event(connection.get(), 0, request.requestor, 0, bytes);
            xcb_flush(connection.get());
            hasSaved_ = true;
        });
        xcb_set_selection_owner(connection.get(), connection.window(), name, connection.serverTime());
        xcb_flush(connection.get());
        isReady_ = true;
        while (!stop.stop_requested())
            connection.handleEvents(X11SelectionConnection::Clock::now() + 20ms);
    }

    std::atomic<bool> isReady_ = false;
    std::atomic<bool> hasSaved_ = false;
    std::jthread thread_{[this](const std::stop_token& stop) { run(stop); }};
};

} // namespace

TEST_F(ClipboardTest, TextTravelsBothWays) {
    X11Pasteboard pasteboard;
    QtPasteboard ofTheToolkit;
    for (Pasteboard* one : {static_cast<Pasteboard*>(&pasteboard), static_cast<Pasteboard*>(&ofTheToolkit)}) {
        one->setString("Gr\u00fc\u00dfe \U0001F600\n");
        EXPECT_EQ(onClipboard(), "Gr\u00fc\u00dfe \U0001F600\n");
        EXPECT_EQ(pasteboard.string(), "Gr\u00fc\u00dfe \U0001F600\n");
        EXPECT_EQ(ofTheToolkit.string(), "Gr\u00fc\u00dfe \U0001F600\n")
            << "the program's own text fields can paste it";
        const auto other = copyFile("caf\xE9", "STRING");
        EXPECT_TRUE(holdsWithin(5s, [&] { return one->string() == "caf\u00e9"; })) << "Latin-1 only";
        one->clearContents();
        EXPECT_EQ(one->string(), std::nullopt);
        one->setString("mine");
        EXPECT_EQ(onClipboard("STRING"), "mine");
    }
}

TEST_F(ClipboardTest, TheToolkitsClipboardIsTakenFromItsOwnerWithoutAnyInput) {
    auto other = copyFile("other");
    QtPasteboard pasteboard;
    EXPECT_TRUE(holdsWithin(5s, [&] { return pasteboard.string() == "other"; }));
    // Only the notice of the new owner tells this program the server's time.
    pasteboard.clearContents();
    EXPECT_TRUE(holdsWithin(5s, [&] { return !other.isRunning(); })) << "the other one still owns it";
}

TEST_F(ClipboardTest, EveryFormatComesBackAfterACopy) {
    X11Pasteboard pasteboard;
    auto rich = test::copyRich("the text", "<b>the text</b>");
    const std::string picture = onClipboard("image/png");
    ASSERT_FALSE(picture.empty());
    EXPECT_EQ(capture(pasteboard), "selected");
    EXPECT_TRUE(holdsWithin(5s, [&] { return !rich.isRunning(); })) << "the first owner has lost it";
    EXPECT_EQ(onClipboard(), "the text");
    EXPECT_EQ(onClipboard("text/html"), "<b>the text</b>");
    EXPECT_TRUE(onClipboard("image/png") == picture);
    EXPECT_EQ(onClipboard("TARGETS").find("SAVE_TARGETS"), std::string::npos);
    const auto alone = copyFile(picture, "image/png");
    EXPECT_EQ(capture(pasteboard), "selected");
    EXPECT_TRUE(onClipboard("image/png") == picture) << "a picture without any text";
    EXPECT_EQ(onClipboard("TARGETS").find("STRING"), std::string::npos) << "and still without";
}

TEST_F(ClipboardTest, WhatTheProgramsOwnFieldsCopiedComesBackToo) {
    X11Pasteboard pasteboard;
    auto* data = new QMimeData;
    data->setText("from the panel");
    data->setHtml("<i>from the panel</i>");
    QGuiApplication::clipboard()->setMimeData(data);
    EXPECT_LT(secondsOf([&] { EXPECT_EQ(pasteboard.string(), "from the panel"); }), 3)
        << "nobody waits for the thread that waits";
    EXPECT_EQ(capture(pasteboard), "selected");
    EXPECT_EQ(onClipboard("text/html"), "<i>from the panel</i>");
}

TEST_F(ClipboardTest, FiftyMegabytesHoldUpNobodyAndAreNotLost) {
    X11Pasteboard pasteboard;
    std::string large;
    while (large.size() < (50U << 20U))
        large += "fifty megabytes of words \u00fc\n";
    std::ofstream(desktop().temporaryDirectory() + "/large", std::ios::binary) << large;
    const auto other = copyFile(large);
    std::optional<std::string> seen;
    const double time = secondsOf([&] { seen = pasteboard.string(); });
    std::printf("a clipboard of 50 MB: %.0f ms, %s\n", time * 1000, seen ? "read" : "passed over");
    EXPECT_LT(time, 3);
    const std::string captured = capture(pasteboard);
    EXPECT_TRUE(captured == "selected" || captured == "nothing") << "where it could not be kept";
    const auto compared = test::runChild(
        {"sh", "-c", "xclip -selection clipboard -o | cmp - " + desktop().temporaryDirectory() + "/large"},
        40s);
    EXPECT_EQ(compared.exitCode, 0) << compared.output;
}

TEST_F(ClipboardTest, AClipboardManagerTakesTheContentOverAtTheEnd) {
    const Manager manager;
    {
        X11Pasteboard pasteboard;
        pasteboard.setString("for later");
    }
    EXPECT_TRUE(manager.hasSaved());
    EXPECT_EQ(onClipboard(), "for later");
}

} // namespace quillmoth::platform
