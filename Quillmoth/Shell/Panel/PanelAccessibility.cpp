#include "Quillmoth/Shell/Panel/PanelAccessibility.h"

#include "Quillmoth/Shell/Panel/ChipText.h"
#include "Quillmoth/Shell/Panel/PlainTextContent.h"
#include "Quillmoth/Shell/Panel/RowListAccessible.h"
#include "Quillmoth/Shell/Panel/SpokenStatus.h"

#include <QAccessibleWidget>

namespace quillmoth {

namespace {

/// A widget that is one text.
class TextAccessible final : public QAccessibleWidget {
public:
    explicit TextAccessible(PlainTextContent& content)
        : QAccessibleWidget(&content, QAccessible::StaticText) {}

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        const auto* content = static_cast<const PlainTextContent*>(widget());
        return kind == QAccessible::Name ? content->column().text() : QAccessibleWidget::text(kind);
    }
};

/// The widgets have no meta-object of their own, so their classes are told by their type.
QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    if (auto* list = dynamic_cast<RowList*>(object))
        return new RowListAccessible(*list);
    if (auto* text = dynamic_cast<PlainTextContent*>(object))
        return new TextAccessible(*text);
    if (auto* chips = dynamic_cast<ChipText*>(object))
        return new QAccessibleWidget(chips, QAccessible::StaticText, chips->accessibleName());
    if (auto* status = dynamic_cast<SpokenStatus*>(object))
        return new QAccessibleWidget(status, QAccessible::AlertMessage);
    return nullptr;
}

} // namespace

void installPanelAccessibility() {
    static const bool installed = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    Q_UNUSED(installed);
}

} // namespace quillmoth
