#pragma once

#include <QLabel>

namespace quillmoth {

/// What a text is about, which gives its colour.
enum class Tone { secondary, good, bad };

/// A label in the colour of its tone, which follows the window's theme.
class ToneLabel final : public QLabel {
public:
    explicit ToneLabel(Tone tone, const QString& plainText = {});

    void setPlainText(const QString& text);

    [[nodiscard]] QString plainText() const { return plainText_; }

    void setTone(Tone tone);

protected:
    void changeEvent(QEvent* event) override;

private:
    void tint();

    QString plainText_;
    Tone tone_;
};

/// One pixel of line across.
class Hairline final : public QWidget {
public:
    Hairline();

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quillmoth
