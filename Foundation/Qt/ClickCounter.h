#pragma once

#include <QPointF>

class QMouseEvent;

namespace quillmoth {

/// Counts presses that belong together: 1, 2, 3, and again 1. The toolkit tells of the double click alone.
class ClickCounter {
public:
    /// To be called with each press and each double click.
    int countPress(const QMouseEvent& event);

    /// The count of the last press.
    [[nodiscard]] int count() const { return count_; }

private:
    int count_ = 0;
    quint64 time_ = 0;
    QPointF point_;
};

} // namespace quillmoth
