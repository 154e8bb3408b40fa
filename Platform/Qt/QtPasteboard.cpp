#include "Platform/Qt/QtPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QWindow>

namespace quillmoth::platform {

QtPasteboard::~QtPasteboard() {
    QObject::disconnect(focus_);
}

std::optional<std::string> QtPasteboard::string() const {
    if (waiting_)
        return waiting_;
    const QMimeData* content = QGuiApplication::clipboard()->mimeData();
    if (!content || !content->hasText())
        return std::nullopt;
    return content->text().toStdString();
}

void QtPasteboard::clearContents() {
    waiting_.reset();
    // Not QClipboard::clear(): that one asks the owner first what there is to clear, and may wait for it.
    QGuiApplication::clipboard()->setMimeData(new QMimeData);
}

void QtPasteboard::setString(const std::string& text) {
    QGuiApplication::clipboard()->setText(QString::fromStdString(text));
    QObject::disconnect(focus_);
    waiting_.reset();
    if (QGuiApplication::focusWindow() || !QGuiApplication::platformName().startsWith("wayland"))
        return;
    waiting_ = text;
    focus_ = QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, [this](const QWindow* focused) {
        if (focused && waiting_)
            setString(std::string(*waiting_));
    });
}

} // namespace quillmoth::platform
