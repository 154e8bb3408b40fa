#pragma once

#include <QAbstractButton>
#include <QString>
#include <QWidget>

namespace quillmoth {

/// The name of the preset on show, cut with an ellipsis where it is too long.
class ElidedTitle final : public QWidget {
public:
    ElidedTitle();

    void setText(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString text_;
};

/// A symbol without a frame, for the strip at the top.
class StripButton : public QAbstractButton {
public:
    explicit StripButton(const QString& symbol);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString symbol_;
};

/// What stands in the place of the form while nothing is selected.
class EmptyDetail final : public QWidget {
protected:
    void paintEvent(QPaintEvent* event) override;
};

/// The ground of the strip, with a hairline below.
class StripGround final : public QWidget {
public:
    StripGround();

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quillmoth
