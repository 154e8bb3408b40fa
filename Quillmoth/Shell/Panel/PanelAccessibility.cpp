#include "Quillmoth/Shell/Panel/PanelAccessibility.h"

#include "MarkdownUI/Qt/AccessibleDocument.h"
#include "Quillmoth/Shell/Panel/BottomBar.h"
#include "Quillmoth/Shell/Panel/ConversationView.h"
#include "Quillmoth/Shell/Panel/FormView.h"
#include "Quillmoth/Shell/Panel/PanelMenu.h"
#include "Quillmoth/Shell/Panel/PanelSurface.h"
#include "Quillmoth/Shell/Panel/RowListAccessible.h"
#include "Quillmoth/Shell/Panel/SpokenStatus.h"

#include <QAccessibleWidget>

namespace quillmoth {

namespace {

/// The part of a text field in which the text is: the field speaks for it.
class ViewportAccessible final : public QAccessibleWidget {
public:
    explicit ViewportAccessible(QWidget& viewport) : QAccessibleWidget(&viewport, QAccessible::Client) {}

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state;
        state.invisible = true;
        return state;
    }
};

/// A line of a menu.
class MenuItemAccessible final : public QAccessibleWidget {
public:
    explicit MenuItemAccessible(PanelMenuItem& item) : QAccessibleWidget(&item, QAccessible::MenuItem) {}

    [[nodiscard]] QStringList actionNames() const override { return {pressAction()}; }

    void doAction(const QString& name) override {
        if (name == pressAction())
            static_cast<PanelMenuItem*>(widget())->click();
    }
};

/// What is a group of others, by what it is a group for.
QAccessible::Role groupRoleOf(const QObject* object) {
    if (dynamic_cast<const PanelSurface*>(object))
        return QAccessible::Dialog;
    if (dynamic_cast<const BottomBar*>(object))
        return QAccessible::ToolBar;
    if (dynamic_cast<const FormView*>(object))
        return QAccessible::Form;
    if (dynamic_cast<const PanelMenu*>(object))
        return QAccessible::PopupMenu;
    if (dynamic_cast<const ConversationView*>(object))
        return QAccessible::Grouping;
    return QAccessible::NoRole;
}

bool isViewport(const QWidget& widget) {
    const auto* edit = dynamic_cast<const PanelTextEdit*>(widget.parentWidget());
    return edit && edit->viewport() == &widget;
}

/// The widgets have no meta-object of their own, so that their type alone says what they are.
QAccessibleInterface* makePanelInterface(const QString&, QObject* object) {
    auto* widget = qobject_cast<QWidget*>(object);
    if (!widget)
        return nullptr;
    if (auto* list = dynamic_cast<RowList*>(object))
        return new RowListAccessible(*list);
    if (auto* message = dynamic_cast<MessageContent*>(object))
        return new markdown::AccessibleDocument(
            *message, message->item(), [message] { return message->mapToGlobal(QPoint()); },
            // What has a name is a document; what has none is told by its text.
            message->accessibleName().isEmpty() ? QAccessible::StaticText : QAccessible::Document);
    if (auto* chips = dynamic_cast<ChipText*>(object))
        return new QAccessibleWidget(chips, QAccessible::StaticText);
    if (auto* item = dynamic_cast<PanelMenuItem*>(object))
        return new MenuItemAccessible(*item);
    // What comes up in this role is spoken once, when nothing else is being said.
    if (dynamic_cast<SpokenMessage*>(object))
        return new QAccessibleWidget(widget, QAccessible::Notification);
    if (isViewport(*widget))
        return new ViewportAccessible(*widget);
    const QAccessible::Role group = groupRoleOf(object);
    return group == QAccessible::NoRole ? nullptr : new QAccessibleWidget(widget, group);
}

} // namespace

void installPanelAccessibility() {
    static const bool installed = [] {
        QAccessible::installFactory(makePanelInterface);
        return true;
    }();
    Q_UNUSED(installed);
}

} // namespace quillmoth
