#pragma once

#include "Quillmoth/Assistant/FloatingViewController.h"
#include "Quillmoth/Shell/Panel/PanelTextEdit.h"

namespace quillmoth {

/// The field for commands and searches: several lines, as high as its text. Arrows, Return and Escape go to
/// the controller first.
class CommandField final : public PanelTextEdit {
public:
    CommandField(std::shared_ptr<FloatingViewController> controller, QWidget* parent);

    /// The height that shows the whole text at `width`, or any above `limit` where that is more.
    [[nodiscard]] int heightFor(int width, int limit) const;

    /// Free space at the left, for what is laid over the field.
    void setLeadingInset(int inset);

    /// Takes the text, the placeholder and the state of the model over.
    void refresh();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void insertFromMimeData(const QMimeData* source) override;

private:
    [[nodiscard]] bool hasMoreLines(int lines, double width) const;
    void wrapAsFits(const QString& text);

    std::shared_ptr<FloatingViewController> controller_;
    QString placeholder_;
    int leadingInset_ = 0;
};

} // namespace quillmoth
