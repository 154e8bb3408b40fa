#pragma once

#include "Quillmoth/Shell/Panel/PanelTextEdit.h"

namespace quillmoth {

/// A text field of several lines that is as high as its text.
class GrowingTextField : public PanelTextEdit {
public:
    GrowingTextField(const QFont& font, int lineHeight, QWidget* parent);

    /// The height that shows the whole text at `width`, or any above `limit` where that is more.
    [[nodiscard]] int heightFor(int width, int limit) const;

    /// Free space at the left, for what is laid over the field.
    void setLeadingInset(int inset);

    /// Leaves a field alone that shows the text already.
    void showText(const QString& shown);

protected:
    void insertFromMimeData(const QMimeData* source) override;

    [[nodiscard]] int leadingInset() const { return leadingInset_; }

private:
    [[nodiscard]] bool hasMoreLines(int lines, double width) const;
    void wrapAsFits(const QString& text);

    int leadingInset_ = 0;
};

} // namespace quillmoth
