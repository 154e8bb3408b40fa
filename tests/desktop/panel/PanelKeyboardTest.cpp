// Real keys in a real panel: typing works while another window stays the active one.

#include "tests/desktop/support/VirtualDesktop.h"
#include "tests/unit/shell/PanelFixture.h"

#include <QApplication>
#include <QTimer>
#include <QWindow>

#include <gtest/gtest.h>

#include <linux/input-event-codes.h>
#include <xcb/xcb.h>

namespace quillmoth {

namespace {

/// The keyboard by a grab on the toolkit's own connection.
class GrabbedKeyboard final : public platform::PanelFocus {
public:
    void acquire(WindowIdentifier window) override {
        auto* connection = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
        const auto cookie = xcb_grab_keyboard(connection, 0, static_cast<xcb_window_t>(window),
                                              XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        std::unique_ptr<xcb_grab_keyboard_reply_t, decltype(&free)> reply(
            xcb_grab_keyboard_reply(connection, cookie, nullptr), &free);
        held_ = reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
    }

    void release() override {
        auto* connection = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
        xcb_ungrab_keyboard(connection, XCB_CURRENT_TIME);
        xcb_flush(connection);
        held_ = false;
    }

    [[nodiscard]] bool isHeld() const override { return held_; }

    Subscription onTurnedElsewhere(std::function<void(Turn)> subscriber) override {
        return turned_.subscribe(std::move(subscriber));
    }

private:
    bool held_ = false;
    Signal<Turn> turned_;
};

TEST(PanelKeyboardTest, KeysReachTheFieldAndTheListUnderAGrab) {
    test::VirtualDesktop desktop;
    qputenv("QT_QPA_PLATFORM", "xcb");
    int count = 1;
    char name[] = "panel";
    char* arguments[] = {name, nullptr};
    QApplication application(count, arguments);

    platform::FakePlatform platform;
    GrabbedKeyboard keyboard;
    platform.workspace.frontmost = 42;
    platform.documents.put(
        PromptModel::kFilename,
        *writeJSON(std::vector<PromptData>{makePreset("📧", "Write an email", "p", "nonContext")}));
    const auto model = DataModel::create(platform.platform());
    const auto controller = FloatingViewController::create(model, platform.platform());
    auto content = makeFloatingView(controller);
    FloatingView& view = *content;
    QtPanelWindow window(
        {.focus = keyboard, .defaults = platform.userDefaults, .isCompositing = [] { return false; }},
        std::move(content));
    QTimer pump;
    QObject::connect(&pump, &QTimer::timeout, [&] { platform.runUntilIdle(); });
    pump.start(2);

    window.center();
    window.orderFront();
    ASSERT_TRUE(test::holdsWithin(std::chrono::seconds(5),
                                  [&] { return window.surface().windowHandle()->isExposed(); }));
    window.makeKeyWindow();
    ASSERT_TRUE(keyboard.isHeld());

    desktop.input().type("em");
    EXPECT_TRUE(test::holdsWithin(std::chrono::seconds(5), [&] { return *model->_command == "em"; }))
        << *model->_command;
    desktop.input().tapKey(KEY_DOWN);
    EXPECT_TRUE(test::holdsWithin(std::chrono::seconds(5), [&] { return *model->_selectedIndex == 0; }));
    // The pin needs a panel of the model's own.
    model->_FloatingViewPanel = std::make_shared<FloatingViewPanel>(
        platform.panelWindows, false, false, platform::PanelProperties::Rectangle{}, 2, false);
    desktop.input().chord({KEY_LEFTCTRL, KEY_T});
    EXPECT_TRUE(test::holdsWithin(std::chrono::seconds(5),
                                  [&] { return view.bottomBar().findChild<QCheckBox*>()->isChecked(); }));
    window.close();
    EXPECT_FALSE(keyboard.isHeld());
}

} // namespace

} // namespace quillmoth
