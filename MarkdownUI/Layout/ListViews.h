#pragma once

#include "MarkdownUI/Layout/FlowBuilder.h"

#include <vector>

/// Lists as units of a flow. Each view is added in a context within the style of lists, and gives the margin
/// of its items.
namespace quillmoth::markdown {

/// The items of a bulleted or numbered list.
class ListItemSequence {
public:
    /// `first` is the marker of the first item; the others are numbered on from it.
    ListItemSequence(const std::vector<ListItem>& items, const FlowMarker& first)
        : items_(items), first_(first) {}

    BlockMargin addTo(FlowBuilder& flow, const FlowContext& list) const;

private:
    const std::vector<ListItem>& items_;
    FlowMarker first_;
};

class BulletedListView {
public:
    explicit BulletedListView(const blocks::BulletedList& list) : list_(list) {}

    BlockMargin addTo(FlowBuilder& flow, const FlowContext& context) const;

private:
    const blocks::BulletedList& list_;
};

/// All its markers stand in one column, which is as wide as the widest of them.
class NumberedListView {
public:
    explicit NumberedListView(const blocks::NumberedList& list) : list_(list) {}

    BlockMargin addTo(FlowBuilder& flow, const FlowContext& context) const;

private:
    [[nodiscard]] double markerWidth(FlowBuilder& flow, FlowMarker marker) const;

    const blocks::NumberedList& list_;
};

class TaskListView {
public:
    explicit TaskListView(const blocks::TaskList& list) : list_(list) {}

    BlockMargin addTo(FlowBuilder& flow, const FlowContext& context) const;

private:
    const blocks::TaskList& list_;
};

} // namespace quillmoth::markdown
