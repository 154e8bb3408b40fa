#include "Platform/Linux/Gnome/GnomeFront.h"

#include "Foundation/ASCII.h"
#include "Platform/Linux/Shared/Terminals.h"

#include <QGuiApplication>
#include <QWindow>

#include <fstream>
#include <utility>

namespace quillmoth::platform {

namespace {

/// Until the window that is in front then has told the accessibility bus so.
constexpr std::chrono::milliseconds kTellingTime{500};

std::string programName(std::int64_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/comm");
    std::string name;
    std::getline(file, name);
    return name;
}

std::string nameOfWindow(const GnomeWindow& window) {
    return window.windowClass.empty() ? programName(window.process) : window.windowClass;
}

} // namespace

GnomeFront::GnomeFront(GnomeExtension& extension, std::function<std::optional<std::int64_t>()> activeProcess)
    : extension_(extension), activeProcess_(std::move(activeProcess)) {
    QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, &context_,
                     [this](const QWindow* focused) {
                         if (focused == nullptr)
                             lostFocus_ = std::chrono::steady_clock::now();
                     });
}

bool GnomeFront::isOwnWindowInFront() const {
    return QGuiApplication::focusWindow() != nullptr ||
           std::chrono::steady_clock::now() - lostFocus_ < kTellingTime;
}

std::optional<GnomeWindow> GnomeFront::window() {
    if (const auto told = extension_.front()) {
        last_ = *told;
        return last_;
    }
    const auto process = activeProcess_();
    if (process)
        last_ = GnomeWindow{.process = *process, .windowClass = {}};
    else if (!isOwnWindowInFront())
        last_.reset();
    return last_;
}

std::string GnomeFront::name() {
    const auto window = this->window();
    if (!window)
        return {};
    const std::string known = nameOfWindow(*window);
    // Some put their domain before it.
    std::string name = known.substr(known.rfind('.') + 1);
    if (!name.empty() && name.front() >= 'a' && name.front() <= 'z')
        name.front() = static_cast<char>(name.front() - 'a' + 'A');
    return name;
}

bool GnomeFront::isTerminal(const std::function<bool(std::int64_t process)>& hasOtherFocus) {
    const auto window = this->window();
    return window &&
           (isTerminalName(window->windowClass) || isTerminalProcess(window->process, hasOtherFocus));
}

bool GnomeFront::hasOwnPasteKeys() {
    const auto window = this->window();
    const std::string name = window ? lowercasedASCII(nameOfWindow(*window)) : std::string();
    return name.starts_with("emacs") || name.starts_with("gvim");
}

} // namespace quillmoth::platform
