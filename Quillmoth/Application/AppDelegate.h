#pragma once

#include "KeyboardShortcuts/Center.h"
#include "KeyboardShortcuts/Name.h"
#include "Platform/Platform.h"
#include "Quillmoth/Assistant/DataModel.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quillmoth {

/// Brings up what the process starts with: the tray item, the panel, the hot key. Made once, and kept to the
/// end of the process. Main thread.
class AppDelegate {
public:
    enum class Route { onboardingView = 0, promptEditor = 1 };

    /// What stands behind "quillmoth://" in the route's URL.
    [[nodiscard]] static std::string routeName(Route route);

    /// Makes the model. The services and `shortcuts` outlive the object.
    AppDelegate(const platform::Platform& platform, KeyboardShortcuts::Center& shortcuts);
    /// Takes the panel from the model, since the two hold each other.
    ~AppDelegate();
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    /// Whether the onboarding has not been opened yet.
    [[nodiscard]] bool _firstTime() const;

    void finishLaunching();

    /// Takes URLs as ownURL() gives them. Imports the presets that the URLs carry in a query item "data";
    /// what is no preset there is refused. URLs of other schemes, or without that item, have no effect here.
    void handleOpenURL(const std::vector<std::string>& urls);

    /// Called for each link that is refused, with the reason in words for the user.
    std::function<void(const std::string& reason)> onRefusedLink;

    /// The reaction to the hot key: captures the context, then opens or closes the panel.
    void toggleFloatingPanel();

    void openRoute(Route route);
    void didTapOne();
    void didTapTwo();
    void didTapThree();

    /// Nothing reads it; the panel knows whether it is open.
    bool isOpen = false;
    const std::shared_ptr<DataModel> _coreAppModel;

private:
    void showStatusItem();
    void buildFloatingPanel();
    void importPreset(const std::string& json);
    void refuseLink(const std::string& reason) const;

    const platform::Platform platform_;
    KeyboardShortcuts::Center& shortcuts_;
    KeyboardShortcuts::Name showFloatingPanel_;
};

} // namespace quillmoth
