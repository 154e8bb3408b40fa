#include "Platform/Linux/Shared/Terminals.h"
#include "Platform/Linux/X11/X11Terminals.h"
#include "tests/desktop/x11/X11Session.h"

#include <QRasterWindow>
#include <linux/input-event-codes.h>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;

constexpr std::uint16_t kC = 8;

/// A managed window on a connection of its own, as of another program, that notes the keys it receives:
/// "c" with its modifiers in front, such as "C-c", for a press of the C key.
class Witness {
public:
    Witness() : connection_(xcb_connect(nullptr, nullptr)) {
        const auto* screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
        const std::uint32_t events = XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE;
        window_ = xcb_generate_id(connection_);
        xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, screen->root, 50, 50, 200, 100, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
        xcb_map_window(connection_, window_);
        xcb_flush(connection_);
    }

    Witness(const Witness&) = delete;
    Witness& operator=(const Witness&) = delete;

    ~Witness() { xcb_disconnect(connection_); }

    [[nodiscard]] std::uint32_t window() const { return window_; }

    const std::string& received() {
        while (auto* event = xcb_poll_for_event(connection_)) {
            const auto type = event->response_type & 0x7F;
            if (type == XCB_KEY_PRESS || type == XCB_KEY_RELEASE)
                note(reinterpret_cast<const xcb_key_press_event_t&>(*event), type == XCB_KEY_PRESS);
            std::free(event);
        }
        return received_;
    }

private:
    void note(const xcb_key_press_event_t& key, bool isPress) {
        if (key.detail != KEY_C + 8)
            return;
        received_ += isPress ? "+" : "-";
        received_ += key.state & XCB_MOD_MASK_CONTROL ? "C" : "";
        received_ += key.state & XCB_MOD_MASK_1 ? "A" : "";
        received_ += key.state & XCB_MOD_MASK_SHIFT ? "S" : "";
        received_ += key.state & XCB_MOD_MASK_4 ? "W" : "";
        received_ += key.state & XCB_MOD_MASK_LOCK ? "L" : "";
    }

    xcb_connection_t* connection_;
    std::uint32_t window_ = 0;
    std::string received_;
};

class KeyboardEventsTest : public X11Session {
protected:
    static void copy() {
        auto& events = backEnd().keyboardEvents();
        for (const bool down : {true, false}) {
            auto event = events.createKeyboardEvent(kC, down);
            ASSERT_TRUE(event);
            event->flags = platform::keys::kFlagCommand;
            events.post(*event);
        }
    }

    static bool hasFocus(const Witness& witness) {
        return holdsWithin(2s, [&] { return desktop().windows().inputFocus() == witness.window(); });
    }

    /// The modifiers as the server sees them.
    static std::uint32_t modifiers() {
        auto* connection = desktop().connection();
        const auto cookie = xcb_query_pointer(connection, desktop().rootWindow());
        return ownedReply(xcb_query_pointer_reply(connection, cookie, nullptr))->mask & 0xFFU;
    }
};

} // namespace

TEST_F(KeyboardEventsTest, ACopyReachesTheFrontWindowWhateverTheUserHoldsOrHasLocked) {
    using Keys = std::vector<int>;
    const std::tuple<Keys, Keys, std::uint32_t> cases[] = {
        {{}, {}, 0},
        {{KEY_LEFTALT}, {}, XCB_MOD_MASK_1},
        {{KEY_LEFTSHIFT, KEY_LEFTALT}, {}, XCB_MOD_MASK_1 | XCB_MOD_MASK_SHIFT},
        {{KEY_LEFTMETA}, {}, XCB_MOD_MASK_4},
        {{KEY_RIGHTCTRL}, {}, XCB_MOD_MASK_CONTROL},
        {{KEY_LEFTCTRL, KEY_RIGHTSHIFT}, {}, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_SHIFT},
        {{}, {KEY_CAPSLOCK}, XCB_MOD_MASK_LOCK},
    };
    for (const auto& [held, locks, mask] : cases) {
        const std::string received = locks.empty() ? "+C-C" : "+CL-CL";
        Witness witness;
        ASSERT_TRUE(hasFocus(witness));
        for (const int key : locks)
            input().tapKey(key);
        for (const int key : held)
            input().pressKey(key);
        copy();
        EXPECT_TRUE(holdsWithin(1s, [&] { return witness.received() == received; })) << witness.received();
        EXPECT_EQ(modifiers(), mask) << "what is held stays held";
        for (const int key : held)
            input().releaseKey(key);
        for (const int key : locks)
            input().tapKey(key);
        EXPECT_EQ(modifiers(), 0U);
    }
}

