#include "Quillmoth/Shell/Panel/ClickRun.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QStyleHints>

namespace quillmoth {

int ClickRun::count(const QMouseEvent& event) {
    const QStyleHints& hints = *QGuiApplication::styleHints();
    const bool goesOn = event.timestamp() - time_ <= static_cast<quint64>(hints.mouseDoubleClickInterval()) &&
                        (event.position() - place_).manhattanLength() <= hints.mouseDoubleClickDistance();
    if (event.type() == QEvent::MouseButtonDblClick)
        count_ = 2;
    else
        count_ = goesOn && count_ == 2 ? 3 : 1;
    time_ = event.timestamp();
    place_ = event.position();
    return count_;
}

} // namespace quillmoth
