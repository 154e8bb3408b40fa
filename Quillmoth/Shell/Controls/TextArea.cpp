#include "Quillmoth/Shell/Controls/TextArea.h"

#include "Quillmoth/Shell/Looks/Palette.h"
#include "Quillmoth/Shell/Looks/ThinScrollBar.h"

#include <QPainter>
#include <QSignalBlocker>

namespace quillmoth {

namespace {

constexpr int kLeastHeight = 100;
constexpr double kAreaRadius = 6;
// With the document's own margin of 4 the text stands 9 from the sides and 8 from above.
constexpr QMargins kAreaMargins{5, 4, 5, 4};
// The time to break a word into lines grows with the square of its length: 100,000 take most of a second.
constexpr int kLongestWord = 10000;

/// A document breaks its lines with separators of its own, and takes returns for breaks as well.
QString withLineFeeds(QString text) {
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    for (const QChar lineBreak : {QChar(QChar::ParagraphSeparator), QChar(QChar::LineSeparator), QChar('\r')})
        text.replace(lineBreak, QLatin1Char('\n'));
    return text;
}

bool hasEndlessWord(const QString& text) {
    int length = 0;
    for (const QChar character : text) {
        length = character.isSpace() ? 0 : length + 1;
        if (length > kLongestWord)
            return true;
    }
    return false;
}

/// Behind the text of an area; a widget of its own, since an area paints its viewport only.
class AreaBox final : public QWidget {
public:
    explicit AreaBox(QWidget* area) : QWidget(area) { setAttribute(Qt::WA_TransparentForMouseEvents); }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        const WindowTheme& theme = windowTheme(palette());
        QPainter painter(this);
        drawBox(painter, rect(), kAreaRadius, theme.field,
                parentWidget()->hasFocus() ? theme.indigo : theme.fieldEdge);
    }
};

} // namespace

TextArea::TextArea(int height) : height_(height), box_(new AreaBox(this)) {
    setTabChangesFocus(true);
    setMinimumHeight(kLeastHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setFrameShape(NoFrame);
    setViewportMargins(kAreaMargins);
    setVerticalScrollBar(new ThinScrollBar(ThinScrollBar::Place::window));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false);
    box_->lower();
}

QString TextArea::text() const {
    return withLineFeeds(document()->toRawText());
}

bool TextArea::takeTextChange() {
    QString now = text();
    if (now == knownText_)
        return false;
    knownText_ = std::move(now);
    chooseWrapping(knownText_);
    return true;
}

void TextArea::chooseWrapping(const QString& text) {
    setWordWrapMode(hasEndlessWord(text) ? QTextOption::WrapAnywhere
                                         : QTextOption::WrapAtWordBoundaryOrAnywhere);
}

void TextArea::showText(const QString& stored, bool isFresh) {
    const QString shown = this->text();
    const QString text = withLineFeeds(stored);
    if (!isFresh && shown == text)
        return;
    const QSignalBlocker blocker(this);
    chooseWrapping(text);
    if (isFresh || !text.startsWith(shown)) {
        setPlainText(text);
    } else {
        QTextCursor end(document());
        end.movePosition(QTextCursor::End);
        end.insertText(text.mid(shown.size()));
    }
    knownText_ = this->text();
}

QSize TextArea::sizeHint() const {
    return {QPlainTextEdit::sizeHint().width(), height_};
}

void TextArea::resizeEvent(QResizeEvent* event) {
    QPlainTextEdit::resizeEvent(event);
    box_->resize(size());
}

void TextArea::focusInEvent(QFocusEvent* event) {
    QPlainTextEdit::focusInEvent(event);
    box_->update();
}

void TextArea::focusOutEvent(QFocusEvent* event) {
    QPlainTextEdit::focusOutEvent(event);
    box_->update();
}

void drawBox(QPainter& painter, const QRectF& box, double radius, const QColor& fill, const QColor& edge) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(box, radius, radius);
    painter.setPen(edge);
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(box.adjusted(0.5, 0.5, -0.5, -0.5), radius - 0.5, radius - 0.5);
}

} // namespace quillmoth
