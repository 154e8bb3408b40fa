#include "Quillmoth/Shell/Windows/UpdateNotice.h"

#include "Quillmoth/Shell/Controls/ShellWindow.h"

#include <QMessageBox>
#include <QPushButton>

namespace quillmoth {

namespace {

QString titleOf(const UpdateNotice& notice) {
    return QStringLiteral("Quillmoth %1 is available.").arg(QString::fromStdString(notice.feed.version));
}

QString textOf(const UpdateNotice& notice) {
    const QString present = QStringLiteral("You have version %1.").arg(notice.presentVersion);
    return notice.feed.notes ? present + "\n\n" + QString::fromStdString(*notice.feed.notes) : present;
}

/// Nothing where the feed names no page.
AlertButton downloadButton(const UpdateNotice& notice) {
    if (!notice.feed.url)
        return {};
    return {QStringLiteral("Open Download Page"),
            [open = notice.openURL, url = *notice.feed.url] { open(url); }};
}

} // namespace

void showUpdateSheet(QWidget& parent, const UpdateNotice& notice) {
    showAlert(&parent, false, titleOf(notice), textOf(notice), {}, downloadButton(notice));
}

QMessageBox* showUpdateWindow(const QPalette& palette, const UpdateNotice& notice) {
    auto* window =
        makeAlert(nullptr, false, titleOf(notice), textOf(notice), downloadButton(notice), palette);
    window->setWindowModality(Qt::NonModal);
    // A Return that was meant for another window is to open nothing.
    for (auto* button : window->findChildren<QPushButton*>()) {
        if (window->buttonRole(button) == QMessageBox::RejectRole)
            window->setDefaultButton(button);
    }
    window->setAttribute(Qt::WA_ShowWithoutActivating);
    window->show();
    return window;
}

} // namespace quillmoth
