#pragma once

#include <QListWidget>

#include <functional>

namespace quillmoth {

/// A pop-up with emoji to choose from, by pointer or arrow keys; Escape chooses none. Deletes itself when it
/// closes.
class EmojiPicker final : public QListWidget {
public:
    using Choice = std::function<void(const QString& emoji)>;

    /// Opens below `anchor`, with the emoji `current` marked where it is among them.
    static EmojiPicker* open(QWidget& anchor, const QString& current, Choice choose);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    EmojiPicker(QWidget& anchor, const QString& current, Choice choose);

    void take(const QListWidgetItem* item);

    Choice choose_;
};

} // namespace quillmoth
