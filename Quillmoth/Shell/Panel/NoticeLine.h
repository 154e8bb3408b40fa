#pragma once

#include <QLabel>

namespace quillmoth {

/// A quiet line below the command field that tells what has become of something the user has asked for. It
/// wraps rather than leaves anything out. Main thread.
class NoticeLine final : public QLabel {
public:
    /// From the edges of the field, so that it is in line with the text there.
    static constexpr int kInset = 8;

    explicit NoticeLine(QWidget* parent);

    /// An empty text hides it. True where the text has changed.
    bool tell(const QString& text);

    /// 0 where there is nothing to tell.
    [[nodiscard]] int heightForWidth(int width) const override;
};

} // namespace quillmoth
