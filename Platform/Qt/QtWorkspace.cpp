#include "Platform/Qt/QtWorkspace.h"

#include "Foundation/URL.h"
#include "Platform/MainQueue.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QUrl>

#include <utility>

namespace quillmoth::platform {

QtWorkspace::QtWorkspace(MainQueue& mainQueue, FrontProcess frontProcess, TerminalSelection terminalSelection)
    : mainQueue_(mainQueue), frontProcess_(std::move(frontProcess)),
      terminalSelection_(std::move(terminalSelection)) {}

void QtWorkspace::setOwnURLHandler(URLHandler handler) {
    ownURLHandler_ = std::move(handler);
}

std::optional<std::int64_t> QtWorkspace::frontmostApplicationProcessIdentifier() {
    const auto process = frontProcess_ ? frontProcess_() : std::nullopt;
    return process == QCoreApplication::applicationPid() ? std::nullopt : process;
}

std::optional<std::string> QtWorkspace::selectionInFrontTerminal() {
    return terminalSelection_ ? terminalSelection_() : std::nullopt;
}

bool QtWorkspace::openURL(const std::string& url) {
    const QUrl parsed(QString::fromStdString(url), QUrl::TolerantMode);
    if (!parsed.isValid() || parsed.isRelative())
        return false;
    auto own = ownURL(url);
    if (!own)
        return QDesktopServices::openUrl(parsed);
    if (!ownURLHandler_)
        return false;
    mainQueue_.async([handler = ownURLHandler_, own = std::move(*own)] { handler({own}); });
    return true;
}

} // namespace quillmoth::platform
