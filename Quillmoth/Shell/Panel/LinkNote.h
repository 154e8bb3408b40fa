#pragma once

#include <QLabel>

namespace quillmoth {

/// A quiet line over the foot of the answers that tells where a link leads, or why it is not opened. It takes
/// no room and no clicks. Main thread.
class LinkNote final : public QLabel {
public:
    explicit LinkNote(QWidget* parent);

    /// An empty text hides it.
    void tell(const QString& text);

    /// The lower edge, and what it may take of the width, in the coordinates of the parent.
    void placeAbove(int left, int bottom, int width);

    /// The whole of it, where less is shown.
    [[nodiscard]] const QString& wholeText() const { return text_; }

private:
    void fit();

    QString text_;
    QPoint foot_;
    int room_ = 0;
};

} // namespace quillmoth
