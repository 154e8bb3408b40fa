#include "Quillmoth/Shell/Windows/OnboardingWindow.h"

#include "Quillmoth/Shell/OwnKeys.h"
#include "Quillmoth/Shell/SymbolCache.h"
#include "Quillmoth/Shell/Windows/Controls.h"
#include "Quillmoth/Shell/Windows/EmojiText.h"
#include "Quillmoth/Shell/Windows/WindowTheme.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QShortcut>
#include <QShowEvent>
#include <QStackedWidget>

#include <utility>

namespace quillmoth {

namespace {

constexpr QSize kWindow(680, 580);
constexpr int kSidePadding = 40;
constexpr int kTop = 56;
constexpr int kBottom = 44;
constexpr int kContinuePadding = 90;
constexpr int kRowsInset = 16;
constexpr int kRowTop = 18;
constexpr int kRowSpacing = 4;
constexpr int kImage = 32;
constexpr int kImagePadding = 10;
constexpr int kCap = 30;
constexpr int kCapSpacing = 5;
constexpr int kCapColumn = 100;

/// Stands for no image.
const auto kNoImage = QStringLiteral("car");
const auto kProgram = QStringLiteral("Quillmoth 🧙🏻♂️");

/// A symbol in indigo.
class SymbolView final : public QWidget {
public:
    SymbolView(const QString& name, int size) : name_(name), size_(size) { setFixedSize(size, size); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        windowSymbols().draw(painter, name_, QPointF(0, 0), size_, windowTheme(palette()).indigoText);
    }

private:
    QString name_;
    int size_;
};

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
        QFont black = windowFont(36, QFont::Black);
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
    first->setFont(windowFont(14, QFont::DemiBold));
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

/// A row of the first page.
class InformationDetailView final : public QWidget {
public:
    InformationDetailView(const QString& title, const QString& subTitle, const QString& imageName) {
        QHBoxLayout* row = makeRow(this);
        row->addSpacing(kImagePadding);
        row->addWidget(new SymbolView(imageName, kImage), 0, Qt::AlignVCenter);
        row->addSpacing(kImagePadding + 10);
        row->addLayout(makeTexts(title, subTitle), 1);
        setMinimumHeight(kRowTop + kImage + 2 * kImagePadding);
    }
};

/// A row of the second page.
class InformationDetailView2 final : public QWidget {
public:
    InformationDetailView2(const QString& title, const QString& subTitle, const QString& imageName,
                           const QString& imageName2, const QString& imageName3) {
        QHBoxLayout* row = makeRow(this);
        QStringList symbols = {imageName};
        for (const QString& name : {imageName2, imageName3}) {
            if (name != kNoImage)
                symbols << name;
        }
        row->addWidget(new KeyCaps(symbols));
        row->addSpacing(20);
        row->addLayout(makeTexts(title, subTitle), 1);
    }
};

QWidget* makePage(const QString& first, const QString& second, const QList<QWidget*>& rows) {
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

QWidget* makeFirstPage() {
    return makePage(
        QStringLiteral("Welcome to"), kProgram,
        {new InformationDetailView(
             QStringLiteral("Any App"),
             QStringLiteral("The only AI app you need. Use ChatGPT in any app.\n"
                            "Hit Option + Space to open Quillmoth (You can set this in the settings)."),
             QStringLiteral("app.badge.checkmark")),
         new InformationDetailView(
             QStringLiteral("Privacy"),
             QStringLiteral("Quillmoth places a high value on your privacy.\n"
                            "When this app is running, and you are using your own API key,\n"
                            "it will only connect to the OpenAI server."),
             QStringLiteral("hand.raised")),
         new InformationDetailView(QStringLiteral("History"),
                                   QStringLiteral("All of your chat history is saved locally."),
                                   QStringLiteral("clock"))});
}

QWidget* makeSecondPage() {
    const auto command = QStringLiteral("command.square.fill");
    return makePage(
        kProgram, QStringLiteral("Shortcuts"),
        {new InformationDetailView2(QStringLiteral("Copy All"),
                                    QStringLiteral("Copy all of the latest response."), command,
                                    QStringLiteral("shift.fill"), QStringLiteral("c.square.fill")),
         new InformationDetailView2(
             QStringLiteral("Resend the Last Prompt"),
             QStringLiteral("Don't like the answer? Let the AI generate the response again!"), command,
             QStringLiteral("r.square.fill"), kNoImage),
         new InformationDetailView2(
             QStringLiteral("Toggle Markdown"),
             QStringLiteral(
                 "Quillmoth has a Markdown preview, but some users prefer reading raw Markdown for "
                 "the ability to select and drag across the whole response."),
             command, QStringLiteral("m.square.fill"), kNoImage),
         new InformationDetailView2(
             QStringLiteral("Open History"),
             QStringLiteral("Revise your old chat history, or continue from where you left off."), command,
             QStringLiteral("h.square.fill"), kNoImage)});
}

} // namespace

OnboardingView::OnboardingView() : pages_(new QStackedWidget) {
    pages_->addWidget(makeFirstPage());
    pages_->addWidget(makeSecondPage());
    auto* button = new RoundedRectangleButton(QStringLiteral("Continue"));
    connect(button, &QPushButton::clicked, this, [this] { continuePressed(); });
    connect(new QShortcut(ownKeySequence(OwnKey::continueWelcome), this), &QShortcut::activated, button,
            [button] { button->click(); });
    auto* buttonRow = new QHBoxLayout;
    buttonRow->setContentsMargins(kContinuePadding, 0, kContinuePadding, 0);
    buttonRow->addWidget(button);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(kSidePadding, kTop, kSidePadding, kBottom);
    column->setSpacing(0);
    column->addWidget(pages_, 1);
    column->addLayout(buttonRow);
}

void OnboardingView::setPage(int page) {
    _page = page;
    pages_->setCurrentIndex(page - 1);
}

void OnboardingView::continuePressed() {
    if (_page == 1)
        setPage(2);
    else if (onFinished)
        onFinished();
}

OnboardingWindow::OnboardingWindow(ColorScheme& colorScheme, std::function<void()> onFinished)
    : ShellWindow(QStringLiteral("Onboarding"), colorScheme), view_(new OnboardingView) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(view_);
    setFixedSize(kWindow);
    applyLook();
    view_->onFinished = [this, onFinished = std::move(onFinished)] {
        close();
        onFinished();
    };
}

void OnboardingWindow::showEvent(QShowEvent* event) {
    if (!event->spontaneous())
        view_->setPage(1);
    ShellWindow::showEvent(event);
}

} // namespace quillmoth
