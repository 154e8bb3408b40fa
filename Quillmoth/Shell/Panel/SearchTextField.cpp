#include "Quillmoth/Shell/Panel/SearchTextField.h"

#include "Quillmoth/Shell/Looks/Fonts.h"
#include "Quillmoth/Shell/Looks/Lengths.h"
#include "Quillmoth/Shell/Looks/Palette.h"

#include <QKeyEvent>
#include <QPainter>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

namespace quillmoth {

namespace {

constexpr int kCommandFont = 18;

FloatingViewController::FieldCommand commandOf(const QKeyEvent& event) {
    using Command = FloatingViewController::FieldCommand;
    if (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
        return Command::other;
    switch (event.key()) {
    case Qt::Key_Up:
        return event.modifiers() & Qt::ShiftModifier ? Command::other : Command::moveUp;
    case Qt::Key_Down:
        return event.modifiers() & Qt::ShiftModifier ? Command::other : Command::moveDown;
    case Qt::Key_Escape:
        return Command::cancelOperation;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return Command::insertNewline;
    default:
        return Command::other;
    }
}

bool isOneStepAPress(FloatingViewController::FieldCommand command, Qt::KeyboardModifiers modifiers) {
    using Command = FloatingViewController::FieldCommand;
    const bool sends = command == Command::insertNewline && !(modifiers & Qt::ShiftModifier);
    return sends || command == Command::cancelOperation;
}

} // namespace

SearchTextField::SearchTextField(std::shared_ptr<FloatingViewController> controller, QWidget* parent)
    : GrowingTextField(textFont(kCommandFont), panel::kCommandLine, parent),
      controller_(std::move(controller)) {
    setAccessibleName(QStringLiteral("Command"));
    onEdited = [this] { controller_->commandEdited(text().toStdString()); };
}

void SearchTextField::refresh() {
    showText(QString::fromStdString(controller_->model()._command));
    const std::string_view utf8 = controller_->placeholder();
    const auto placeholder = QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
    if (placeholder_ != placeholder) {
        placeholder_ = placeholder;
        setAccessibleDescription(placeholder);
        viewport()->update();
    }
}

void SearchTextField::keyPressEvent(QKeyEvent* event) {
    const auto command = commandOf(*event);
    if (command == FloatingViewController::FieldCommand::other) {
        GrowingTextField::keyPressEvent(event);
        return;
    }
    if (event->isAutoRepeat() && isOneStepAPress(command, event->modifiers()))
        return;
    switch (controller_->fieldCommand(command, event->modifiers() & Qt::ShiftModifier)) {
    case FloatingViewController::FieldAnswer::notConsumed:
        GrowingTextField::keyPressEvent(event);
        // The panel is not to handle it again.
        event->accept();
        break;
    case FloatingViewController::FieldAnswer::consumed:
        event->accept();
        break;
    case FloatingViewController::FieldAnswer::insertLineBreak:
        textCursor().insertBlock();
        ensureCursorVisible();
        event->accept();
        break;
    }
}

void SearchTextField::paintEvent(QPaintEvent* event) {
    GrowingTextField::paintEvent(event);
    const bool composing = !document()->firstBlock().layout()->preeditAreaText().isEmpty();
    // While a spinner is laid over the field it says enough.
    if (!document()->isEmpty() || composing || leadingInset() > 0)
        return;
    QPainter painter(viewport());
    painter.setFont(font());
    painter.setPen(kPanelTheme.gray);
    const QFontMetricsF metrics(font());
    const double baseline = 0.8 * panel::kCommandLine;
    painter.drawText(QPointF(kCaretRoom + 1, baseline),
                     metrics.elidedText(placeholder_, Qt::ElideRight, viewport()->width() - kCaretRoom));
}

} // namespace quillmoth
