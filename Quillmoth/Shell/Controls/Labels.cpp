#include "Quillmoth/Shell/Controls/Labels.h"

#include "Quillmoth/Shell/Looks/Palette.h"

#include <QEvent>
#include <QPainter>

namespace quillmoth {

ToneLabel::ToneLabel(Tone tone, const QString& plainText) : tone_(tone) {
    setTextFormat(Qt::RichText);
    setWordWrap(true);
    setPlainText(plainText);
}

void ToneLabel::setPlainText(const QString& text) {
    plainText_ = text;
    setAccessibleName(text);
    // Rich text alone has lines of a given height.
    QString escaped = text.toHtmlEscaped();
    escaped.replace(QLatin1Char('\n'), QStringLiteral("<br>"));
    setText(QStringLiteral("<div style=\"line-height:18px\">%1</div>").arg(escaped));
}

void ToneLabel::setTone(Tone tone) {
    tone_ = tone;
    tint();
}

void ToneLabel::changeEvent(QEvent* event) {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ParentChange)
        tint();
}

void ToneLabel::tint() {
    const WindowTheme& theme = windowTheme(palette());
    const QColor colors[] = {theme.text2, theme.green, theme.red};
    const QColor& color = colors[static_cast<int>(tone_)];
    if (palette().color(QPalette::WindowText) == color)
        return;
    QPalette own;
    own.setColor(QPalette::WindowText, color);
    setPalette(own);
}

Hairline::Hairline() {
    setFixedHeight(1);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void Hairline::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), windowTheme(palette()).divider);
}

} // namespace quillmoth
