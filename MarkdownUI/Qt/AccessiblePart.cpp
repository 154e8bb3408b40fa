#include "MarkdownUI/Qt/AccessiblePart.h"

#include <utility>

namespace quillmoth::markdown {

AccessiblePart::AccessiblePart(QAccessibleInterface& parent, const AccessibleMarkdownText& document,
                               Description description)
    : parent_(parent), document_(document), description_(std::move(description)) {}

QString AccessiblePart::text(QAccessible::Text kind) const {
    switch (kind) {
    case QAccessible::Name:
        return description_.name;
    case QAccessible::Description:
        return description_.description;
    default:
        return {};
    }
}

QRect AccessiblePart::rect() const {
    if (!description_.codeBlock) {
        return document_.rectangleOf(description_.range);
    }
    const Rect frame = document_.item().content().document()->copyButtonFrame(*description_.codeBlock);
    return document_.onScreen(frame);
}

QAccessible::State AccessiblePart::state() const {
    QAccessible::State state;
    state.linked = description_.role == QAccessible::Link;
    state.readOnly = true;
    return state;
}

void* AccessiblePart::interface_cast(QAccessible::InterfaceType type) {
    const bool acts = description_.role != QAccessible::Heading;
    return type == QAccessible::ActionInterface && acts ? static_cast<QAccessibleActionInterface*>(this)
                                                        : nullptr;
}

QStringList AccessiblePart::actionNames() const {
    return description_.role == QAccessible::Heading ? QStringList() : QStringList(pressAction());
}

void AccessiblePart::doAction(const QString& actionName) {
    if (actionName != pressAction()) {
        return;
    }
    MarkdownItem& item = document_.item();
    if (description_.codeBlock) {
        item.codeControls().copy(*item.content().document(), *description_.codeBlock);
    } else {
        item.host().openLink(description_.destination);
    }
}

} // namespace quillmoth::markdown
