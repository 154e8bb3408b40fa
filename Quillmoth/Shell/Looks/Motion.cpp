#include "Quillmoth/Shell/Looks/Motion.h"

#include "Foundation/Qt/Transition.h"

#include <QEvent>
#include <QWidget>

namespace quillmoth {

namespace {

/// Belongs to its control.
class HoverFade final : public QObject {
public:
    HoverFade(QWidget& control, int milliseconds)
        : QObject(&control), share_(control), milliseconds_(milliseconds) {
        control.installEventFilter(this);
    }

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Enter)
            share_.moveTo(1, milliseconds_);
        else if (event->type() == QEvent::Leave || event->type() == QEvent::Hide)
            share_.moveTo(0, milliseconds_);
        return false;
    }

    [[nodiscard]] double share() const { return share_.value(); }

private:
    Transition share_;
    int milliseconds_;
};

const HoverFade* fadeOf(const QWidget& control) {
    for (const QObject* child : control.children()) {
        if (const auto* fade = dynamic_cast<const HoverFade*>(child))
            return fade;
    }
    return nullptr;
}

} // namespace

void fadeOnHover(QWidget& control, int milliseconds) {
    if (fadeOf(control) == nullptr)
        new HoverFade(control, milliseconds);
}

double hoverShare(const QWidget& control) {
    const HoverFade* fade = fadeOf(control);
    return fade != nullptr ? fade->share() : 0;
}

} // namespace quillmoth
