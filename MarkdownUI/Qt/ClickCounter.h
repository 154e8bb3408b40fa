#pragma once

#include <QPointF>

class QMouseEvent;

namespace quillmoth::markdown {

/// Counts presses that belong together: 1, 2, 3, and again 1. Qt tells of the double click alone.
class ClickCounter {
public:
    [[nodiscard]] int countPress(const QMouseEvent& event);

private:
    int count_ = 0;
    quint64 time_ = 0;
    QPointF point_;
};

} // namespace quillmoth::markdown
