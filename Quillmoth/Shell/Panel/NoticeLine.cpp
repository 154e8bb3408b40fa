#include "Quillmoth/Shell/Panel/NoticeLine.h"

#include "Quillmoth/Shell/Looks/Fonts.h"
#include "Quillmoth/Shell/Looks/Palette.h"

namespace quillmoth {

namespace {

constexpr int kNoticeFont = 13;

} // namespace

NoticeLine::NoticeLine(QWidget* parent) : QLabel(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setAlignment(Qt::AlignLeading | Qt::AlignTop);
    setFont(textFont(kNoticeFont));
    QPalette colours;
    colours.setColor(QPalette::WindowText, kPanelTheme.barHovered);
    setPalette(colours);
    hide();
}

bool NoticeLine::tell(const QString& text) {
    if (text == this->text())
        return false;
    setText(text);
    setVisible(!text.isEmpty());
    return true;
}

int NoticeLine::heightForWidth(int width) const {
    return text().isEmpty() ? 0 : QLabel::heightForWidth(width);
}

} // namespace quillmoth
