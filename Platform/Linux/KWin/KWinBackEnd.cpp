#include "Platform/Linux/KWin/KWinBackEnd.h"

#include "Platform/Linux/KWin/FakeInputEvents.h"
#include "Platform/Linux/KWin/KWinKeys.h"
#include "Platform/Linux/KWin/SessionBus.h"
#include "Platform/Linux/Shared/ApplicationName.h"
#include "Platform/Linux/Shared/Keycodes.h"
#include "Platform/Linux/Shared/Terminals.h"

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QTimer>
#include <utility>

namespace quillmoth::platform {

namespace {

constexpr int kFrontLimitMilliseconds = 1000;
constexpr int kStepMilliseconds = 5;

const QString kKWin = QStringLiteral("org.kde.KWin");

/// KWin alone has it; other compositors inside of its session, or beside one of KWin on X11, do not.
constexpr const char* kKWinsOwnProtocol = "org_kde_plasma_shell";

/// Where the user works now: where there are several outputs KWin knows.
std::string outputInUse() {
    if (QGuiApplication::screens().size() < 2)
        return {};
    const auto answer = askOnBus({kKWin, QStringLiteral("/KWin"), kKWin}, QStringLiteral("activeOutputName"));
    return answer && !answer->isEmpty() ? answer->constFirst().toString().toStdString() : std::string();
}

} // namespace

Result<std::unique_ptr<KWinBackEnd>> KWinBackEnd::create(const Toolkit& toolkit,
                                                         const std::function<void()>& askForKeys) {
    if (!qGuiApp || !QGuiApplication::platformName().startsWith(QStringLiteral("wayland")))
        return Error{"the toolkit does not run on Wayland"};
    for (const char* service : {"org.kde.KWin", "org.kde.kglobalaccel"}) {
        if (ownerOnBus(QLatin1String(service)).isEmpty())
            return Error{std::string(service) + " is not on the session bus"};
    }
    auto wayland = WaylandConnection::open();
    if (!wayland)
        return wayland.error();
    if (!(*wayland)->offers(kKWinsOwnProtocol))
        return Error{"the compositor is another one"};
    if (!(*wayland)->offers("zwlr_layer_shell_v1"))
        return Error{"KWin has no layers"};
    const bool asksForKeys = askForKeys && !(*wayland)->offers("org_kde_kwin_fake_input");
    std::unique_ptr<KWinBackEnd> kwin(new KWinBackEnd(std::move(*wayland), toolkit));
    if (asksForKeys) {
        askForKeys();
        static_cast<FakeInputEvents&>(kwin->keyboardEvents()).expectOffer();
    }
    return kwin;
}

KWinBackEnd::KWinBackEnd(std::unique_ptr<WaylandConnection> wayland, const Toolkit& toolkit)
    : WaylandBackEnd({.connection = std::move(wayland),
                      .makeKeyboardEvents =
                          [](WaylandConnection& connection, const WaylandKeyboardLayout& layout) {
                              return std::make_unique<FakeInputEvents>(connection, layout);
                          },
                      .focusedOutput = outputInUse},
                     toolkit),
      hotKeys_([this](std::uint32_t keyCode, std::uint32_t carbonModifiers) {
          const auto keycode = keycodeForVirtualKeyCode(keyCode);
          const auto keymap = layout().keymap();
          return keycode && keymap ? keysSeenByKWin(keymap.get(), *keycode, carbonModifiers)
                                   : std::vector<int>();
      }),
      frontChanges_(front_.onChange([this] { frontChanged(); })) {
    // Its keyboard stays with a surface that was active, whatever that asks for.
    setYieldHandler([this] { front_.activate(); });
}

std::optional<std::int64_t> KWinBackEnd::frontProcess() {
    const auto window = front_.window();
    return window ? std::optional(window->process) : std::nullopt;
}

std::string KWinBackEnd::frontName() {
    const auto window = front_.window();
    return window ? applicationName(window->application) : std::string();
}

bool KWinBackEnd::isFrontTerminal(const OtherFocus& hasOtherFocus) {
    const auto window = front_.window();
    return window &&
           (isTerminalName(window->application) || isTerminalProcess(window->process, hasOtherFocus));
}

void KWinBackEnd::awaitFront() const {
    const QDeadlineTimer deadline(kFrontLimitMilliseconds);
    QEventLoop loop;
    while (!front_.hasBeenTold() && !deadline.hasExpired()) {
        QTimer::singleShot(kStepMilliseconds, &loop, &QEventLoop::quit);
        loop.exec();
    }
}

} // namespace quillmoth::platform
