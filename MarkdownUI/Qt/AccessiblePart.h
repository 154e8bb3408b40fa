#pragma once

#include "MarkdownUI/Qt/AccessibleMarkdown.h"

#include <QAccessible>

#include <cstddef>
#include <optional>

namespace quillmoth::markdown {

/// A heading, link or copy button of a document for assistive technology.
class AccessiblePart : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    struct Description {
        QAccessible::Role role = QAccessible::Heading;
        QString name;
        QString description;
        TextRange range;                      ///< heading, link
        QString destination;                  ///< link
        std::optional<std::size_t> codeBlock; ///< copy button
    };

    AccessiblePart(QAccessibleInterface& parent, const AccessibleMarkdownText& document,
                   Description description);

    [[nodiscard]] bool isValid() const override { return parent_.isValid(); }

    [[nodiscard]] QObject* object() const override { return nullptr; }

    [[nodiscard]] QAccessibleInterface* parent() const override { return &parent_; }

    [[nodiscard]] QAccessibleInterface* child(int /*index*/) const override { return nullptr; }

    [[nodiscard]] QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }

    [[nodiscard]] int childCount() const override { return 0; }

    [[nodiscard]] int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }

    [[nodiscard]] QAccessible::Role role() const override { return description_.role; }

    void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}

    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    [[nodiscard]] QRect rect() const override;
    [[nodiscard]] QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString& actionName) override;

    [[nodiscard]] QStringList keyBindingsForAction(const QString& /*actionName*/) const override {
        return {};
    }

private:
    QAccessibleInterface& parent_;
    const AccessibleMarkdownText& document_;
    Description description_;
};

} // namespace quillmoth::markdown
