#include "Quillmoth/Shell/Windows/ShellWindow.h"

#include "Quillmoth/Shell/Windows/ColorScheme.h"
#include "Quillmoth/Shell/Windows/FocusRing.h"
#include "Quillmoth/Shell/Windows/WindowStyle.h"
#include "Quillmoth/Shell/Windows/WindowTheme.h"

#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QShortcut>

#include <utility>

namespace quillmoth {

ShellWindow::ShellWindow(const QString& title, ColorScheme& colorScheme) : colorScheme_(colorScheme) {
    setWindowTitle(title);
    setFont(windowFont());
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_W), this), &QShortcut::activated, this,
            [this] { close(); });
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q), this), &QShortcut::activated, this, [this] {
        if (onQuit)
            onQuit();
    });
}

ShellWindow::~ShellWindow() {
    // The focus moves once more while the controls go.
    disconnect(focusChange_);
}

void ShellWindow::present() {
    // Or the activation would give it to the first control, which then acts on keys not meant for it.
    if (!isVisible())
        setFocus(Qt::OtherFocusReason);
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void ShellWindow::applyLook() {
    const auto theme = [this] {
        setPalette(windowPalette(colorScheme_.isDark()));
        themeChanged();
    };
    focusRing_ = new FocusRing(this);
    applyWindowStyle(this);
    theme();
    schemeChange_ = colorScheme_.onChange(theme);
    focusChange_ =
        connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { follow(now); });
}

void ShellWindow::follow(QWidget* focused) {
    if (focused == nullptr || focused == this || focused->window() != this) {
        focusRing_->surround(nullptr);
        return;
    }
    if (isMovingFocus_)
        keyboardFocus_ = focused;
    const bool isShown = focused == keyboardFocus_ || qobject_cast<QLineEdit*>(focused) != nullptr;
    focusRing_->surround(isShown ? focused : nullptr);
}

bool ShellWindow::focusNextPrevChild(bool next) {
    isMovingFocus_ = true;
    const bool moved = QWidget::focusNextPrevChild(next);
    isMovingFocus_ = false;
    return moved;
}

void showAlert(QWidget* parent, bool isWarning, const QString& text, const QString& informativeText,
               std::function<void()> done, const AlertButton& extra) {
    QWidget* window = parent != nullptr ? parent->window() : nullptr;
    auto* alert = new QMessageBox(isWarning ? QMessageBox::Warning : QMessageBox::Information,
                                  QStringLiteral("Quillmoth"), text, QMessageBox::NoButton, window);
    alert->setAttribute(Qt::WA_DeleteOnClose);
    alert->setTextFormat(Qt::PlainText);
    alert->setInformativeText(informativeText);
    if (!extra.title.isEmpty()) {
        QPushButton* button = alert->addButton(extra.title, QMessageBox::AcceptRole);
        QObject::connect(button, &QPushButton::clicked, alert, extra.action);
        alert->setDefaultButton(button);
        alert->addButton(QStringLiteral("Not Now"), QMessageBox::RejectRole);
    } else {
        // By its text: a standard button would bring an icon along.
        alert->addButton(QStringLiteral("OK"), QMessageBox::AcceptRole);
    }
    if (window != nullptr) {
        alert->setPalette(window->palette());
        alert->setFont(window->font());
        applyWindowStyle(alert);
    }
    if (done)
        QObject::connect(alert, &QDialog::finished, alert, [done = std::move(done)] { done(); });
    // Modal to its window, or to the whole program where it has none.
    alert->setWindowModality(window != nullptr ? Qt::WindowModal : Qt::ApplicationModal);
    alert->show();
}

} // namespace quillmoth
