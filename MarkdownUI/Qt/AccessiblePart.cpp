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
        return info().isPressable ? QAccessible::PushButton
               : info().acts()    ? QAccessible::Link
                                  : QAccessible::Graphic;
    case PartInfo::Kind::link:
        break;
    }
    return QAccessible::Link;
}

QString AccessiblePart::text(QAccessible::Text kind) const {
    const PartInfo& part = info();
    if (kind == QAccessible::Name) {
        if (const auto placeholder = document_.item().placeholderOf(part))
            return placeholder->spokenName(QString::fromStdString(part.text));
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
    if (!info().acts())
        return {};
    QStringList names(pressAction());
    if (const QString always = alwaysLoadName(); !always.isEmpty())
        names << always;
    return names;
}

/// Of the action that remembers the host of an image; empty where there is none.
QString AccessiblePart::alwaysLoadName() const {
    const auto placeholder = document_.item().placeholderOf(info());
    return placeholder && placeholder->canAlwaysLoad ? kAlwaysLoad.arg(placeholder->host) : QString();
}

void AccessiblePart::doAction(const QString& actionName) {
    if (actionName == pressAction())
        document_.item().activate(info());
    else if (!actionName.isEmpty() && actionName == alwaysLoadName())
        document_.item().alwaysLoad(info());
}

} // namespace quillmoth::markdown
