#include "tests/desktop/matrix/X11MatrixSession.h"

#include "tests/desktop/tray/OtherClipboards.h"

#include <algorithm>
#include <stdexcept>

namespace quillmoth::test {

X11MatrixSession::X11MatrixSession(const std::string& windowManager)
    : place_({.windowManager = windowManager, .accessibility = true}),
      backEnd_(quillmoth::X11Desktop::create()) {
    if (!backEnd_)
        throw std::runtime_error("the X server does not serve the program");
}

ChildOptions X11MatrixSession::programOptions() {
    ChildOptions options = commonProgramOptions();
    options.environment.emplace_back("QT_QPA_PLATFORM", "xcb");
    return options;
}

std::optional<std::string> X11MatrixSession::frontTitle() {
    const auto managed = windows().managedWindows();
    const auto active = windows().activeWindow();
    if (std::find(managed.begin(), managed.end(), active) == managed.end())
        return std::nullopt;
    return windows().title(active);
}

std::string X11MatrixSession::onClipboard(const std::string& mediaType) {
    return test::onClipboard(mediaType == "text/plain" ? "UTF8_STRING" : mediaType);
}

ChildProcess X11MatrixSession::copyRich(const std::string& text, const std::string& html) {
    return test::copyRich(text, html);
}

} // namespace quillmoth::test
