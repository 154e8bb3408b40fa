#pragma once

#include "MarkdownUI/Qt/AccessibleMarkdown.h"

#include <QAccessibleWidget>

#include <string>
#include <vector>

namespace quillmoth::markdown {

class MarkdownView;

/// A MarkdownView for assistive technology: a document with its text, whose children are its headings, links
/// and copy buttons in reading order. Owned by Qt's cache of interfaces.
class AccessibleMarkdownView : public QAccessibleWidget {
public:
    explicit AccessibleMarkdownView(MarkdownView& view);
    ~AccessibleMarkdownView() override;

    [[nodiscard]] int childCount() const override;
    [[nodiscard]] QAccessibleInterface* child(int index) const override;
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override;
    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override;
    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    [[nodiscard]] const AccessibleMarkdownText& document() const { return text_; }

private:
    void refresh() const;
    void forget() const;

    MarkdownView& view_;
    AccessibleMarkdownText text_;
    mutable std::string knownText_;                 ///< that the children were made for
    mutable std::vector<QAccessible::Id> children_; ///< registered in Qt's cache
};

} // namespace quillmoth::markdown
