#pragma once

#include "Foundation/Qt/Transition.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>

#include <functional>

namespace quillmoth {

/// A check box that looks like a switch; the whole label takes clicks.
class Switch : public QCheckBox {
public:
    explicit Switch(const QString& text);

    /// Called when the user has switched, by whatever means.
    std::function<void(bool on)> onChange;

    /// Shows how it stands, which is not told to `onChange`.
    void setOn(bool on);

    [[nodiscard]] QSize sizeHint() const override;

    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

    [[nodiscard]] bool hitButton(const QPoint& position) const override { return rect().contains(position); }

private:
    Transition slide_{*this};
    bool isShowing_ = false;
};

/// Underlined text that opens something.
class LinkButton final : public QPushButton {
public:
    explicit LinkButton(const QString& text);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

/// A button that is a symbol of the program's.
class SymbolButton final : public QToolButton {
public:
    SymbolButton(const QString& symbol, int symbolSize);

    void setSymbol(const QString& symbol);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString symbol_;
    int symbolSize_;
};

/// The style of the large buttons, which shrink a little while they are pressed, as a button that has it.
class RoundedRectangleButtonStyle final : public QPushButton {
public:
    /// Quiet is the look of ordinary buttons.
    enum class Fill { indigo, quiet };

    explicit RoundedRectangleButtonStyle(const QString& text, Fill fill = Fill::indigo);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Fill fill_;
    Transition scale_{*this, 1};
};

/// A pop-up that also shows a value that is not among those it offers.
class ModelPicker final : public QComboBox {
public:
    ModelPicker();

    /// Called when the user has chosen.
    std::function<void(const QString& model)> onChoice;

    void setModels(const QStringList& offered, const QString& current);

    [[nodiscard]] QSize sizeHint() const override;
    /// A name that finds no room is cut.
    [[nodiscard]] QSize minimumSizeHint() const override;

    void showPopup() override;

protected:
    void paintEvent(QPaintEvent* event) override;
    /// Turning the wheel over the window scrolls it and chooses nothing.
    void wheelEvent(QWheelEvent* event) override;
};

/// What a text is about, which gives its colour.
enum class Tone { plain, secondary, good, bad };

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
