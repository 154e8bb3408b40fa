#pragma once

#include "MarkdownUI/Qt/AccessibleMarkdown.h"

#include <QAccessible>

#include <cstddef>

namespace quillmoth::markdown {

/// A heading, link, image or copy button of a document for assistive technology. Lives as long as the content
/// does that it was made for.
class AccessiblePart : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    /// `part` is the index among the item's parts.
    AccessiblePart(QAccessibleInterface& parent, const AccessibleMarkdownText& document, std::size_t part);

    [[nodiscard]] bool isValid() const override { return parent_.isValid(); }

    [[nodiscard]] QObject* object() const override { return nullptr; }

    [[nodiscard]] QAccessibleInterface* parent() const override { return &parent_; }

    [[nodiscard]] QAccessibleInterface* child(int /*index*/) const override { return nullptr; }

    [[nodiscard]] QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }

    [[nodiscard]] int childCount() const override { return 0; }

    [[nodiscard]] int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }

    [[nodiscard]] QAccessible::Role role() const override;

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
    /// An empty heading where the content is another one by now.
    [[nodiscard]] const PartInfo& info() const;
    [[nodiscard]] QString alwaysLoadName() const;

    QAccessibleInterface& parent_;
    const AccessibleMarkdownText& document_;
    std::size_t part_;
};

} // namespace quillmoth::markdown
