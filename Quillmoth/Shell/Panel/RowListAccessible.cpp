#include "Quillmoth/Shell/Panel/RowListAccessible.h"

namespace quillmoth {

RowListAccessible::RowListAccessible(RowList& list) : QAccessibleWidget(&list, QAccessible::List) {}

RowListAccessible::~RowListAccessible() {
    for (const auto& [position, id] : rows_)
        QAccessible::deleteAccessibleInterface(id);
}

int RowListAccessible::childCount() const {
    return list().rowCount();
}

QAccessibleInterface* RowListAccessible::child(int index) const {
    if (index < 0 || index >= childCount())
        return nullptr;
    const auto found = rows_.find(index);
    if (found != rows_.end())
        return QAccessible::accessibleInterface(found->second);
    // The registry of QAccessible owns it from here on.
    auto* row = new RowAccessible(list(), index);
    rows_[index] = QAccessible::registerAccessibleInterface(row);
    return row;
}

int RowListAccessible::indexOfChild(const QAccessibleInterface* child) const {
    const auto* row = dynamic_cast<const RowAccessible*>(child);
    return row ? row->position() : -1;
}

QAccessibleInterface* RowListAccessible::childAt(int x, int y) const {
    return child(list().rowAt(list().mapFromGlobal(QPoint(x, y)).y()));
}

QAccessibleInterface* RowListAccessible::focusChild() const {
    return child(list().selectedPosition());
}

bool RowAccessible::isValid() const {
    return list_ && position_ < list_->rowCount();
}

QAccessibleInterface* RowAccessible::parent() const {
    return QAccessible::queryAccessibleInterface(list_);
}

QString RowAccessible::text(QAccessible::Text kind) const {
    return kind == QAccessible::Name && isValid() ? list_->row(position_).spoken() : QString();
}

QRect RowAccessible::rect() const {
    if (!isValid())
        return {};
    const QRect row = list_->rowRect(position_);
    return {list_->mapToGlobal(row.topLeft()), row.size()};
}

QAccessible::State RowAccessible::state() const {
    QAccessible::State state;
    state.selectable = true;
    state.focusable = true;
    if (!isValid()) {
        state.invalid = true;
        return state;
    }
    const bool selected = list_->selectedPosition() == position_;
    state.selected = selected;
    state.focused = selected;
    state.invisible = !list_->isVisible();
    state.offscreen = list_->visibleRegion().intersected(list_->rowRect(position_)).isEmpty();
    return state;
}

void* RowAccessible::interface_cast(QAccessible::InterfaceType type) {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
}

QStringList RowAccessible::actionNames() const {
    return {pressAction()};
}

void RowAccessible::doAction(const QString& name) {
    if (name == pressAction() && isValid())
        list_->doubleClicked(position_);
}

} // namespace quillmoth
