#include "MarkdownUI/Qt/AccessibleMarkdownView.h"

#include "MarkdownUI/Qt/AccessiblePart.h"
#include "MarkdownUI/Qt/MarkdownView.h"

#include <algorithm>

namespace quillmoth::markdown {

namespace {

QString qt(const std::string& text) {
    return QString::fromStdString(text);
}

std::vector<AccessiblePart::Description> partsOf(const DocumentLayout& document) {
    std::vector<AccessiblePart::Description> parts;
    for (const HeadingInfo& heading : document.headings()) {
        parts.push_back({.role = QAccessible::Heading,
                         .name = qt(heading.text),
                         .description = QStringLiteral("Level %1").arg(heading.level),
                         .range = heading.range,
                         .destination = {},
                         .codeBlock = {}});
    }
    for (const LinkInfo& link : document.links()) {
        parts.push_back({.role = QAccessible::Link,
                         .name = qt(link.text),
                         .description = qt(link.destination),
                         .range = link.range,
                         .destination = qt(link.destination),
                         .codeBlock = {}});
    }
    std::stable_sort(parts.begin(), parts.end(), [](const auto& first, const auto& second) {
        return first.range.begin < second.range.begin;
    });
    for (std::size_t block = 0; block < document.codeBlockCount(); ++block) {
        parts.push_back({.role = QAccessible::PushButton,
                         .name = QStringLiteral("Copy code"),
                         .description = {},
                         .range = {},
                         .destination = {},
                         .codeBlock = block});
    }
    return parts;
}

} // namespace

AccessibleMarkdownView::AccessibleMarkdownView(MarkdownView& view)
    : QAccessibleWidget(&view, QAccessible::Document), view_(view),
      text_(view.item(), [&view] { return view.mapToGlobal(view.itemOrigin().toPoint()); }) {}

AccessibleMarkdownView::~AccessibleMarkdownView() {
    forget();
}

void AccessibleMarkdownView::forget() const {
    for (const QAccessible::Id id : children_) {
        QAccessible::deleteAccessibleInterface(id);
    }
    children_.clear();
}

/// Makes the children anew where the text is another one.
void AccessibleMarkdownView::refresh() const {
    const std::string& text = view_.item().content().documentText();
    if (text == knownText_) {
        return;
    }
    forget();
    knownText_ = text;
    const DocumentLayout* document = view_.item().content().document();
    if (document == nullptr) {
        return;
    }
    auto* parent = const_cast<AccessibleMarkdownView*>(this);
    for (AccessiblePart::Description& part : partsOf(*document)) {
        children_.push_back(
            QAccessible::registerAccessibleInterface(new AccessiblePart(*parent, text_, std::move(part))));
    }
}

int AccessibleMarkdownView::childCount() const {
    refresh();
    return static_cast<int>(children_.size());
}

QAccessibleInterface* AccessibleMarkdownView::child(int index) const {
    refresh();
    const bool isThere = index >= 0 && static_cast<std::size_t>(index) < children_.size();
    return isThere ? QAccessible::accessibleInterface(children_[static_cast<std::size_t>(index)]) : nullptr;
}

int AccessibleMarkdownView::indexOfChild(const QAccessibleInterface* child) const {
    const auto id = QAccessible::uniqueId(const_cast<QAccessibleInterface*>(child));
    const auto found = std::find(children_.begin(), children_.end(), id);
    return found != children_.end() ? static_cast<int>(found - children_.begin()) : -1;
}

QAccessibleInterface* AccessibleMarkdownView::childAt(int x, int y) const {
    for (int index = 0; index < childCount(); ++index) {
        if (child(index)->rect().contains(x, y)) {
            return child(index);
        }
    }
    return nullptr;
}

QAccessible::State AccessibleMarkdownView::state() const {
    QAccessible::State state = QAccessibleWidget::state();
    state.readOnly = true;
    state.multiLine = true;
    state.selectableText = true;
    return state;
}

QString AccessibleMarkdownView::text(QAccessible::Text kind) const {
    return kind == QAccessible::Value ? text_.text(0, text_.characterCount()) : QAccessibleWidget::text(kind);
}

void* AccessibleMarkdownView::interface_cast(QAccessible::InterfaceType type) {
    return type == QAccessible::TextInterface ? static_cast<QAccessibleTextInterface*>(&text_)
                                              : QAccessibleWidget::interface_cast(type);
}

} // namespace quillmoth::markdown
