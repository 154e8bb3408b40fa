#pragma once

#include <QPlainTextEdit>
#include <QString>

namespace quillmoth {

/// Several lines of plain text without formats. Tab goes to the next control.
class TextArea final : public QPlainTextEdit {
public:
    /// `height` is the one it likes; 100 is the least.
    explicit TextArea(int height);

    /// The text as it was typed: no-break spaces stay what they are. Every break of lines is a line feed,
    /// whichever one was typed, pasted or shown.
    [[nodiscard]] QString text() const;

    /// True where the text is another than at the last call or the last showText.
    bool takeTextChange();

    /// Shows `stored`, with no signal. An area that shows it already is left alone, and one that it only adds
    /// to keeps caret and undo, unless `isFresh`.
    void showText(const QString& stored, bool isFresh);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void chooseWrapping(const QString& text);

    int height_;
    QString knownText_;
    QWidget* box_;
};

/// The box of a field: filled, with an edge of one pixel inside.
void drawBox(QPainter& painter, const QRectF& box, double radius, const QColor& fill, const QColor& edge);

} // namespace quillmoth
