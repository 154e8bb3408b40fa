#include "MarkdownUI/Qt/AccessibleDocument.h"

#include "MarkdownUI/Qt/AccessiblePart.h"

#include <QWidget>

#include <algorithm>
#include <utility>

namespace quillmoth::markdown {

AccessibleDocument::AccessibleDocument(QWidget& widget, MarkdownItem& item,
                                       AccessibleMarkdownText::Origin origin, QAccessible::Role role)
    : QAccessibleWidget(&widget, role), item_(item), text_(item, std::move(origin)) {}

AccessibleDocument::~AccessibleDocument() {
    forget();
}

void AccessibleDocument::forget() const {
    for (const QAccessible::Id id : children_)
        QAccessible::deleteAccessibleInterface(id);
    children_.clear();
}

/// Makes the children anew where the content is another one.
void AccessibleDocument::refresh() const {
    if (knownVersion_ == item_.version())
        return;
    forget();
    knownVersion_ = item_.version();
    auto* parent = const_cast<AccessibleDocument*>(this);
    for (std::size_t part = 0; part < item_.parts().size(); ++part) {
        children_.push_back(
            QAccessible::registerAccessibleInterface(new AccessiblePart(*parent, text_, part)));
    }
}

int AccessibleDocument::childCount() const {
    refresh();
    return static_cast<int>(children_.size());
}

QAccessibleInterface* AccessibleDocument::child(int index) const {
    refresh();
    const bool isThere = index >= 0 && static_cast<std::size_t>(index) < children_.size();
    return isThere ? QAccessible::accessibleInterface(children_[static_cast<std::size_t>(index)]) : nullptr;
}

int AccessibleDocument::indexOfChild(const QAccessibleInterface* child) const {
    const auto id = QAccessible::uniqueId(const_cast<QAccessibleInterface*>(child));
    const auto found = std::find(children_.begin(), children_.end(), id);
    return found != children_.end() ? static_cast<int>(found - children_.begin()) : -1;
}

QAccessibleInterface* AccessibleDocument::childAt(int x, int y) const {
    for (int index = 0; index < childCount(); ++index) {
        if (child(index)->rect().contains(x, y))
            return child(index);
    }
    return nullptr;
}

QAccessibleInterface* AccessibleDocument::focusChild() const {
    const auto part = item_.focusedPart();
    return part ? child(static_cast<int>(*part)) : QAccessibleWidget::focusChild();
}

QAccessible::State AccessibleDocument::state() const {
    QAccessible::State state = QAccessibleWidget::state();
    state.readOnly = true;
    state.multiLine = true;
    state.selectableText = true;
    return state;
}

QString AccessibleDocument::text(QAccessible::Text kind) const {
    const bool isNamed = kind != QAccessible::Name || !widget()->accessibleName().isEmpty();
    return kind == QAccessible::Value || !isNamed ? text_.text(0, text_.characterCount())
                                                  : QAccessibleWidget::text(kind);
}

void* AccessibleDocument::interface_cast(QAccessible::InterfaceType type) {
    return type == QAccessible::TextInterface ? static_cast<QAccessibleTextInterface*>(&text_)
                                              : QAccessibleWidget::interface_cast(type);
}

} // namespace quillmoth::markdown
