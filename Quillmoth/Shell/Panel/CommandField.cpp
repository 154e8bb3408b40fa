#include "Quillmoth/Shell/Panel/CommandField.h"

#include "Quillmoth/Shell/Looks/Fonts.h"
#include "Quillmoth/Shell/Looks/Lengths.h"
#include "Quillmoth/Shell/Looks/Palette.h"

#include <QAbstractTextDocumentLayout>
#include <QKeyEvent>
#include <QMimeData>
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
// A longer text is mostly higher than the limit, and to lay all of it out takes long.
constexpr int kLongText = 4000;
// From about what fills the highest field to where the field's own layout, made anyway, is as quick to ask.
constexpr qsizetype kFirstMeasured = 1000;
constexpr qsizetype kLastMeasured = 64000;
// The toolkit looks for the end of a longer word anew at each of its lines.
constexpr int kLongestWord = 10000;

QTextOption::WrapMode wrapModeFor(const QString& text) {
    int length = 0;
    for (const QChar character : text) {
        length = character.isSpace() ? 0 : length + 1;
        if (length > kLongestWord)
            return QTextOption::WrapAnywhere;
    }
    return QTextOption::WrapAtWordBoundaryOrAnywhere;
}

/// How many lines a paragraph has, or `enough` where it has more, or fewer of a text that is very long for
/// its lines. Lays out little more than these.
int linesOf(const QString& paragraph, const QFont& font, QTextOption::WrapMode mode, double width,
            int enough) {
    for (qsizetype length = kFirstMeasured;; length *= 2) {
        const bool isWhole = length >= paragraph.size();
        QTextLayout layout(paragraph.left(length), font);
        QTextOption wrapping;
        wrapping.setWrapMode(mode);
        layout.setTextOption(wrapping);
        int count = 0;
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid() && count <= enough;
             line = layout.createLine()) {
            line.setLineWidth(width);
            ++count;
        }
        layout.endLayout();
        // What has been cut off may change the last line.
        if (isWhole || count > enough || length >= kLastMeasured)
            return qMin(count, enough);
    }
}

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
    : PanelTextEdit(textFont(kFontSize), panel::kCommandLine, parent), controller_(std::move(controller)) {
    setLeadingInset(0);
    setLineWrapMode(WidgetWidth);
    setAccessibleName(QStringLiteral("Command"));
    onEdited = [this] { controller_->commandEdited(text().toStdString()); };
}

void CommandField::setLeadingInset(int inset) {
    leadingInset_ = inset;
    setViewportMargins(kSideInset + inset - kCaretRoom, kTopInset, kSideInset - kCaretRoom, kBottomInset);
}

int CommandField::heightFor(int width, int limit) const {
    const int chrome = kTopInset + kBottomInset;
    const int textWidth = width - 2 * (kSideInset - kCaretRoom) - leadingInset_;
    if (hasMoreLines((limit - chrome) / panel::kCommandLine, textWidth - 2 * kCaretRoom))
        return limit + 1;
    if (document()->textWidth() != textWidth)
        document()->setTextWidth(textWidth);
    return qCeil(document()->size().height()) + chrome;
}

/// Lays out no more of the text than it takes. Where only the whole layout can tell it is false too.
bool CommandField::hasMoreLines(int lines, double width) const {
    if (document()->blockCount() > lines)
        return true;
    if (document()->characterCount() <= kLongText)
        return false;
    int left = lines + 1;
    for (QTextBlock block = document()->begin(); block.isValid() && left > 0; block = block.next())
        left -= linesOf(block.text(), font(), wordWrapMode(), width, left);
    return left == 0;
}

void CommandField::refresh() {
    const QString current = QString::fromStdString(controller_->model()._command);
    wrapAsFits(current);
    if (current != text())
        setText(current);
    const std::string_view utf8 = controller_->placeholder();
    const auto placeholder = QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
    if (placeholder_ != placeholder) {
        placeholder_ = placeholder;
        setAccessibleDescription(placeholder);
        viewport()->update();
    }
}

void CommandField::insertFromMimeData(const QMimeData* source) {
    // Before it is laid out for the first time.
    wrapAsFits(source->text());
    PanelTextEdit::insertFromMimeData(source);
}

void CommandField::wrapAsFits(const QString& text) {
    if (const auto mode = wrapModeFor(text); mode != wordWrapMode())
        setWordWrapMode(mode);
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
                     metrics.elidedText(placeholder_, Qt::ElideRight, viewport()->width() - kCaretRoom));
}

} // namespace quillmoth
