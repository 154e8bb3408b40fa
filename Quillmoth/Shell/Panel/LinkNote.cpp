#include "Quillmoth/Shell/Panel/LinkNote.h"

#include "Quillmoth/Shell/Looks/Fonts.h"
#include "Quillmoth/Shell/Looks/Palette.h"

#include <QFontMetrics>

namespace quillmoth {

namespace {

constexpr int kNoteFont = 12;
constexpr int kNoteMargin = 4;

} // namespace

LinkNote::LinkNote(QWidget* parent) : QLabel(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setTextFormat(Qt::PlainText);
    setFont(textFont(kNoteFont));
    setMargin(kNoteMargin);
    QPalette colours;
    colours.setColor(QPalette::WindowText, kPanelTheme.barHovered);
    colours.setColor(QPalette::Window, kPanelTheme.field);
    setPalette(colours);
    setAutoFillBackground(true);
    hide();
}

void LinkNote::tell(const QString& text) {
    text_ = text.simplified();
    setAccessibleName(text_);
    setVisible(!text_.isEmpty());
    fit();
    raise();
}

void LinkNote::placeAbove(int left, int bottom, int width) {
    foot_ = {left, bottom};
    room_ = width;
    fit();
}

/// Of a long address its beginning, where the host stands, and its end are shown.
void LinkNote::fit() {
    setText(QFontMetrics(font()).elidedText(text_, Qt::ElideMiddle, room_ - 2 * kNoteMargin));
    const QSize size = sizeHint();
    setGeometry(foot_.x(), foot_.y() - size.height(), qMin(size.width(), room_), size.height());
}

} // namespace quillmoth
