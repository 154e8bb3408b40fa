#pragma once

#include <QWidget>

namespace quillmoth {

/// What is said to a screen reader once: an element that is not seen, and that goes by itself.
class SpokenMessage final : public QWidget {
public:
    SpokenMessage(const QString& text, QWidget* parent);
};

/// Speaks to a screen reader, when that says nothing else. Each message is an element of its own: they can
/// come faster than they are read.
class SpokenStatus final {
public:
    explicit SpokenStatus(QWidget& parent) : parent_(parent) {}

    void announce(const QString& text);

    [[nodiscard]] int announcements() const { return announcements_; }

private:
    QWidget& parent_;
    int announcements_ = 0;
};

} // namespace quillmoth
