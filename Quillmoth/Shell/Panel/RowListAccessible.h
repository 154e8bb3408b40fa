#pragma once

#include "Quillmoth/Shell/Panel/RowList.h"

#include <QAccessibleWidget>
#include <QPointer>

#include <map>

namespace quillmoth {

/// A list of rows for assistive technology; rows get an element when they are asked for.
class RowListAccessible final : public QAccessibleWidget {
public:
    explicit RowListAccessible(RowList& list);
    ~RowListAccessible() override;

    [[nodiscard]] int childCount() const override;
    [[nodiscard]] QAccessibleInterface* child(int index) const override;
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override;
    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override;
    [[nodiscard]] QAccessibleInterface* focusChild() const override;

    [[nodiscard]] RowList& list() const { return *static_cast<RowList*>(widget()); }

private:
    mutable std::map<int, QAccessible::Id> rows_;
};

/// One row of it.
class RowAccessible final : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    RowAccessible(RowList& list, int position) : list_(&list), position_(position) {}

    [[nodiscard]] int position() const { return position_; }

    [[nodiscard]] bool isValid() const override;

    [[nodiscard]] QObject* object() const override { return nullptr; }

    [[nodiscard]] QAccessibleInterface* parent() const override;

    [[nodiscard]] QAccessibleInterface* child(int) const override { return nullptr; }

    [[nodiscard]] QAccessibleInterface* childAt(int, int) const override { return nullptr; }

    [[nodiscard]] int childCount() const override { return 0; }

    [[nodiscard]] int indexOfChild(const QAccessibleInterface*) const override { return -1; }

    [[nodiscard]] QString text(QAccessible::Text kind) const override;

    void setText(QAccessible::Text, const QString&) override {}

    [[nodiscard]] QRect rect() const override;

    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::ListItem; }

    [[nodiscard]] QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString& name) override;

    [[nodiscard]] QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    QPointer<RowList> list_;
    int position_;
};

} // namespace quillmoth
