#pragma once

#include "Quillmoth/Shell/Panel/PanelTextEdit.h"

#include <cstdint>

namespace quillmoth {

/// The field for one blank of the form, with an edge. It has one line: where a text comes with several, by
/// whatever way, their breaks become blanks.
class BracketField final : public QWidget {
public:
    static constexpr int kHeight = 32;
    /// The focus ring reaches so far beyond the field; the widget has this margin on each side.
    static constexpr int kOutside = 1;

    BracketField(std::int64_t id, const QString& text, QWidget* parent);

    [[nodiscard]] std::int64_t id() const { return id_; }

    [[nodiscard]] PanelTextEdit& edit() const;

    /// Puts the caret behind the text, unless the field shows it already. Does not call `onEdited`.
    void setText(const QString& text);

    void setCaretShown(bool shown);

    std::function<void(const QString& text)> onEdited;
    std::function<void()> onReturn;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    class Edit;

    std::int64_t id_;
    Edit* edit_;
    bool active_ = true;
};

} // namespace quillmoth
