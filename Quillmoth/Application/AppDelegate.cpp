#include "Quillmoth/Application/AppDelegate.h"

#include "Foundation/FatalError.h"
#include "Foundation/Log.h"
#include "Foundation/URL.h"
#include "Platform/Accessibility.h"
#include "Platform/Application.h"
#include "Platform/StatusItem.h"
#include "Platform/UUIDSource.h"
#include "Platform/UserDefaults.h"
#include "Platform/Workspace.h"

#include <algorithm>

namespace quillmoth {

namespace {

constexpr const char* kFirstTimeKey = "firstTime";

KeyboardShortcuts::Shortcut optionSpace() {
    return {KeyboardShortcuts::Key::space, KeyboardShortcuts::kFlagOption};
}

} // namespace

AppDelegate::AppDelegate(const platform::Platform& platform, KeyboardShortcuts::Center& shortcuts)
    : _coreAppModel(DataModel::create(platform)), platform_(platform), shortcuts_(shortcuts),
      showFloatingPanel_("showFloatingPanel", optionSpace(), shortcuts) {}

AppDelegate::~AppDelegate() {
    _coreAppModel->_FloatingViewPanel = nullptr;
}

bool AppDelegate::_firstTime() const {
    return platform_.userDefaults.boolean(kFirstTimeKey, true);
}

void AppDelegate::finishLaunching() {
    platform_.application.closeFirstWindow();
    showStatusItem();
    if (_firstTime()) {
        platform_.userDefaults.set(kFirstTimeKey, false);
        openRoute(Route::onboardingView);
    }
    if (!platform_.accessibility.isProcessTrustedWithOptions(true))
        logLine("Not trusted");
    buildFloatingPanel();
    shortcuts_.onKeyUp(showFloatingPanel_, [this] { toggleFloatingPanel(); });
}

void AppDelegate::showStatusItem() {
    platform_.statusItems.show(
        "wand.and.stars", "Quillmoth",
        {{.title = "Get Started", .keyEquivalent = "1", .action = [this] { didTapOne(); }},
         {.title = "Prompt Editor", .keyEquivalent = "2", .action = [this] { didTapTwo(); }},
         {.title = "Settings", .keyEquivalent = "3", .action = [this] { didTapThree(); }},
         {.title = "", .keyEquivalent = "", .action = {}},
         {.title = "Quit", .keyEquivalent = "q", .action = [this] { platform_.application.terminate(); }}});
}

void AppDelegate::buildFloatingPanel() {
    auto panel = std::make_shared<FloatingViewPanel>(platform_.panelWindows);
    _coreAppModel->_FloatingViewPanel = panel;
    panel->setTitle("Quillmoth Floating");
}

void AppDelegate::toggleFloatingPanel() {
    logLine("Keyboard shortcut was pressed!");
    _coreAppModel->captureContext();
    const std::shared_ptr<FloatingViewPanel> panel = _coreAppModel->_FloatingViewPanel;
    if (panel && panel->isOpen) {
        panel->close();
        panel->isOpen = false;
        return;
    }
    if (!panel)
        fatalError("There is no panel to show");
    panel->isOpen = true;
    panel->center();
    panel->setFrameUsingName(FloatingViewPanel::kFrameName);
    _coreAppModel->_didFocus = true;
    panel->orderFront();
    panel->makeKeyWindow();
    panel->isOpen = true;
}

std::string AppDelegate::routeName(Route route) {
    return route == Route::onboardingView ? "onboardingView" : "promptEditor";
}

void AppDelegate::openRoute(Route route) {
    platform_.workspace.openURL(std::string(kOwnScheme) + "://" + routeName(route));
}

void AppDelegate::didTapOne() {
    openRoute(Route::onboardingView);
}

void AppDelegate::didTapTwo() {
    openRoute(Route::promptEditor);
}

void AppDelegate::didTapThree() {
    platform_.application.activateIgnoringOtherApps();
    platform_.application.showSettingsWindow();
}

void AppDelegate::handleOpenURL(const std::vector<std::string>& urls) {
    for (const std::string& url : urls) {
        if (ownURL(url) != url)
            continue;
        logLine("RUNNING URL SCHME");
        const auto parsed = URL::parse(url, URL::kAnything);
        if (!parsed)
            refuseLink("Its address is not valid.");
        const auto items = parsed ? parsed->queryItems() : std::nullopt;
        if (!items)
            continue;
        const auto data = std::find_if(items->begin(), items->end(),
                                       [](const URLQueryItem& item) { return item.name == "data"; });
        if (data != items->end() && data->value)
            importPreset(*data->value);
    }
}

void AppDelegate::importPreset(const std::string& json) {
    auto prompt = readPromptData(json);
    if (!prompt) {
        refuseLink(prompt.error().description);
        return;
    }
    prompt->id = platform_.uuidSource.makeUUID();
    _coreAppModel->_PromptM.get()->append({std::move(*prompt)});
    openRoute(Route::promptEditor);
}

void AppDelegate::refuseLink(const std::string& reason) const {
    logLine("A link was refused: " + reason);
    if (onRefusedLink)
        onRefusedLink(reason);
}

} // namespace quillmoth
