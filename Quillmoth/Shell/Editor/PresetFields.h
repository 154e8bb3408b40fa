#pragma once

#include <QLineEdit>
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
