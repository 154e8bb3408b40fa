#pragma once

#include "Quillmoth/Shell/Looks/ThinScrollBar.h"

#include <QWidget>

#include <functional>

namespace quillmoth {

/// Shows a part of a higher widget, whose height follows from its width (heightForWidth). The scroll bar lies
/// in the rightmost pixels, beside the content.
class ScrollView final : public QWidget {
public:
    /// `content` becomes a child.
    ScrollView(QWidget& content, QWidget* parent);

    /// Asks the content for its height again.
    void contentChanged();

    [[nodiscard]] int position() const { return bar_->value(); }

    void scrollTo(int position);

    /// Scrolls no further than needed for the lines from `top` to `bottom` of the content to be seen.
    void reveal(int top, int bottom);

    /// One view's height down, or up.
    void scrollByPages(int pages);

    /// Called before another part of the content is shown.
    std::function<void()> onScrolled;

    [[nodiscard]] int contentHeight() const { return contentHeight_; }

protected:
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void placeContent();

    QWidget& content_;
    ThinScrollBar* bar_;
    int contentHeight_ = 0;
    double wheelRest_ = 0;
};

} // namespace quillmoth
