#include "Quillmoth/Shell/Editor/PresetFields.h"

#include "Quillmoth/Shell/Controls/TextArea.h"
#include "Quillmoth/Shell/Looks/Fonts.h"
#include "Quillmoth/Shell/Looks/Palette.h"

#include <QKeyEvent>
#include <QPainter>
#include <QSignalBlocker>

namespace quillmoth {

namespace {

constexpr int kRadio = 16;
constexpr int kRadioGap = 7;
constexpr double kDot = 6;

} // namespace

void EmojiField::chooseFont() {
    // Signs with an emoji form as well, such as U+270D, are drawn from the emoji font only where it is first.
    const QFont wanted = startsWithPictograph(text()) ? emojiFont(textFont().pixelSize()) : textFont();
    if (font() != wanted)
        setFont(wanted);
}

void EmojiField::keyPressEvent(QKeyEvent* event) {
    // The field itself would take single code points off an emoji that is joined of several.
    if (event->key() == Qt::Key_Backspace && event->modifiers() == Qt::NoModifier && !hasSelectedText())
        cursorBackward(true);
    QLineEdit::keyPressEvent(event);
}

ChoiceButton::ChoiceButton(const QString& text) : QRadioButton(text) {
    setAttribute(Qt::WA_Hover);
}

QSize ChoiceButton::sizeHint() const {
    return {kRadio + kRadioGap + fontMetrics().horizontalAdvance(text()),
            qMax(kRadio, fontMetrics().height())};
}

void ChoiceButton::paintEvent(QPaintEvent* /*event*/) {
    const WindowTheme& theme = windowTheme(palette());
    QPainter painter(this);
    const QRectF circle(0, (height() - kRadio) / 2, kRadio, kRadio);
    const QColor edge = isChecked() || hasFocus() ? theme.indigo : theme.fieldBottom;
    drawBox(painter, circle, kRadio / 2.0, isChecked() ? theme.indigo : theme.field, edge);
    if (isChecked()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::white);
        painter.drawEllipse(circle.center(), kDot / 2, kDot / 2);
    }
    painter.setPen(theme.text);
    painter.drawText(rect().adjusted(kRadio + kRadioGap, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, text());
}

bool ChoiceButton::hitButton(const QPoint& position) const {
    return rect().contains(position);
}

void showText(QLineEdit& field, const QString& text, bool isFresh) {
    if (!isFresh && field.text() == text)
        return;
    const QSignalBlocker blocker(field);
    field.setText(text);
    if (isFresh)
        field.setCursorPosition(0);
}

} // namespace quillmoth
