#pragma once

#include "Foundation/Qt/Transition.h"

#include <QPushButton>
#include <QToolButton>

namespace quillmoth {

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

} // namespace quillmoth
