#pragma once

#include "Foundation/Qt/ClickCounter.h"

#include <QTextEdit>
#include <QTimer>

#include <memory>

class QMenu;

namespace quillmoth {

/// An editable plain text of the panel: transparent, without a frame, with a caret of our own. Selecting with
/// the pointer leaves the desktop's selection alone, since that belongs to the application in front.
class PanelTextEdit : public QTextEdit {
public:
    /// The text stands so far from the left and right sides.
    static constexpr int kCaretRoom = 2;

    PanelTextEdit(const QFont& font, int lineHeight, QWidget* parent);

    /// The text with line feeds, nothing replaced.
    [[nodiscard]] QString text() const;
    /// Puts the caret behind the text. Does not call `onEdited`.
    void setText(const QString& text);

    void selectEverything();

    /// Without it no caret is drawn.
    void setCaretShown(bool shown);

    /// Called after each change by the user.
    std::function<void()> onEdited;

    [[nodiscard]] QRect caretRect() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void insertFromMimeData(const QMimeData* source) override;

    /// What a pasted text is turned into.
    [[nodiscard]] virtual QString pasted(const QString& text) const { return text; }

    [[nodiscard]] int lineHeight() const { return lineHeight_; }

    /// The height of the caret within the line.
    [[nodiscard]] virtual int caretHeight() const { return lineHeight_ - 2; }

private:
    /// What its context menu offers.
    [[nodiscard]] std::unique_ptr<QMenu> actions();
    void applyLineHeight();
    void restartBlinking();
    void updateCaret();
    void selectTo(QPoint position);
    void selectLine(QPoint position);

    int lineHeight_;
    QTimer blink_;
    ClickCounter clicks_;
    bool caretShown_ = true;
    bool caretLit_ = true;
    bool settingText_ = false;
};

} // namespace quillmoth
