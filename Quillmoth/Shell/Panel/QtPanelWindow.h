#pragma once

#include "Platform/PanelFocus.h"
#include "Platform/PanelPlacement.h"
#include "Platform/PanelWindow.h"
#include "Platform/UserDefaults.h"
#include "Quillmoth/Shell/Panel/PanelSurface.h"

#include <QPointer>

namespace quillmoth {

/// What panels need of the desktop.
struct QtPanelServices {
    platform::PanelFocus& focus;
    platform::UserDefaults& defaults;
    /// Whether the desktop blends windows now. Without it, yes.
    std::function<bool()> isCompositing = {};
    /// Calls after that has changed.
    std::function<Subscription(std::function<void()>)> onCompositingChange = {};
    /// Where the desktop decides who has the keyboard, a panel is a window as any other.
    bool isOrdinaryWindow = false;
    /// What panels stand on, and the panel focus shows and hides; null where each is a window by itself.
    /// Their frames are places on it.
    QWidget* stage = nullptr;
    /// What places ordinary windows; null where nothing does.
    platform::PanelPlacement* placement = nullptr;
    /// Called when a panel is shown.
    std::function<void()> shown = {};
    /// Called when it has gone.
    std::function<void()> closed = {};
    /// The parts of the screens that are for windows, the main screen's first. Without it, the toolkit's.
    std::function<QList<QRect>()> screens = {};
};

/// Panels as windows of this toolkit that no window manager knows.
class QtPanelWindows final : public platform::PanelWindows {
public:
    using ContentFactory = std::function<std::unique_ptr<PanelContent>()>;

    /// `makeContent` is called with each new panel.
    QtPanelWindows(QtPanelServices services, ContentFactory makeContent);

    std::unique_ptr<platform::PanelWindow> makePanel() override;

    /// The window of the panel made last; none before there is one.
    [[nodiscard]] PanelSurface* lastSurface() const { return lastSurface_; }

private:
    QtPanelServices services_;
    ContentFactory makeContent_;
    QPointer<PanelSurface> lastSurface_;
};

/// One such panel. It is shown above all windows, and takes the keyboard by the panel focus alone.
class QtPanelWindow final : public platform::PanelWindow {
public:
    QtPanelWindow(QtPanelServices services, std::unique_ptr<PanelContent> content);
    ~QtPanelWindow() override;

    void setTitle(const std::string& title) override;
    void center() override;
    bool setFrameUsingName(std::string_view name) override;
    void saveFrameUsingName(std::string_view name) override;
    void orderFront() override;
    void makeKeyWindow() override;
    void close() override;
    void setResignMainHandler(std::function<void()> handler) override;

    [[nodiscard]] PanelSurface& surface() const { return *surface_; }

private:
    void followCompositing();
    void followScreens();
    void turnedElsewhere(platform::PanelFocus::Turn turn);
    void pressed();
    void place();
    [[nodiscard]] QPoint pointer() const;

    QtPanelServices services_;
    std::unique_ptr<PanelSurface> surface_;
    std::function<void()> resignMain_;
    Subscription turned_;
    Subscription compositing_;
};

} // namespace quillmoth
