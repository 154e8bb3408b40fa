#include "Quillmoth/Shell/Panel/BracketField.h"

#include "Quillmoth/Shell/Panel/PanelTheme.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace quillmoth {

namespace {

constexpr int kFontSize = 14;
constexpr int kLine = 20;
constexpr int kSideInset = 10;
constexpr double kRadius = 7;
constexpr int kOutside = BracketField::kOutside;
constexpr double kRing = 2;
constexpr int kRaised = -1;

} // namespace

class BracketField::Edit final : public PanelTextEdit {
public:
    explicit Edit(BracketField& field) : PanelTextEdit(panelFont(kFontSize), kLine, &field), field_(field) {
        setLineWrapMode(NoWrap);
        QPalette colors = palette();
        colors.setColor(QPalette::Text, kPanelTheme.text);
        setPalette(colors);
    }

protected:
    void keyPressEvent(QKeyEvent* event) override {
        const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
        if (!isReturn || (event->modifiers() & ~Qt::KeypadModifier))
            PanelTextEdit::keyPressEvent(event);
        else if (field_.onReturn && !event->isAutoRepeat())
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

    [[nodiscard]] QString pasted(const QString& text) const override {
        return QString(text).replace(QLatin1Char('\n'), QLatin1Char(' '));
    }

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
    edit_->setText(text);
    edit_->setAccessibleName(text);
    edit_->onEdited = [this] {
        if (onEdited)
            onEdited(edit_->text());
    };
}

PanelTextEdit& BracketField::edit() const {
    return *edit_;
}

void BracketField::setCaretShown(bool shown) {
    active_ = shown;
    edit_->setCaretShown(shown);
    update();
}

void BracketField::resizeEvent(QResizeEvent*) {
    // Qt sets a line of fixed height a little lower than in its middle.
    const int side = kOutside + kSideInset - PanelTextEdit::kCaretRoom;
    edit_->setGeometry(side, (height() - kLine) / 2 + kRaised, width() - 2 * side, kLine);
}

void BracketField::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool focused = active_ && window()->focusWidget() == edit_;
    painter.setBrush(kPanelTheme.field);
    if (focused) {
        painter.setPen(QPen(kPanelTheme.accent, kRing));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), kRadius, kRadius);
        return;
    }
    painter.setPen(QPen(blended(kPanelTheme.fieldEdge, kPanelTheme.fieldEdgeHovered, hover_.value()), 1));
    painter.drawRoundedRect(
        QRectF(rect()).adjusted(kOutside + 0.5, kOutside + 0.5, -kOutside - 0.5, -kOutside - 0.5), kRadius,
        kRadius);
}

/// Beside its text a field is a field too.
void BracketField::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        edit_->setFocus(Qt::MouseFocusReason);
}

void BracketField::enterEvent(QEnterEvent*) {
    hover_.moveTo(1);
}

void BracketField::leaveEvent(QEvent*) {
    hover_.moveTo(0);
}

} // namespace quillmoth
