#include "Quillmoth/Shell/Windows/OnboardingPage.h"

#include "Foundation/Qt/Symbols.h"
#include "Quillmoth/Shell/Controls/Labels.h"
#include "Quillmoth/Shell/Looks/EmojiText.h"
#include "Quillmoth/Shell/Looks/Fonts.h"
#include "Quillmoth/Shell/Looks/Palette.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPainter>

namespace quillmoth {

namespace {

constexpr int kRowsInset = 16;
constexpr int kRowTop = 18;
constexpr int kRowSpacing = 4;
constexpr int kImage = 32;
constexpr int kImagePadding = 10;
constexpr int kCap = 30;
constexpr int kCapSpacing = 5;
constexpr int kCapColumn = 100;

/// What the cap of the named symbol shows.
QString capText(const QString& symbol) {
    if (symbol == QLatin1String("command.square.fill"))
        return QStringLiteral("Ctrl");
    return symbol == QLatin1String("shift.fill") ? QStringLiteral("Shift") : symbol.left(1).toUpper();
}

/// Key caps side by side, which read as one text.
class KeyCaps final : public QLabel {
public:
    explicit KeyCaps(const QStringList& symbols) {
        setFixedWidth(kCapColumn);
        auto* row = new QHBoxLayout(this);
        row->setContentsMargins(0, 0, 0, 0);
        row->setSpacing(kCapSpacing);
        QStringList texts;
        for (const QString& symbol : symbols) {
            row->addWidget(new SymbolView(symbol, kCap), 0, Qt::AlignVCenter);
            texts << capText(symbol);
        }
        row->addStretch();
        setAccessibleName(texts.join(u'+'));
    }

    [[nodiscard]] QSize minimumSizeHint() const override { return {kCapColumn, kCap}; }
};

/// A line of the headline. A label, so that it is read as one.
class Headline final : public QLabel {
public:
    Headline(const QString& text, bool indigo) : text_(text), indigo_(indigo) {
        QFont black = textFont(36, QFont::Black);
        black.setLetterSpacing(QFont::AbsoluteSpacing, -0.022 * black.pixelSize());
        setFont(black);
        setFixedHeight(44);
        setAccessibleName(text);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const WindowTheme& theme = windowTheme(palette());
        painter.setPen(indigo_ ? theme.indigoText : theme.text);
        drawEmojiText(painter, rect(), Qt::AlignHCenter, text_);
    }

private:
    QString text_;
    bool indigo_;
};

QVBoxLayout* makeTexts(const QString& title, const QString& subTitle) {
    auto* column = new QVBoxLayout;
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    auto* first = new QLabel(title);
    first->setFont(textFont(14, QFont::DemiBold));
    first->setMinimumHeight(20);
    auto* second = new ToneLabel(Tone::secondary, subTitle);
    second->setMinimumHeight(18);
    column->addStretch();
    column->addWidget(first);
    column->addWidget(second);
    column->addStretch();
    return column;
}

QHBoxLayout* makeRow(QWidget* row) {
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, kRowTop, 0, 0);
    layout->setSpacing(0);
    return layout;
}

} // namespace

SymbolView::SymbolView(const QString& name, int size) : name_(name), size_(size) {
    setFixedSize(size, size);
}

void SymbolView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    drawSymbol(painter, name_, QPointF(0, 0), size_, windowTheme(palette()).indigoText);
}

InformationDetailView::InformationDetailView(const QString& title, const QString& subTitle,
                                             const QString& imageName) {
    QHBoxLayout* row = makeRow(this);
    row->addSpacing(kImagePadding);
    row->addWidget(new SymbolView(imageName, kImage), 0, Qt::AlignVCenter);
    row->addSpacing(kImagePadding + 10);
    row->addLayout(makeTexts(title, subTitle), 1);
    setMinimumHeight(kRowTop + kImage + 2 * kImagePadding);
}

InformationDetailView2::InformationDetailView2(const QString& title, const QString& subTitle,
                                               const QString& imageName, const QString& imageName2,
                                               const QString& imageName3) {
    QHBoxLayout* row = makeRow(this);
    QStringList symbols = {imageName};
    for (const QString& name : {imageName2, imageName3}) {
        if (name != onboarding::kNoImage)
            symbols << name;
    }
    row->addWidget(new KeyCaps(symbols));
    row->addSpacing(20);
    row->addLayout(makeTexts(title, subTitle), 1);
}

QWidget* makeOnboardingPage(const QString& first, const QString& second, const QList<QWidget*>& rows) {
    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(new Headline(first, false));
    column->addWidget(new Headline(second, true));
    column->addStretch();
    auto* list = new QVBoxLayout;
    list->setContentsMargins(kRowsInset, 0, kRowsInset, 12);
    list->setSpacing(kRowSpacing);
    for (QWidget* row : rows)
        list->addWidget(row);
    column->addLayout(list);
    column->addStretch();
    return page;
}

} // namespace quillmoth
