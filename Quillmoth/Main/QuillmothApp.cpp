#include "Quillmoth/Main/QuillmothApp.h"

#include "Foundation/URL.h"
#include "Platform/Linux/AtSpi/RestartNeeds.h"
#include "Quillmoth/Application/Links.h"
#include "Quillmoth/Settings/ImageSettings.h"
#include "Quillmoth/Shell/Panel/FloatingView.h"
#include "Quillmoth/Shell/Panel/ImageFetch.h"
#include "Quillmoth/Shell/Panel/MessagePalette.h"

namespace quillmoth {

namespace {

// The theme of the code blocks is made for this size, and does not follow the panel's.
constexpr double kCodeFontSize = 16;

// Until the program in front is the active one again.
constexpr platform::MainQueue::Seconds kWindowManagersTurn{0.3};

/// What loads images of answers, and which of them by themselves.
markdown::ImageServices imageServices(DesktopServices& services) {
    ImageSettings settings(services.userDefaults);
    return {
        .download = makeImageDownload(services.urlSessions, services.operationQueues),
        .permissions = {.loadsAll = [settings] { return settings.loadsRemoteImages(); },
                        .loadsFrom = [settings](const std::string& host) { return settings.loadsFrom(host); },
                        .allow = [settings](const std::string& host) mutable { settings.allow(host); }}};
}

/// A thread for what is long to parse.
markdown::BackgroundWork parser(DesktopServices& services) {
    return [queue = services.operationQueues.makeSerialQueue(),
            &mainQueue = services.mainQueue](std::function<void()> work, std::function<void()> finished) {
        queue->addOperation([work = std::move(work), finished = std::move(finished), &mainQueue] {
            work();
            mainQueue.async(finished);
        });
    };
}

} // namespace

QuillmothApp::QuillmothApp()
    : codeHighlighter_(highlighting::Theme::midnight(highlighting::Font(kCodeFontSize))),
      markdown_(messagePalette(), &codeHighlighter_, imageServices(services_)),
      panelWindows_({.focus = services_.panelFocus(),
                     .defaults = services_.userDefaults,
                     .isCompositing = [this] { return services_.isCompositing(); },
                     .onCompositingChange =
                         [this](std::function<void()> changed) {
                             return services_.onCompositingChange(std::move(changed));
                         },
                     .isOrdinaryWindow = !services_.panelFocus().isImmediate(),
                     .stage = services_.panelStage(),
                     .placement = services_.panelPlacement(),
                     .shown = [this] { services_.prepareForQuestions(); },
                     .closed = [this] { services_.panelClosed(); }},
                    [this] { return makePanelContent(); }),
      platform_(services_.platform(panelWindows_)),
      shortcuts_(services_.userDefaults, platform_.hotKeyCenter), _appDelegate(platform_, shortcuts_),
      controller_(FloatingViewController::create(_appDelegate._coreAppModel, platform_)),
      windows_(
          platform_, shortcuts_, _appDelegate._coreAppModel,
          {.openPromptEditor = [this] { _appDelegate.openRoute(AppDelegate::Route::promptEditor); },
           .accessibility = {.enable = [this] { return services_.accessibility.enableForDesktop(); },
                             .programsToRestart =
                                 [] {
                                     const auto display = qEnvironmentVariable("DISPLAY");
                                     return platform::programsToRestart(display.toStdString());
                                 }},
           .keyKeeping = &services_.userDefaults,
           .virtualKeyCode = [this](std::uint32_t scanCode) { return services_.virtualKeyCode(scanCode); },
           .inhibitShortcuts = [this](std::uint64_t window) { return services_.inhibitShortcuts(window); },
           .offers = [this] { return services_.offers(); }}),
      heldToggle_(
          services_.mainQueue, [this] { return services_.clock.secondsSince1970(); },
          [this] { _appDelegate.toggleFloatingPanel(); }) {
    markdown_.background = parser(services_);
    services_.application.setSettingsHandler([this] { windows_.showSettings(); });
    services_.workspace.setOwnURLHandler([this](const std::vector<std::string>& urls) { openURLs(urls); });
    services_.statusItems.setMenuStyle([this](QMenu& menu) { windows_.styleTrayMenu(menu); });
    services_.statusItems.setSymbolColour([this] { return windows_.trayColour(); });
    windows_.onTrayColourChange = [this] { services_.statusItems.redrawSymbol(); };
    _appDelegate.onRefusedLink = [this](const std::string& reason) { windows_.showRefusedLink(reason); };
    services_.fileDefaults.setFaultHandler(
        [&mainQueue = services_.mainQueue,
         weak = std::weak_ptr(_appDelegate._coreAppModel)](const std::string& words) {
            mainQueue.async([weak, words] {
                if (const auto model = weak.lock())
                    model->tell(words);
            });
        });
    services_.userDefaults.setAskingHandler([this] { return stepAsideForPassword(); });
    imageSettings_ = services_.userDefaults.onChange([this, known = imageDefaults()]() mutable {
        auto now = imageDefaults();
        if (now == known)
            return;
        known = std::move(now);
        markdown_.images.permissionsChanged();
    });
    services_.setConsentQuestion([this] { windows_.askForConsent(); });
}

QuillmothApp::~QuillmothApp() = default;

std::pair<bool, std::vector<std::string>> QuillmothApp::imageDefaults() {
    const ImageSettings settings(services_.userDefaults);
    return {settings.loadsRemoteImages(), settings.imageHosts()};
}

void QuillmothApp::finishLaunching() {
    if (_appDelegate._firstTime())
        windows_.expectOnboarding();
    _appDelegate.finishLaunching();
    shortcuts_.followStore();
    windows_.migrateLoginItem();
    windows_.startUpdateChecks();
    services_.finishLaunching();
}

std::unique_ptr<PanelContent> QuillmothApp::makePanelContent() {
    const auto openLink = [this](const QString& url) { return openFromAnswer(url.toStdString()); };
    return makeFloatingView(controller_, {.messages = {.markdown = &markdown_, .openLink = openLink}});
}

void QuillmothApp::finishWriting() {
    services_.fileWriter.flush();
}

QString QuillmothApp::openFromAnswer(const std::string& url) {
    if (!isOpenedFromAnswer(url))
        return QString::fromStdString(unopenedLinkWords(url));
    // What a link of the program's own shows is a window, which the panel gives way to.
    const std::shared_ptr<FloatingViewPanel> panel = _appDelegate._coreAppModel->_FloatingViewPanel;
    if (ownURL(url) && panel)
        panel->resignMainWindow();
    const bool isTaken = services_.workspace.openURL(url);
    return isTaken ? QString() : QStringLiteral("Nothing on this desktop opens this link.");
}

/// The desktop's question takes the keyboard, and the panel goes. What it returns brings the panel back, with
/// the text still in the field.
std::function<void()> QuillmothApp::stepAsideForPassword() {
    const std::shared_ptr<FloatingViewPanel> panel = _appDelegate._coreAppModel->_FloatingViewPanel;
    if (!panel || !panel->isOpen)
        return {};
    return
        [this] { services_.mainQueue.asyncAfter(kWindowManagersTurn, [this] { comeBackFromPassword(); }); };
}

void QuillmothApp::comeBackFromPassword() {
    const std::shared_ptr<FloatingViewPanel> panel = _appDelegate._coreAppModel->_FloatingViewPanel;
    if (!panel->isOpen)
        _appDelegate.toggleFloatingPanel();
    const std::string obstacle = services_.userDefaults.obstacle("openapikey");
    if (!obstacle.empty())
        _appDelegate._coreAppModel->tell(obstacle);
}

void QuillmothApp::openURLs(const std::vector<std::string>& urls) {
    for (const std::string& url : urls) {
        const auto preset = presetOfLink(url);
        if (!preset) {
            windows_.showRefusedLink(preset.error().description);
        } else if (*preset) {
            askForPreset(url, **preset);
        } else {
            _appDelegate.handleOpenURL({url});
            openRoute(url);
        }
    }
}

void QuillmothApp::askForPreset(const std::string& url, const PromptData& preset) {
    windows_.askForPreset({.name = QString::fromStdString(preset.emoji + " " + preset.name),
                           .systemPrompt = QString::fromStdString(preset.systemPrompt.value_or("")),
                           .prompt = QString::fromStdString(preset.prompt),
                           .add = [this, url] {
                               _appDelegate.handleOpenURL({url});
                               windows_.showNewestPreset();
                           }});
}

void QuillmothApp::openRoute(const std::string& url) {
    const std::string prefix = std::string(kOwnScheme) + "://";
    if (!url.starts_with(prefix))
        return;
    const std::string route =
        url.substr(prefix.size(), url.find_first_of("/?#", prefix.size()) - prefix.size());
    if (route == AppDelegate::routeName(AppDelegate::Route::onboardingView))
        windows_.showOnboarding();
    else if (route == AppDelegate::routeName(AppDelegate::Route::promptEditor))
        windows_.showPromptEditor();
}

void QuillmothApp::carryOutFirst(const platform::InstanceRequest& request) {
    using Kind = platform::InstanceRequest::Kind;
    // One thing at a time: the first steps lead on by themselves.
    const bool wantsAWindow = request.kind == Kind::toggle || request.kind == Kind::settings;
    if (!wantsAWindow || !windows_.showFirstSteps())
        carryOut(request);
}

void QuillmothApp::showPanel() {
    if (windows_.showFirstSteps())
        return;
    const std::shared_ptr<FloatingViewPanel> panel = _appDelegate._coreAppModel->_FloatingViewPanel;
    if (!panel || !panel->isOpen)
        _appDelegate.toggleFloatingPanel();
}

void QuillmothApp::carryOut(const platform::InstanceRequest& request) {
    using Kind = platform::InstanceRequest::Kind;
    switch (request.kind) {
    case Kind::activate:
        showPanel();
        break;
    case Kind::open:
        openURLs(request.urls);
        break;
    case Kind::toggle:
        if (const auto repeat = services_.commandRepeat())
            heldToggle_.request(*repeat);
        else
            _appDelegate.toggleFloatingPanel();
        break;
    case Kind::settings:
        _appDelegate.didTapThree();
        break;
    case Kind::getStarted:
        _appDelegate.didTapOne();
        break;
    case Kind::promptEditor:
        _appDelegate.didTapTwo();
        break;
    case Kind::quit:
        platform_.application.terminate();
        break;
    }
}

} // namespace quillmoth
