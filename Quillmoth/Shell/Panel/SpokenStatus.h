#pragma once

#include <QWidget>

namespace quillmoth {

/// Speaks to a screen reader: an element that is not seen, whose name is what is said.
class SpokenStatus final : public QWidget {
public:
    explicit SpokenStatus(QWidget* parent);

    void announce(const QString& text);

    [[nodiscard]] int announcements() const { return announcements_; }

private:
    int announcements_ = 0;
};

} // namespace quillmoth
