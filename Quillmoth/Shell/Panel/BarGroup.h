#pragma once

#include "Foundation/Qt/Symbols.h"
#include "Foundation/Qt/Transition.h"

#include <QCheckBox>
#include <QPushButton>
#include <QStringList>

namespace quillmoth {

/// A button of the bottom bar: a label and the caps of its keys. Narrower than that, the caps alone.
class BarGroup final : public QPushButton {
public:
    struct Description {
        QStringList symbols;
        bool symbolsFirst = false;
        /// How the keys are spoken, such as "Ctrl+H".
        QString keys;
    };

    BarGroup(Description description, QWidget* parent);

    void setLabel(const QString& label);

    [[nodiscard]] QSize sizeHint() const override;
    /// Without the label.
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] int labelWidth() const;
    [[nodiscard]] int symbolsWidth() const;

    Description description_;
};

/// The switch of the bottom bar, with its label in front of it.
class BarSwitch final : public QCheckBox {
public:
    BarSwitch(const QString& label, const QString& keys, QWidget* parent);

    void setOn(bool on);
    /// Without the keyboard the switch is gray.
    void setActive(bool active);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    [[nodiscard]] bool hitButton(const QPoint& position) const override;

private:
    [[nodiscard]] int labelWidth() const;

    Transition knob_{*this};
    bool active_ = true;
};

} // namespace quillmoth
