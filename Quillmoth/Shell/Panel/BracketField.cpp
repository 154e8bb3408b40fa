#include "Quillmoth/Shell/Panel/BracketField.h"

#include "Foundation/Qt/Transition.h"
#include "Quillmoth/Shell/Looks/Fonts.h"
#include "Quillmoth/Shell/Looks/Motion.h"
#include "Quillmoth/Shell/Looks/Palette.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace quillmoth {

namespace {

constexpr int kFieldFont = 14;
constexpr int kFieldLine = 20;
constexpr int kBlankInset = 10;
constexpr double kFieldRadius = 7;
constexpr double kFieldRing = 2;
constexpr int kRaised = -1;

QString onOneLine(QString text) {
    for (const QChar lineBreak :
         {QChar(u'\n'), QChar(u'\r'), QChar(QChar::LineSeparator), QChar(QChar::ParagraphSeparator)})
        text.replace(lineBreak, QLatin1Char(' '));
    return text;
}

} // namespace

class BracketField::Edit final : public PanelTextEdit {
public:
    explicit Edit(BracketField& field)
        : PanelTextEdit(textFont(kFieldFont), kFieldLine, &field), field_(field) {
        setLineWrapMode(NoWrap);
        QPalette colors = palette();
        colors.setColor(QPalette::Text, kPanelTheme.text);
        setPalette(colors);
    }

    /// Takes line breaks out that the last change has brought. True where there were any, and so one more
    /// change has followed.
    bool joinLines() {
        const QString before = text();
        if (!before.contains(QLatin1Char('\n')))
            return false;
        const int caret = textCursor().position();
        QTextCursor cursor(document());
        // One step back takes both changes back.
        cursor.joinPreviousEditBlock();
        cursor.select(QTextCursor::Document);
        cursor.insertText(onOneLine(before));
        cursor.endEditBlock();
        cursor.setPosition(caret);
        setTextCursor(cursor);
        return true;
    }

protected:
    void keyPressEvent(QKeyEvent* event) override {
        const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
        const bool isPlain = !(event->modifiers() & ~Qt::KeypadModifier);
        if (!isReturn)
            PanelTextEdit::keyPressEvent(event);
        else if (isPlain && field_.onReturn && !event->isAutoRepeat())
            field_.onReturn();
    }

    void focusInEvent(QFocusEvent* event) override {
        PanelTextEdit::focusInEvent(event);
        field_.update();
    }

    void focusOutEvent(QFocusEvent* event) override {
        PanelTextEdit::focusOutEvent(event);
        if (event->reason() != Qt::ActiveWindowFocusReason && event->reason() != Qt::PopupFocusReason)
            deselect();
        field_.update();
    }

    [[nodiscard]] QString pasted(const QString& text) const override { return onOneLine(text); }

    [[nodiscard]] int caretHeight() const override { return 18; }

private:
    void deselect() {
        QTextCursor cursor = textCursor();
        cursor.clearSelection();
        setTextCursor(cursor);
    }

    BracketField& field_;
};

BracketField::BracketField(std::int64_t id, const QString& text, QWidget* parent)
    : QWidget(parent), id_(id), edit_(new Edit(*this)) {
    fadeOnHover(*this);
    setText(text);
    edit_->setAccessibleName(onOneLine(text));
    edit_->onEdited = [this] {
        // Where lines are joined, that change calls again.
        if (!edit_->joinLines() && onEdited)
            onEdited(edit_->text());
    };
}

PanelTextEdit& BracketField::edit() const {
    return *edit_;
}

void BracketField::setText(const QString& text) {
    const QString line = onOneLine(text);
    if (edit_->text() != line)
        edit_->setText(line);
}

void BracketField::setCaretShown(bool shown) {
    active_ = shown;
    edit_->setCaretShown(shown);
    update();
}

void BracketField::resizeEvent(QResizeEvent*) {
    // Qt sets a line of fixed height a little lower than in its middle.
    const int side = kOutside + kBlankInset - PanelTextEdit::kCaretRoom;
    edit_->setGeometry(side, (height() - kFieldLine) / 2 + kRaised, width() - 2 * side, kFieldLine);
}

void BracketField::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool focused = active_ && window()->focusWidget() == edit_;
    painter.setBrush(kPanelTheme.field);
    if (focused) {
        painter.setPen(QPen(kPanelTheme.accent, kFieldRing));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), kFieldRadius, kFieldRadius);
        return;
    }
    painter.setPen(QPen(blended(kPanelTheme.fieldEdge, kPanelTheme.fieldEdgeHovered, hoverShare(*this)), 1));
    painter.drawRoundedRect(
        QRectF(rect()).adjusted(kOutside + 0.5, kOutside + 0.5, -kOutside - 0.5, -kOutside - 0.5),
        kFieldRadius, kFieldRadius);
}

/// Beside its text a field is a field too.
void BracketField::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        edit_->setFocus(Qt::MouseFocusReason);
}

} // namespace quillmoth
