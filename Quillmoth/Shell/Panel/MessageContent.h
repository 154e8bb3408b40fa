#pragma once

#include <QWidget>

#include <functional>
#include <memory>
#include <string>

namespace quillmoth {

/// The content of one message: a text that the user can select with the pointer and copy. Its height follows
/// from its width (heightForWidth). It never takes the keyboard from the field.
class MessageContent : public QWidget {
public:
    using QWidget::QWidget;

    virtual void setText(const std::string& text) = 0;
    /// Puts more text behind it, at a price that does not grow with what is there.
    virtual void appendText(const std::string& more) = 0;
    virtual void setFontSize(double pixelSize) = 0;

    /// The least width at which no line breaks otherwise than at `available`.
    [[nodiscard]] virtual int naturalWidth(int available) const = 0;
    /// The middle of the first line, from the top.
    [[nodiscard]] virtual double firstLineMiddle() const = 0;

    /// The part between two heights is going to be seen. Returns how far it has moved down by getting exact
    /// what was estimated.
    virtual int prepareToShow(int /*top*/, int /*bottom*/) { return 0; }

    /// Empty where nothing is selected.
    [[nodiscard]] virtual QString selectedText() const = 0;
    virtual void clearSelection() = 0;

    /// The user has begun to select here.
    std::function<void()> onSelectionBegun;
    /// The height at the same width has changed without a call of the above.
    std::function<void()> onHeightChanged;
    /// A part of the content, as a range of heights, is to be seen.
    std::function<void(int top, int bottom)> onReveal;
};

/// Makes a content of one kind below a parent.
using MessageContentFactory = std::function<MessageContent*(QWidget* parent)>;

} // namespace quillmoth
