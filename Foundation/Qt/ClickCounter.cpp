#include "Foundation/Qt/ClickCounter.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QStyleHints>

namespace quillmoth {

int ClickCounter::countPress(const QMouseEvent& event) {
    const QStyleHints& hints = *QGuiApplication::styleHints();
    const bool isSoon = event.timestamp() - time_ <= static_cast<quint64>(hints.mouseDoubleClickInterval());
    const bool isNear = (event.position() - point_).manhattanLength() <= hints.mouseDoubleClickDistance();
    if (event.type() == QEvent::MouseButtonDblClick)
        count_ = 2;
    else
        count_ = count_ == 2 && isSoon && isNear ? 3 : 1;
    time_ = event.timestamp();
    point_ = event.position();
    return count_;
}

} // namespace quillmoth
