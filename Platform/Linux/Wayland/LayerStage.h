#pragma once

#include "Platform/PanelFocus.h"

#include <QPointer>
#include <QScreen>
#include <QWidget>
#include <cstdint>
#include <memory>
#include <string>

struct wl_event_queue;
struct wl_surface;
struct zwlr_layer_shell_v1;
struct zwlr_layer_surface_v1;

namespace quillmoth::platform {

/// A transparent window on the overlay layer, which covers the output with the focus and has all keys while
/// a panel on it is used: the widgets of panels stand on it, and what is pressed beside them is seen. Where a
/// panel stays without the keyboard, presses beside it go to what is below. The keyboard comes a moment after
/// it was acquired. Main thread.
class LayerStage final : public QWidget, public PanelFocus {
public:
    /// Null where the toolkit's compositor has no layers. `focusedOutput` tells the name of the output to
    /// appear on.
    [[nodiscard]] static std::unique_ptr<LayerStage> create(std::function<std::string()> focusedOutput);

    ~LayerStage() override;

    [[nodiscard]] bool isImmediate() const override { return false; }

    /// Comes up, empty.
    void prepare() override;
    void acquire(WindowIdentifier window) override;
    /// Goes, with all that is on it.
    void release() override;

    [[nodiscard]] bool isHeld() const override { return hasKeyboard_; }

    Subscription onTurnedElsewhere(std::function<void(Turn)> subscriber) override {
        return turns_.subscribe(std::move(subscriber));
    }

    /// Another application's window has got the focus of the desktop.
    void frontChanged();

    /// `handler` runs where the keyboard was given up because of a press beside the panel, which stays: for
    /// compositors that do not pass it on by themselves.
    void setYieldHandler(std::function<void()> handler) { yielded_ = std::move(handler); }

protected:
    void mousePressEvent(QMouseEvent* event) override;

private:
    LayerStage(zwlr_layer_shell_v1* shell, wl_event_queue* queue, std::function<std::string()> focusedOutput);

    [[nodiscard]] QScreen* wantedScreen() const;
    [[nodiscard]] wl_surface* surface() const;
    void putOnLayer(QScreen& screen);
    void takeOffLayer();
    void goOffScreen();
    void followWithoutLeave();
    void takeKeys(bool takes);
    void follow(const QWindow* focused);
    void turn(Turn kind);
    void configured(std::uint32_t serial, QSize size);
    void outputHasGone();

    zwlr_layer_shell_v1* shell_;
    wl_event_queue* queue_;
    std::function<std::string()> focusedOutput_;
    zwlr_layer_surface_v1* layer_ = nullptr;
    bool isAsked_ = false;
    bool hasKeyboard_ = false;
    /// The toolkit still counts the keyboard as that of the window which has gone.
    bool isLeaveDue_ = false;
    std::function<void()> yielded_;
    Signal<Turn> turns_;
};

} // namespace quillmoth::platform
