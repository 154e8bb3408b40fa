#include "Platform/Qt/QtWorkspace.h"

#include "Foundation/URL.h"
#include "Platform/MainQueue.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QUrl>

#include <utility>

namespace quillmoth::platform {

QtWorkspace::QtWorkspace(MainQueue& mainQueue, Front front)
    : mainQueue_(mainQueue), front_(std::move(front)) {}

void QtWorkspace::setOwnURLHandler(URLHandler handler) {
    ownURLHandler_ = std::move(handler);
}

std::optional<std::int64_t> QtWorkspace::frontmostApplicationProcessIdentifier() {
    const auto process = front_.process ? front_.process() : std::nullopt;
    return process == QCoreApplication::applicationPid() ? std::nullopt : process;
}

std::string QtWorkspace::frontmostApplicationName() {
    return front_.name ? front_.name() : std::string();
}

std::optional<std::string> QtWorkspace::frontmostPrimarySelection() {
    return front_.primarySelection ? front_.primarySelection() : std::nullopt;
}

std::optional<std::string> QtWorkspace::selectionInsteadOfCopy() {
    return front_.selectionInsteadOfCopy ? front_.selectionInsteadOfCopy() : std::nullopt;
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
