#include "Platform/Linux/Sway/SwayFront.h"

#include "Platform/Linux/Shared/ApplicationName.h"
#include "Platform/Linux/Shared/Terminals.h"

#include <unistd.h>

#include <utility>

namespace quillmoth::platform {

SwayFront::SwayFront(SwayConnection& connection)
    : connection_(connection),
      events_(connection_.onEvent(
          [this](SwayConnection::Event kind, const nlohmann::json& event) { handle(kind, event); })) {}

std::optional<SwayWindow> SwayFront::window() {
    const auto tree = connection_.ask(SwayConnection::Question::getTree);
    auto window = tree ? focusedWindow(*tree) : std::nullopt;
    if (!window || window->process != getpid())
        last_ = std::move(window);
    return last_;
}

std::string SwayFront::name() {
    const auto window = this->window();
    return window ? applicationName(window->application) : std::string();
}

bool SwayFront::isTerminal(const std::function<bool(std::int64_t process)>& hasOtherFocus) {
    const auto window = this->window();
    return window &&
           (isTerminalName(window->application) || isTerminalProcess(window->process, hasOtherFocus));
}

void SwayFront::handle(SwayConnection::Event kind, const nlohmann::json& event) {
    const bool isOfWorkspace = kind == SwayConnection::Event::workspace;
    if ((kind != SwayConnection::Event::window && !isOfWorkspace) || textIn(event, "change") != "focus")
        return;
    // Events may be late: those of a window that has been in front all along tell of a focus that came back
    // to it, and those of a workspace of one that was left again.
    const auto before = last_;
    const auto container = event.find("container");
    auto window = container == event.end() ? std::nullopt : windowIn(*container);
    if (isOfWorkspace)
        window = this->window();
    else if (!window || window->process == getpid())
        return;
    last_ = std::move(window);
    if (last_ != before)
        changed_.emit();
}

} // namespace quillmoth::platform
