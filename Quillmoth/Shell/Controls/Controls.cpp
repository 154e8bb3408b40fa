#include "Quillmoth/Shell/Controls/Controls.h"

#include "Quillmoth/Shell/Looks/EmojiText.h"
#include "Quillmoth/Shell/Looks/Fonts.h"
#include "Quillmoth/Shell/Looks/Motion.h"
#include "Quillmoth/Shell/Looks/Palette.h"
#include "Quillmoth/Shell/Looks/SymbolCache.h"
#include "Quillmoth/Shell/Looks/ThinScrollBar.h"

#include <QAbstractItemView>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QStylePainter>
#include <QWheelEvent>
#include <QtMath>

namespace quillmoth {

namespace {

constexpr QSize kTrack(34, 20);
constexpr double kKnob = 16;
constexpr double kKnobInset = 2;
constexpr int kSwitchGap = 10;
constexpr double kPressedScale = 0.95;
constexpr double kContinueRadius = 8;
constexpr int kLeastPicker = 100;

void drawTrack(QPainter& painter, const QRectF& track, double share, const WindowTheme& theme) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(blended(theme.switchOff, theme.indigo, share));
    painter.drawRoundedRect(track, track.height() / 2, track.height() / 2);
    const double travel = track.width() - kKnob - 2 * kKnobInset;
    const QRectF knob(track.left() + kKnobInset + travel * share, track.top() + kKnobInset, kKnob, kKnob);
    painter.setBrush(QColor(0, 0, 0, 40));
    painter.drawEllipse(knob.translated(0, 0.75));
    painter.setBrush(Qt::white);
    painter.drawEllipse(knob);
}

} // namespace

Switch::Switch(const QString& text) : QCheckBox(text) {
    setAccessibleName(text);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    // Not the click: assistive technology switches without one.
    connect(this, &QCheckBox::toggled, this, [this](bool on) {
        slide_.moveTo(on ? 1 : 0, motion::kSwitch);
        if (!isShowing_ && onChange)
            onChange(on);
    });
}

void Switch::setOn(bool on) {
    isShowing_ = true;
    setChecked(on);
    isShowing_ = false;
}

QSize Switch::sizeHint() const {
    return {kTrack.width() + kSwitchGap + qCeil(emojiTextWidth(font(), text())), kTrack.height()};
}

void Switch::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.save();
    const double top = (height() - kTrack.height()) / 2.0;
    drawTrack(painter, QRectF(QPointF(0, top), kTrack), slide_.value(), windowTheme(palette()));
    painter.restore();
    painter.setPen(palette().color(QPalette::WindowText));
    drawEmojiText(painter, rect().adjusted(kTrack.width() + kSwitchGap, 0, 0, 0), Qt::AlignLeft, text());
}

LinkButton::LinkButton(const QString& text) : QPushButton(text) {
    setAccessibleName(text);
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize LinkButton::sizeHint() const {
    return {fontMetrics().horizontalAdvance(text()) + 1, fontMetrics().height() + 2};
}

void LinkButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QFont underlined = font();
    underlined.setUnderline(true);
    painter.setFont(underlined);
    painter.setPen(windowTheme(palette()).link);
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter, text());
}

SymbolButton::SymbolButton(const QString& symbol, int symbolSize) : symbol_(symbol), symbolSize_(symbolSize) {
    setFixedSize(symbolSize + 6, symbolSize + 6);
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::ArrowCursor);
}

void SymbolButton::setSymbol(const QString& symbol) {
    symbol_ = symbol;
    update();
}

void SymbolButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const WindowTheme& theme = windowTheme(palette());
    const bool strong = underMouse() || hasFocus();
    windowSymbols().draw(painter, symbol_, QPointF((width() - symbolSize_) / 2, (height() - symbolSize_) / 2),
                         symbolSize_, strong ? theme.text2 : theme.text3);
}

RoundedRectangleButtonStyle::RoundedRectangleButtonStyle(const QString& text, Fill fill)
    : QPushButton(text), fill_(fill) {
    setFixedHeight(44);
    setFont(textFont(15, QFont::Medium));
    connect(this, &QPushButton::pressed, this, [this] { scale_.moveTo(kPressedScale, motion::kPress); });
    connect(this, &QPushButton::released, this, [this] { scale_.moveTo(1, motion::kRelease); });
}

void RoundedRectangleButtonStyle::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPointF centre = QRectF(rect()).center();
    const double scale = scale_.value();
    painter.translate(centre);
    painter.scale(scale, scale);
    painter.translate(-centre);
    const WindowTheme& theme = windowTheme(palette());
    const bool isQuiet = fill_ == Fill::quiet;
    painter.setPen(isQuiet ? QPen(theme.buttonEdge) : QPen(Qt::NoPen));
    painter.setBrush(isQuiet ? theme.button : theme.indigo);
    const double inset = isQuiet ? 0.5 : 0;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), kContinueRadius,
                            kContinueRadius);
    painter.setPen(isQuiet ? theme.text : QColor(Qt::white));
    painter.drawText(rect(), Qt::AlignCenter, text());
}

ModelPicker::ModelPicker() {
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    view()->setVerticalScrollBar(new ThinScrollBar(ThinScrollBar::Place::window));
    connect(this, &QComboBox::textActivated, this, [this](const QString& model) {
        if (onChoice)
            onChoice(model);
    });
}

void ModelPicker::setModels(const QStringList& offered, const QString& current) {
    QStringList shown;
    for (int index = 0; index < count(); ++index)
        shown << itemText(index);
    if (shown != offered) {
        clear();
        addItems(offered);
    }
    setCurrentIndex(findText(current, Qt::MatchFixedString | Qt::MatchCaseSensitive));
    setPlaceholderText(current);
    setAccessibleDescription(current);
    updateGeometry();
}

QSize ModelPicker::sizeHint() const {
    QStyleOptionComboBox option;
    initStyleOption(&option);
    const QString shown = currentIndex() < 0 ? placeholderText() : currentText();
    return style()->sizeFromContents(QStyle::CT_ComboBox, &option,
                                     {fontMetrics().horizontalAdvance(shown) + 1, fontMetrics().height()},
                                     this);
}

QSize ModelPicker::minimumSizeHint() const {
    return {kLeastPicker, sizeHint().height()};
}

void ModelPicker::showPopup() {
    // A window of its own, which takes neither palette nor font from the one it belongs to.
    const QPalette menu = menuPalette(palette());
    view()->window()->setPalette(menu);
    view()->setPalette(menu);
    view()->setFont(font());
    view()->setMinimumWidth(view()->sizeHintForColumn(0) + 40);
    QComboBox::showPopup();
}

void ModelPicker::paintEvent(QPaintEvent*) {
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    if (currentIndex() < 0)
        option.currentText = placeholderText();
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

void ModelPicker::wheelEvent(QWheelEvent* event) {
    event->ignore();
}

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
    const QColor colors[] = {theme.text, theme.text2, theme.green, theme.red};
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
