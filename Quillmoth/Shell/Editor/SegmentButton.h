#pragma once

#include <QRadioButton>

namespace quillmoth {

/// One tab of the sidebar's tab bar: a symbol and a label, raised while it is the one on show.
class SegmentButton final : public QRadioButton {
public:
    SegmentButton(const QString& text, const QString& symbol);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    [[nodiscard]] bool hitButton(const QPoint& position) const override;

private:
    QString symbol_;
};

/// The ground of the tab bar, with its tabs side by side.
class SegmentBar final : public QWidget {
public:
    SegmentBar();

    void addSegment(SegmentButton* button);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quillmoth
