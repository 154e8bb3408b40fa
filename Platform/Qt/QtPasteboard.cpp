#include "Platform/Qt/QtPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace quillmoth::platform {

std::optional<std::string> QtPasteboard::string() const {
    const QMimeData* content = QGuiApplication::clipboard()->mimeData();
    if (!content || !content->hasText())
        return std::nullopt;
    return content->text().toStdString();
}

void QtPasteboard::clearContents() {
    // Not QClipboard::clear(): that one asks the owner first what there is to clear, and may wait for it.
    QGuiApplication::clipboard()->setMimeData(new QMimeData);
}

void QtPasteboard::setString(const std::string& text) {
    QGuiApplication::clipboard()->setText(QString::fromStdString(text));
}

} // namespace quillmoth::platform
