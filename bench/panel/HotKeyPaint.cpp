// From the release of the hot key to the painted panel, under a window manager without a compositor. The peer
// is a bare window of the X server: mapped, exposed and filled with one colour.

#include "Platform/Fake/FakePlatform.h"
#include "Platform/Linux/X11/X11BackEnd.h"
#include "Quillmoth/Assistant/FloatingViewController.h"
#include "Quillmoth/Shell/Panel/FloatingView.h"
#include "Quillmoth/Shell/Panel/QtPanelWindow.h"
#include "tests/desktop/support/VirtualDesktop.h"

#include <QApplication>
#include <QWindow>

#include <benchmark/benchmark.h>
#include <linux/input-event-codes.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace quillmoth;
using Clock = std::chrono::steady_clock;

constexpr std::uint32_t kSpaceCode = 49;
constexpr std::uint32_t kOptionMask = 0x800;
constexpr double kOneFrame = 16;

double milliseconds(Clock::duration time) {
    return std::chrono::duration<double, std::milli>(time).count();
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// Returns after the server has handled what the toolkit has sent.
void synchronize() {
    xcb_connection_t* connection =
        qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
    std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
}

/// The panel with its real view, window, keyboard and hot key.
class Panel {
public:
    explicit Panel(platform::X11BackEnd& x11)
        : x11_(x11), windows_({.focus = x11.panelFocus(),
                               .defaults = fakes_.userDefaults,
                               .isCompositing = [] { return false; }},
                              [this] { return makeFloatingView(controller_); }),
          model_(DataModel::create(fakes_.platform())),
          controller_(FloatingViewController::create(model_, fakes_.platform())), panel_(windows_) {
        x11_.hotKeyCenter().installEventHandler([this](const platform::HotKeyEvent* event) {
            if (event->kind == platform::kEventHotKeyReleased)
                open();
            isPressed_ = true;
            return platform::noErr;
        });
        platform::HotKeyCenter::Handle handle = 0;
        x11_.hotKeyCenter().registerEventHotKey(kSpaceCode, kOptionMask, {1, 1}, handle);
    }

    /// One opening by the hot key, in milliseconds.
    double measure(test::DesktopInput& input) {
        isPressed_ = isOpened_ = false;
        input.pressKey(KEY_LEFTALT);
        input.pressKey(KEY_SPACE);
        while (!isPressed_)
            QCoreApplication::processEvents();
        const auto start = Clock::now();
        input.releaseKey(KEY_SPACE);
        while (!isOpened_)
            QCoreApplication::processEvents();
        synchronize();
        const double time = milliseconds(Clock::now() - start);
        input.releaseKey(KEY_LEFTALT);
        panel_.close();
        for (int turn = 0; turn < 20; ++turn) {
            fakes_.runUntilIdle();
            QCoreApplication::processEvents();
        }
        return time;
    }

private:
    void open() {
        panel_.center();
        model_->_didFocus = true;
        panel_.orderFront();
        panel_.makeKeyWindow();
        fakes_.runUntilIdle();
        // Painted with the exposure, which is handled within this.
        while (!windows_.lastSurface()->windowHandle()->isExposed())
            QCoreApplication::processEvents();
        windows_.lastSurface()->repaint();
        isOpened_ = true;
    }

    platform::X11BackEnd& x11_;
    platform::FakePlatform fakes_;
    QtPanelWindows windows_;
    std::shared_ptr<DataModel> model_;
    std::shared_ptr<FloatingViewController> controller_;
    FloatingViewPanel panel_;
    bool isPressed_ = false;
    bool isOpened_ = false;
};

/// One mapping of a bare window to the moment when it is filled, in milliseconds.
double measureBareWindow(xcb_connection_t* connection, std::uint32_t root) {
    const auto window = xcb_generate_id(connection);
    const std::uint32_t values[] = {0x1C1C21, 1, XCB_EVENT_MASK_EXPOSURE};
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, root, 100, 100, 612, 410, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    xcb_flush(connection);
    const auto start = Clock::now();
    xcb_map_window(connection, window);
    xcb_flush(connection);
    bool isExposed = false;
    while (!isExposed) {
        xcb_generic_event_t* event = xcb_wait_for_event(connection);
        isExposed = (event->response_type & 0x7F) == XCB_EXPOSE;
        std::free(event);
    }
    xcb_clear_area(connection, 0, window, 0, 0, 0, 0);
    std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    const double time = milliseconds(Clock::now() - start);
    xcb_destroy_window(connection, window);
    xcb_flush(connection);
    return time;
}

void hotKeyPaint(benchmark::State& state) {
    constexpr int kOpenings = 40;
    test::VirtualDesktop desktop;
    qputenv("QT_QPA_PLATFORM", "xcb");
    int count = 1;
    char name[] = "hotkey_paint";
    char* arguments[] = {name, nullptr};
    QApplication application(count, arguments);
    auto x11 = platform::X11BackEnd::create();
    if (!x11) {
        state.SkipWithError(x11.error().description.c_str());
        return;
    }
    Panel panel(**x11);
    std::vector<double> ours;
    std::vector<double> bare;
    for (auto unused : state) {
        (void)unused;
        panel.measure(desktop.input());
        for (int i = 0; i < kOpenings; ++i) {
            ours.push_back(panel.measure(desktop.input()));
            bare.push_back(measureBareWindow(desktop.connection(), desktop.rootWindow()));
        }
    }
    state.counters["panel_ms"] = median(ours);
    state.counters["slowest_ms"] = *std::max_element(ours.begin(), ours.end());
    state.counters["bare_window_ms"] = median(bare);
    state.counters["ratio_to_bare_window"] = median(ours) / median(bare);
    state.counters["ratio_to_frame"] = median(ours) / kOneFrame;
}

BENCHMARK(hotKeyPaint)->Name("hotkey_paint")->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
