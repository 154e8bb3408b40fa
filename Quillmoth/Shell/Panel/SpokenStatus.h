#pragma once

#include <QWidget>

#include <string>

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

    /// Tells a new error, or else that an answer is waited for or finished.
    void follow(bool isLoading, const std::string& error);
    void announce(const QString& text);

private:
    QWidget& parent_;
    bool isLoading_ = false;
    std::string error_;
};

} // namespace quillmoth
