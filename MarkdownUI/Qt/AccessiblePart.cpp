#include "MarkdownUI/Qt/AccessiblePart.h"

#include <QStringList>

namespace quillmoth::markdown {

AccessiblePart::AccessiblePart(QAccessibleInterface& parent, const AccessibleMarkdownText& document,
                               std::size_t part)
    : parent_(parent), document_(document), part_(part) {}

const PartInfo& AccessiblePart::info() const {
    static const PartInfo kGone;
    const auto& parts = document_.item().parts();
    return part_ < parts.size() ? parts[part_] : kGone;
}

QAccessible::Role AccessiblePart::role() const {
    switch (info().kind) {
    case PartInfo::Kind::heading:
        return QAccessible::Heading;
    case PartInfo::Kind::copyButton:
        return QAccessible::PushButton;
    case PartInfo::Kind::image:
        return info().acts() ? QAccessible::Link : QAccessible::Graphic;
    case PartInfo::Kind::link:
        break;
    }
    return QAccessible::Link;
}

QString AccessiblePart::text(QAccessible::Text kind) const {
    const PartInfo& part = info();
    if (kind == QAccessible::Name) {
        return QString::fromStdString(part.kind == PartInfo::Kind::copyButton
                                          ? document_.item().content().document()->copyButtonLabel(part.place)
                                          : part.text);
    }
    if (kind == QAccessible::Description) {
        return part.kind == PartInfo::Kind::heading ? QStringLiteral("Level %1").arg(part.level)
                                                    : QString::fromStdString(part.destination);
    }
    return {};
}

QRect AccessiblePart::rect() const {
    QRect frame;
    if (DocumentLayout* const layout = document_.item().content().document()) {
        for (const Rect& rect : layout->rectanglesOf(info()))
            frame |= document_.onScreen(rect);
    }
    return frame;
}

QAccessible::State AccessiblePart::state() const {
    QAccessible::State state;
    const auto focused = document_.item().focusedPart();
    state.linked = role() == QAccessible::Link;
    state.readOnly = true;
    state.focusable = info().acts();
    state.focused = focused && *focused == part_ && parent_.state().focused;
    return state;
}

void* AccessiblePart::interface_cast(QAccessible::InterfaceType type) {
    return type == QAccessible::ActionInterface && info().acts()
               ? static_cast<QAccessibleActionInterface*>(this)
               : nullptr;
}

QStringList AccessiblePart::actionNames() const {
    return info().acts() ? QStringList(pressAction()) : QStringList();
}

void AccessiblePart::doAction(const QString& actionName) {
    if (actionName == pressAction())
        document_.item().activate(info());
}

} // namespace quillmoth::markdown
