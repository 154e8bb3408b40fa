#include "Quillmoth/Shell/Panel/CommandField.h"

#include "Quillmoth/Shell/Panel/PanelTheme.h"

#include <QAbstractTextDocumentLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

namespace quillmoth {

namespace {

constexpr int kFontSize = 18;
constexpr int kSideInset = 10;
// Qt sets a line of fixed height a little lower than in its middle.
constexpr int kTopInset = 4;
constexpr int kBottomInset = 6;
// So long a text is higher than any limit, whatever it holds; measuring it would take long.
constexpr int kSurelyTooLong = 4000;

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

CommandField::CommandField(std::shared_ptr<FloatingViewController> controller, QWidget* parent)
    : PanelTextEdit(panelFont(kFontSize), panel::kCommandLine, parent), controller_(std::move(controller)) {
    setLeadingInset(0);
    setLineWrapMode(WidgetWidth);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setAccessibleName(QStringLiteral("Command"));
    onEdited = [this] { controller_->commandEdited(text().toStdString()); };
}

void CommandField::setLeadingInset(int inset) {
    leadingInset_ = inset;
    setViewportMargins(kSideInset + inset - kCaretRoom, kTopInset, kSideInset - kCaretRoom, kBottomInset);
}

int CommandField::heightFor(int width, int limit) const {
    const int chrome = kTopInset + kBottomInset;
    if (document()->characterCount() > kSurelyTooLong ||
        document()->blockCount() * panel::kCommandLine + chrome > limit)
        return limit + 1;
    const int textWidth = width - 2 * (kSideInset - kCaretRoom) - leadingInset_;
    if (document()->textWidth() != textWidth)
        document()->setTextWidth(textWidth);
    return qCeil(document()->size().height()) + chrome;
}

QString CommandField::placeholder() const {
    const std::string_view text = controller_->placeholder();
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

void CommandField::refresh() {
    const QString current = QString::fromStdString(controller_->model()._command);
    if (current != text())
        setText(current);
    if (accessibleDescription() != placeholder()) {
        setAccessibleDescription(placeholder());
        viewport()->update();
    }
}

void CommandField::keyPressEvent(QKeyEvent* event) {
    const auto command = commandOf(*event);
    if (command == FloatingViewController::FieldCommand::other) {
        PanelTextEdit::keyPressEvent(event);
        return;
    }
    if (event->isAutoRepeat() && isOneStepAPress(command, event->modifiers()))
        return;
    switch (controller_->fieldCommand(command, event->modifiers() & Qt::ShiftModifier)) {
    case FloatingViewController::FieldAnswer::notConsumed:
        PanelTextEdit::keyPressEvent(event);
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

void CommandField::paintEvent(QPaintEvent* event) {
    PanelTextEdit::paintEvent(event);
    const bool composing = !document()->firstBlock().layout()->preeditAreaText().isEmpty();
    // While a spinner is laid over the field it says enough.
    if (!document()->isEmpty() || composing || leadingInset_ > 0)
        return;
    QPainter painter(viewport());
    painter.setFont(font());
    painter.setPen(kPanelTheme.gray);
    const QFontMetricsF metrics(font());
    const double baseline = 0.8 * panel::kCommandLine;
    painter.drawText(QPointF(kCaretRoom + 1, baseline),
                     metrics.elidedText(placeholder(), Qt::ElideRight, viewport()->width() - kCaretRoom));
}

} // namespace quillmoth
