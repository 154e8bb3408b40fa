#pragma once

#include <QPointF>

class QMouseEvent;

namespace quillmoth {

/// Counts the presses of a run of clicks: 1, 2, 3, and again 1. The toolkit tells of the second one only.
class ClickRun {
public:
    /// To be called with each press and each double click.
    int count(const QMouseEvent& event);

    [[nodiscard]] int last() const { return count_; }

private:
    int count_ = 0;
    quint64 time_ = 0;
    QPointF place_;
};

} // namespace quillmoth
