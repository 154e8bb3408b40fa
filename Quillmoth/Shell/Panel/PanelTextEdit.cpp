#include "Quillmoth/Shell/Panel/PanelTextEdit.h"

#include "Quillmoth/Shell/Looks/Palette.h"
#include "Quillmoth/Shell/Panel/PanelMenu.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocument>

namespace quillmoth {

namespace {

constexpr int kCaretWidth = 2;

QPalette fieldPalette() {
    QPalette palette;
    palette.setColor(QPalette::Base, Qt::transparent);
    palette.setColor(QPalette::Window, Qt::transparent);
    palette.setColor(QPalette::Text, kPanelTheme.white);
    palette.setColor(QPalette::PlaceholderText, kPanelTheme.gray);
    palette.setColor(QPalette::Highlight, kPanelTheme.selection);
    palette.setColor(QPalette::HighlightedText, kPanelTheme.text);
    return palette;
}

} // namespace

PanelTextEdit::PanelTextEdit(const QFont& font, int lineHeight, QWidget* parent)
    : QTextEdit(parent), lineHeight_(lineHeight) {
    setFrameShape(NoFrame);
    setPalette(fieldPalette());
    viewport()->setAutoFillBackground(false);
    setAcceptRichText(false);
    setFont(font);
    setCursorWidth(0);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTabChangesFocus(true);
    document()->setDocumentMargin(0);
    viewport()->setCursor(Qt::IBeamCursor);
    applyLineHeight();
    QObject::connect(&blink_, &QTimer::timeout, this, [this] {
        caretLit_ = !caretLit_;
        updateCaret();
    });
    QObject::connect(this, &QTextEdit::textChanged, this, [this] {
        if (!settingText_ && onEdited)
            onEdited();
    });
    QObject::connect(this, &QTextEdit::cursorPositionChanged, this, [this] { restartBlinking(); });
}

void PanelTextEdit::applyLineHeight() {
    document()->setUndoRedoEnabled(false);
    QTextCursor cursor(document());
    cursor.select(QTextCursor::Document);
    QTextBlockFormat format;
    format.setLineHeight(lineHeight_, QTextBlockFormat::FixedHeight);
    // Room for the caret at both ends of a line.
    format.setLeftMargin(kCaretRoom);
    format.setRightMargin(kCaretRoom);
    cursor.mergeBlockFormat(format);
    document()->setUndoRedoEnabled(true);
}

QString PanelTextEdit::text() const {
    QString text = document()->toRawText();
    text.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
    text.replace(QChar::LineSeparator, QLatin1Char('\n'));
    return text;
}

void PanelTextEdit::setText(const QString& text) {
    settingText_ = true;
    setPlainText(text);
    applyLineHeight();
    moveCursor(QTextCursor::End);
    settingText_ = false;
}

void PanelTextEdit::selectEverything() {
    QTextCursor cursor(document());
    cursor.movePosition(QTextCursor::Start);
    cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
    setTextCursor(cursor);
}

void PanelTextEdit::setCaretShown(bool shown) {
    caretShown_ = shown;
    restartBlinking();
}

QRect PanelTextEdit::caretRect() const {
    const QRect line = cursorRect();
    const int top = line.top() + (line.height() - caretHeight()) / 2;
    // In front of a line it does not touch the first letter.
    const int inset = textCursor().atBlockStart() ? kCaretWidth : kCaretWidth / 2;
    return {line.left() - inset, top, kCaretWidth, caretHeight()};
}

void PanelTextEdit::updateCaret() {
    viewport()->update(caretRect().adjusted(-1, -1, 1, 1));
}

void PanelTextEdit::restartBlinking() {
    caretLit_ = true;
    const int period = QApplication::cursorFlashTime();
    if (caretShown_ && hasFocus() && period > 0)
        blink_.start(period / 2);
    else
        blink_.stop();
    viewport()->update();
}

void PanelTextEdit::paintEvent(QPaintEvent* event) {
    QTextEdit::paintEvent(event);
    const bool focused = window()->focusWidget() == this;
    if (!caretShown_ || !caretLit_ || !focused || textCursor().hasSelection())
        return;
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(kPanelTheme.accent);
    painter.drawRoundedRect(QRectF(caretRect()), 1, 1);
}

void PanelTextEdit::keyPressEvent(QKeyEvent* event) {
    restartBlinking();
    if (event->matches(QKeySequence::SelectAll)) {
        selectEverything();
        return;
    }
    QTextEdit::keyPressEvent(event);
}

void PanelTextEdit::selectTo(QPoint position) {
    QTextCursor cursor = textCursor();
    cursor.setPosition(cursorForPosition(position).position(), QTextCursor::KeepAnchor);
    setTextCursor(cursor);
}

void PanelTextEdit::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        QTextEdit::mousePressEvent(event);
        return;
    }
    qApp->inputMethod()->commit();
    if (clicks_.countPress(*event) == 3)
        selectLine(event->position().toPoint());
    else if (event->modifiers() & Qt::ShiftModifier)
        selectTo(event->position().toPoint());
    else
        setTextCursor(cursorForPosition(event->position().toPoint()));
    setFocus(Qt::MouseFocusReason);
}

