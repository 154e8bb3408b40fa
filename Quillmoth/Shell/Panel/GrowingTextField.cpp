#include "Quillmoth/Shell/Panel/GrowingTextField.h"

#include <QAbstractTextDocumentLayout>
#include <QMimeData>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

namespace quillmoth {

namespace {

constexpr int kGrowingInset = 10;
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

} // namespace

GrowingTextField::GrowingTextField(const QFont& font, int lineHeight, QWidget* parent)
    : PanelTextEdit(font, lineHeight, parent) {
    setLeadingInset(0);
    setLineWrapMode(WidgetWidth);
}

void GrowingTextField::setLeadingInset(int inset) {
    leadingInset_ = inset;
    setViewportMargins(kGrowingInset + inset - kCaretRoom, kTopInset, kGrowingInset - kCaretRoom,
                       kBottomInset);
}

int GrowingTextField::heightFor(int width, int limit) const {
    const int chrome = kTopInset + kBottomInset;
    const int textWidth = width - 2 * (kGrowingInset - kCaretRoom) - leadingInset_;
    if (hasMoreLines((limit - chrome) / lineHeight(), textWidth - 2 * kCaretRoom))
        return limit + 1;
    if (document()->textWidth() != textWidth)
        document()->setTextWidth(textWidth);
    return qCeil(document()->size().height()) + chrome;
}

/// Lays out no more of the text than it takes. Where only the whole layout can tell it is false too.
bool GrowingTextField::hasMoreLines(int lines, double width) const {
    if (document()->blockCount() > lines)
        return true;
    if (document()->characterCount() <= kLongText)
        return false;
    int left = lines + 1;
    for (QTextBlock block = document()->begin(); block.isValid() && left > 0; block = block.next())
        left -= linesOf(block.text(), font(), wordWrapMode(), width, left);
    return left == 0;
}

void GrowingTextField::showText(const QString& shown) {
    wrapAsFits(shown);
    if (shown != text())
        setText(shown);
}

void GrowingTextField::insertFromMimeData(const QMimeData* source) {
    // Before it is laid out for the first time.
    wrapAsFits(source->text());
    PanelTextEdit::insertFromMimeData(source);
}

void GrowingTextField::wrapAsFits(const QString& text) {
    if (const auto mode = wrapModeFor(text); mode != wordWrapMode())
        setWordWrapMode(mode);
}

} // namespace quillmoth
