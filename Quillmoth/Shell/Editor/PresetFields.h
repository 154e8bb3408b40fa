#pragma once

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QString>

namespace quillmoth {

/// A field for an emoji of any number of code points: Backspace takes the whole of it.
class EmojiField final : public QLineEdit {
public:
    /// Takes the font that shows the present text best.
    void chooseFont();

protected:
    void keyPressEvent(QKeyEvent* event) override;
};

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

/// A radio button in the look of the program's windows.
class ChoiceButton final : public QRadioButton {
public:
    explicit ChoiceButton(const QString& text);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    [[nodiscard]] bool hitButton(const QPoint& position) const override;
};

/// Shows `text` in `field`, with no signal. A field that shows it already is left alone unless `isFresh`.
void showText(QLineEdit& field, const QString& text, bool isFresh);

} // namespace quillmoth
