#include "MarkdownUI/Qt/ClickCounter.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QStyleHints>

namespace quillmoth::markdown {

int ClickCounter::countPress(const QMouseEvent& event) {
    const QStyleHints* hints = QGuiApplication::styleHints();
    const auto interval = static_cast<quint64>(hints->mouseDoubleClickInterval());
    const bool isSoon = event.timestamp() - time_ <= interval;
    const bool isNear = (event.position() - point_).manhattanLength() < hints->startDragDistance();
    const bool isDouble = event.type() == QEvent::MouseButtonDblClick;
    count_ = isDouble ? 2 : (count_ == 2 && isSoon && isNear ? 3 : 1);
    time_ = event.timestamp();
    point_ = event.position();
    return count_;
}

} // namespace quillmoth::markdown