void PanelTextEdit::selectLine(QPoint position) {
    QTextCursor cursor = cursorForPosition(position);
    cursor.movePosition(QTextCursor::StartOfBlock);
    cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    setTextCursor(cursor);
}

void PanelTextEdit::mouseMoveEvent(QMouseEvent* event) {
    if ((event->buttons() & Qt::LeftButton) && clicks_.count() == 1)
        selectTo(event->position().toPoint());
}

void PanelTextEdit::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        QTextEdit::mouseReleaseEvent(event);
}

void PanelTextEdit::mouseDoubleClickEvent(QMouseEvent* event) {
    clicks_.countPress(*event);
    QTextCursor cursor = cursorForPosition(event->position().toPoint());
    cursor.select(QTextCursor::WordUnderCursor);
    setTextCursor(cursor);
}

std::unique_ptr<QMenu> PanelTextEdit::actions() {
    auto menu = std::make_unique<QMenu>();
    const auto add = [&](const QString& text, QKeySequence::StandardKey key, bool isEnabled, auto work) {
        QAction* action = menu->addAction(text);
        action->setShortcut(key);
        action->setEnabled(isEnabled);
        QObject::connect(action, &QAction::triggered, this, work);
    };
    const bool hasSelection = textCursor().hasSelection();
    add(QStringLiteral("Undo"), QKeySequence::Undo, document()->isUndoAvailable(), [this] { undo(); });
    add(QStringLiteral("Redo"), QKeySequence::Redo, document()->isRedoAvailable(), [this] { redo(); });
    menu->addSeparator();
    add(QStringLiteral("Cut"), QKeySequence::Cut, hasSelection, [this] { cut(); });
    add(QStringLiteral("Copy"), QKeySequence::Copy, hasSelection, [this] { copy(); });
    add(QStringLiteral("Paste"), QKeySequence::Paste, canPaste(), [this] { paste(); });
    menu->addSeparator();
    add(QStringLiteral("Select All"), QKeySequence::SelectAll, !document()->isEmpty(),
        [this] { selectEverything(); });
    return menu;
}

void PanelTextEdit::contextMenuEvent(QContextMenuEvent* event) {
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    const QPoint place = isByKey ? viewport()->mapToGlobal(caretRect().bottomLeft()) : event->globalPos();
    PanelMenu::open(*this, actions(), place, isByKey);
}

void PanelTextEdit::focusInEvent(QFocusEvent* event) {
    QTextEdit::focusInEvent(event);
    restartBlinking();
}

void PanelTextEdit::focusOutEvent(QFocusEvent* event) {
    QTextEdit::focusOutEvent(event);
    restartBlinking();
}

void PanelTextEdit::insertFromMimeData(const QMimeData* source) {
    if (!source->hasText())
        return;
    QString text = source->text();
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    textCursor().insertText(pasted(text));
    ensureCursorVisible();
}

} // namespace quillmoth
