#pragma once

#include "MarkdownUI/Qt/AccessibleMarkdown.h"

#include <QAccessibleWidget>

#include <cstddef>
#include <optional>
#include <vector>

namespace quillmoth::markdown {

/// A widget that shows one item, for assistive technology: a document with its text, whose children are its
/// headings, links, images and copy buttons in reading order. A widget without a name is called by its text.
/// Owned by Qt's cache of interfaces.
class AccessibleDocument : public QAccessibleWidget {
public:
    AccessibleDocument(QWidget& widget, MarkdownItem& item, AccessibleMarkdownText::Origin origin,
                       QAccessible::Role role = QAccessible::Document);
    ~AccessibleDocument() override;

    [[nodiscard]] int childCount() const override;
    [[nodiscard]] QAccessibleInterface* child(int index) const override;
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override;
    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override;
    [[nodiscard]] QAccessibleInterface* focusChild() const override;
    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

private:
    void refresh() const;
    void forget() const;

    MarkdownItem& item_;
    AccessibleMarkdownText text_;
    mutable std::optional<std::size_t> knownVersion_; ///< that the children were made for
    mutable std::vector<QAccessible::Id> children_;   ///< registered in Qt's cache; those of the item's parts
};

} // namespace quillmoth::markdown
