#include "Quillmoth/Shell/Panel/BottomBar.h"

#include "Quillmoth/Shell/Looks/Fonts.h"
#include "Quillmoth/Shell/Looks/Palette.h"
#include "Quillmoth/Shell/Looks/Pictograph.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QtMath>

namespace quillmoth {

namespace {

constexpr int kWizardFont = 14;
constexpr int kWizardWidth = 20;
constexpr int kBehindWizard = 6;
constexpr int kGap = 7;
constexpr int kSmallGap = 4;
constexpr int kSeparatorHeight = 12;
constexpr int kStatusFont = 12;
constexpr int kPadding = 1;
constexpr int kLeastStatus = 40;

using Item = FloatingViewController::BarItem;

QString symbolName(const char* name) {
    return QString::fromLatin1(name);
}

} // namespace

BottomBar::BottomBar(std::shared_ptr<FloatingViewController> controller, QWidget* parent)
    : QWidget(parent), controller_(std::move(controller)) {
    // In the order in which they stand, which is the order of the Tab key and of screen readers.
    const QString control = symbolName("command.square.fill");
    const QString shift = symbolName("shift.fill");
    addGroup(Item::select, {{symbolName("return")}, false, QStringLiteral("Return")});
    addGroup(Item::history, {{control, symbolName("h.square.fill")}, false, QStringLiteral("Ctrl+H")});
    onTop_ = new BarSwitch(QStringLiteral("On top"), QStringLiteral("Ctrl+T"), this);
    widgets_[Item::onTop] = onTop_;
    status_ = new QLabel(this);
    widgets_[Item::status] = status_;
    addGroup(Item::regenerate, {{control, symbolName("r.square.fill")}, false, QStringLiteral("Ctrl+R")});
    addGroup(Item::cancelOrNewChat, {{symbolName("escape")}, true, QStringLiteral("Escape")});
    addGroup(Item::copyAll,
             {{control, shift, symbolName("c.square.fill")}, false, QStringLiteral("Ctrl+Shift+C")});

    QPalette palette;
    palette.setColor(QPalette::WindowText, kPanelTheme.gray);
    status_->setPalette(palette);
    status_->setFont(textFont(kStatusFont));
    status_->setTextFormat(Qt::PlainText);
    status_->setAlignment(Qt::AlignVCenter | Qt::AlignLeft);
    // The panel is dragged by it.
    status_->setAttribute(Qt::WA_TransparentForMouseEvents);
    // Screen readers toggle it without a click.
    QObject::connect(onTop_, &QAbstractButton::toggled, this, [this](bool on) {
        if (on != controller_->model()._isOnTopBinding)
            controller_->barItemClicked(Item::onTop);
    });
    setAccessibleName(QStringLiteral("Actions"));
}

void BottomBar::addGroup(Item item, BarGroup::Description description) {
    auto* group = new BarGroup(std::move(description), this);
    QObject::connect(group, &QAbstractButton::clicked, this,
                     [this, item] { controller_->barItemClicked(item); });
    widgets_[item] = group;
}

void BottomBar::refresh() {
    const std::string_view cancel = controller_->cancelLabel();
    const std::map<Item, QString> labels{
        {Item::select, QStringLiteral("Select")},
        {Item::history, QStringLiteral("History")},
        {Item::regenerate, QStringLiteral("Re")},
        {Item::cancelOrNewChat, QString::fromUtf8(cancel.data(), static_cast<qsizetype>(cancel.size()))},
        {Item::copyAll, QStringLiteral("Copy all")},
    };
    bool changed = false;
    for (const auto& [item, label] : labels) {
        auto* group = static_cast<BarGroup*>(widgets_.at(item));
        changed = changed || group->text() != label;
        group->setLabel(label);
    }
    onTop_->setOn(controller_->model()._isOnTopBinding);
    const auto items = controller_->bottomBar();
    const QString status = QString::fromStdString(controller_->model()._status).simplified();
    changed = changed || items != items_ || status != statusText_;
    if (!changed)
        return;
    items_ = items;
    statusText_ = status;
    // Of the label, which shows less of it where there is little room.
    status_->setAccessibleName(status);
    place();
}

void BottomBar::setActive(bool active) {
    onTop_->setActive(active);
}

int BottomBar::widthOf(Item item) const {
    const QWidget* widget = widgets_.at(item);
    return (isNarrow_ && widget != onTop_ ? widget->minimumSizeHint() : widget->sizeHint()).width();
}

int BottomBar::widthOfItems(bool withStatus, int gap) const {
    int width = kWizardWidth + kBehindWizard;
    for (const Item item : items_) {
        const bool isStatus = item == Item::status;
        const int own = isStatus ? kLeastStatus : widthOf(item);
        if (isStatus && (!withStatus || statusText_.isEmpty()))
            continue;
        width += own + (item == items_.front() ? 0 : 2 * gap + 1);
    }
    return width;
}

int BottomBar::leastWidth() const {
    static const std::vector<Item> widest{Item::select,     Item::history,         Item::onTop,
                                          Item::regenerate, Item::cancelOrNewChat, Item::copyAll};
    int width = kWizardWidth + kBehindWizard - 2 * kSmallGap - 1;
    for (const Item item : widest)
        width += widgets_.at(item)->sizeHint().width() + 2 * kSmallGap + 1;
    return width;
}

void BottomBar::place() {
    isNarrow_ = false;
    isNarrow_ = widthOfItems(false, kSmallGap) > width();
    const int gap = widthOfItems(true, kGap) > width() ? kSmallGap : kGap;
    separators_.clear();
    for (const auto& [item, widget] : widgets_)
        widget->setVisible(std::find(items_.begin(), items_.end(), item) != items_.end() &&
                           (item != Item::status || !statusText_.isEmpty()));
    const QFontMetricsF metrics(status_->font());
    const int statusRoom = width() - widthOfItems(true, gap) + kLeastStatus;
    const int statusWidth = qMin(statusRoom, qCeil(metrics.horizontalAdvance(statusText_)) + 2 * kPadding);
    status_->setText(metrics.elidedText(statusText_, Qt::ElideRight, statusWidth - 2 * kPadding + 1));
    status_->setIndent(kPadding);

    const bool mirrored = layoutDirection() == Qt::RightToLeft;
    int right = width();
    for (auto item = items_.rbegin(); item != items_.rend(); ++item) {
        QWidget* widget = widgets_.at(*item);
        if (widget->isHidden())
            continue;
        const int own = widget == status_ ? statusWidth : widthOf(*item);
        if (right < width()) {
            right -= gap + 1;
            separators_.push_back(mirrored ? width() - right - 1 : right);
            right -= gap;
        }
        right -= own;
        widget->setGeometry(mirrored ? width() - right - own : right, 0, own, height());
    }
    update();
}

void BottomBar::resizeEvent(QResizeEvent*) {
    place();
}

void BottomBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRect wizard(layoutDirection() == Qt::RightToLeft ? width() - kWizardWidth : 0, 0, kWizardWidth,
                       height());
    drawPictograph(painter, wizard, Qt::AlignCenter, emojiFont(kWizardFont), QStringLiteral("🧙🏻"));
    for (const int x : separators_)
        painter.fillRect(x, (height() - kSeparatorHeight) / 2, 1, kSeparatorHeight, kPanelTheme.divider);
}

} // namespace quillmoth