TEST_F(KeyboardEventsTest, ACopyPassesByAPanelThatHoldsTheKeyboard) {
    Witness witness;
    ASSERT_TRUE(hasFocus(witness));
    QRasterWindow panel;
    panel.setFlags(Qt::Tool | Qt::BypassWindowManagerHint);
    panel.setGeometry(600, 300, 100, 100);
    panel.show();
    auto& focus = backEnd().panelFocus();
    focus.acquire(panel.winId());
    ASSERT_TRUE(holdsWithin(2s, [&] { return focus.isHeld(); }));
    copy();
    EXPECT_TRUE(holdsWithin(1s, [&] { return witness.received() == "+C-C"; })) << witness.received();
    EXPECT_TRUE(focus.isHeld());
    input().tapKey(KEY_C);
    letPass(50ms);
    EXPECT_EQ(witness.received(), "+C-C") << "the panel has the keyboard again";
    focus.release();
}

TEST_F(KeyboardEventsTest, KeysAreNamedByTheLayoutInForce) {
    auto& layout = backEnd().keyboardLayout();

    const std::tuple<const char*, std::uint16_t, std::optional<std::string>> cases[] = {
        {"us", 40, "k"}, {"us", 24, "="}, {"us", 82, "0"},          {"us", 105, std::nullopt},
        {"de", 6, "y"},  {"de", 41, "ö"}, {"de", 50, "^"},          {"ru,us", 40, "k"},
        {"ru", 40, "л"}, {"fr", 12, "a"}, {"us", 63, std::nullopt}, {"us", 57, "⇪"},
        {"us", 71, "⇭"}, {"us", 76, "⌤"}, {"us", 72, "🔊"},          {"us", 73, "🔉"},
        {"us", 74, "🔇"},
    };
    for (const auto& [layouts, keyCode, expected] : cases) {
        useLayout(layouts);
        EXPECT_EQ(layout.translate(keyCode), expected) << layouts << ' ' << keyCode;
    }
    useLayout("us");
    EXPECT_FALSE(backEnd().keyboardEvents().createKeyboardEvent(platform::keys::Key::function.code(), true))
        << "a position without a key";
}

TEST_F(KeyboardEventsTest, TheFrontTerminalsSelectionIsReadAndNobodyElses) {
    const auto terminal = frontTerminal("front", "printf 'pr\\303\\251cis\\n'; sleep 60");
    auto& front = backEnd().frontApplication();
    const auto process = front.processIdentifier();
    EXPECT_EQ(process, terminal.processIdentifier());
    EXPECT_EQ(front.primarySelection(), std::nullopt);
    const auto place = desktop().windows().geometry(desktop().windows().activeWindow());
    EXPECT_TRUE(holdsWithin(5s, [&] {
        for (int click = 0; click < 3; ++click)
            input().click(place.x + 15, place.y + 8);
        letPass(300ms);
        // Two clicks select the word, the third one the whole line.
        return front.primarySelection() == "pr\u00e9cis\n";
    })) << front.primarySelection().value_or("nothing");
    const auto other = frontTerminal("other", "sleep 60");
    EXPECT_EQ(front.primarySelection(), std::nullopt);
}

TEST_F(KeyboardEventsTest, TerminalsAreToldByTheirNamesAndByWhatTheyHold) {
    for (const char* name : {"XTerm", "st-256color", "Gnome-terminal", "org.gnome.Console", "URxvt",
                             "org.wezfurlong.wezterm", "x-terminal-emul", "foot"})
        EXPECT_TRUE(platform::isTerminalName(name)) << name;
    for (const char* name : {"firefox", "steam", "Mousepad", ""})
        EXPECT_FALSE(platform::isTerminalName(name)) << name;

    auto connection = platform::X11Connection::open();
    ASSERT_TRUE(connection);
    bool hasOtherFocus = false;
    const auto inFront = [&] {
        return platform::terminalInFront(**connection, [&](std::int64_t) { return hasOtherFocus; });
    };
    const std::string renamed = desktop().temporaryDirectory() + "/renamed";
    ASSERT_EQ(runChild({"sh", "-c", "cp \"$(command -v xterm)\" " + renamed}, 5s).exitCode, 0);
    for (const std::string& program : {std::string("xterm"), renamed}) {
        ChildProcess terminal(
            {program, "-class", "Other", "-name", "other", "-T", program, "-e", "sleep", "60"});
        EXPECT_TRUE(holdsWithin(5s, [&] { return inFront() == terminal.processIdentifier(); })) << program;
        hasOtherFocus = true;
        EXPECT_EQ(inFront().has_value(), program == "xterm") << "another field beside the terminal";
        hasOtherFocus = false;
    }
    Witness witness;
    ASSERT_TRUE(hasFocus(witness));
    EXPECT_EQ(inFront(), std::nullopt);
}

} // namespace quillmoth::test
