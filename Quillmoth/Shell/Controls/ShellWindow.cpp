#include "Quillmoth/Shell/Controls/ShellWindow.h"

#include "Quillmoth/Shell/Controls/ColorScheme.h"
#include "Quillmoth/Shell/Controls/FocusRing.h"
#include "Quillmoth/Shell/Controls/WindowStyle.h"
#include "Quillmoth/Shell/Looks/Fonts.h"
#include "Quillmoth/Shell/Looks/OwnKeys.h"
#include "Quillmoth/Shell/Looks/Palette.h"

#include <QApplication>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>

#include <algorithm>
#include <utility>

namespace quillmoth {

ShellWindow::ShellWindow(const QString& title, ColorScheme& colorScheme) : colorScheme_(colorScheme) {
    setWindowTitle(title);
    setFont(textFont());
    connect(new QShortcut(ownKeySequence(OwnKey::closeWindow), this), &QShortcut::activated, this,
            [this] { close(); });
    connect(new QShortcut(ownKeySequence(OwnKey::quit), this), &QShortcut::activated, this, [this] {
        if (onQuit)
            onQuit();
    });
}

ShellWindow::~ShellWindow() {
    // The focus moves once more while the controls go.
    disconnect(focusChange_);
}

void ShellWindow::present() {
    if (!isVisible())
        takeFirstFocus();
    if (!testAttribute(Qt::WA_Moved))
        placeInTheMiddle();
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void ShellWindow::takeFirstFocus() {
    // Or the activation would give it to the first control, which then acts on keys not meant for it.
    setFocus(Qt::OtherFocusReason);
}

void ShellWindow::focusVisibly(QWidget& control) {
    keyboardFocus_ = &control;
    control.setFocus(Qt::OtherFocusReason);
}

// Left to themselves, window managers put it into a corner, or where the smallest part of others is covered.
void ShellWindow::placeInTheMiddle() {
    const QScreen* pointed = QGuiApplication::screenAt(QCursor::pos());
    const QRect room = (pointed != nullptr ? pointed : screen())->availableGeometry();
    QRect frame(QPoint(), size());
    frame.moveCenter(room.center());
    move(std::max(frame.left(), room.left()), std::max(frame.top(), room.top()));
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

void styleAlert(QMessageBox& alert, const QPalette& palette) {
    alert.setPalette(palette);
    alert.setFont(textFont());
    applyWindowStyle(&alert);
    // The name that Qt gives to the label of the text proper.
    if (auto* text = alert.findChild<QLabel*>(QStringLiteral("qt_msgbox_label")))
        text->setFont(textFont(14, QFont::DemiBold));
    alert.layout()->setContentsMargins(20, 20, 20, 16);
}

QMessageBox* makeAlert(QWidget* window, bool isWarning, const QString& text, const QString& informativeText,
                       const AlertButton& extra, const QPalette& palette) {
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
    styleAlert(*alert, palette);
    return alert;
}

void showAlert(QWidget* parent, bool isWarning, const QString& text, const QString& informativeText,
               std::function<void()> done, const AlertButton& extra) {
    QWidget* window = parent != nullptr ? parent->window() : nullptr;
    QMessageBox* alert = makeAlert(window, isWarning, text, informativeText, extra,
                                   window != nullptr ? window->palette() : QApplication::palette());
    if (done)
        QObject::connect(alert, &QDialog::finished, alert, [done = std::move(done)] { done(); });
    // Modal to its window, or to the whole program where it has none.
    alert->setWindowModality(window != nullptr ? Qt::WindowModal : Qt::ApplicationModal);
    alert->show();
}

} // namespace quillmoth
