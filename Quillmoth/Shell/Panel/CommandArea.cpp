#include "Quillmoth/Shell/Panel/CommandArea.h"

#include "Quillmoth/Shell/Looks/Lengths.h"

#include <QScrollBar>

#include <utility>

namespace quillmoth {

namespace {

constexpr int kSpinnerLeft = 10;

} // namespace

CommandArea::CommandArea(std::shared_ptr<FloatingViewController> controller, QWidget* parent)
    : QWidget(parent), controller_(std::move(controller)), field_(new SearchTextField(controller_, this)),
      back_(new PanelButton(QStringLiteral("Back"), this)), spinner_(new Spinner(this)),
      bar_(new ThinScrollBar(ThinScrollBar::Place::panel, this)) {
    back_->hide();
    QObject::connect(back_, &QAbstractButton::clicked, this, [this] { controller_->backClicked(); });
    QScrollBar* hidden = field_->verticalScrollBar();
    QObject::connect(hidden, &QScrollBar::valueChanged, bar_, &QAbstractSlider::setValue);
    QObject::connect(bar_, &QAbstractSlider::valueChanged, hidden, &QScrollBar::setValue);
    QObject::connect(hidden, &QScrollBar::rangeChanged, this, [this] { place(); });
}

int CommandArea::heightForWidth(int width) const {
    if (controller_->model()._nonContextPrompt)
        return panel::kCommandRow;
    const int needed = field_->heightFor(width - ThinScrollBar::kWidth, panel::kLargestCommandArea);
    return qBound(panel::kCommandRow, needed, panel::kLargestCommandArea);
}

void CommandArea::refresh() {
    const bool form = controller_->model()._nonContextPrompt;
    const bool waiting = controller_->model()._isLoading && !form;
    field_->refresh();
    field_->setVisible(!form);
    back_->setVisible(form);
    if (waiting != !spinner_->isHidden()) {
        spinner_->setVisible(waiting);
        field_->setLeadingInset(waiting ? panel::kSpinnerInset : 0);
        field_->viewport()->update();
    }
}

void CommandArea::setCut(bool cut) {
    if (std::exchange(isCut_, cut) != cut)
        place();
}

void CommandArea::setActive(bool active) {
    field_->setCaretShown(active);
}

void CommandArea::resizeEvent(QResizeEvent*) {
    place();
}

void CommandArea::place() {
    const int fieldWidth = width() - ThinScrollBar::kWidth;
    field_->setGeometry(0, 0, fieldWidth, height());
    const QSize back = back_->sizeHint();
    back_->setGeometry(0, (panel::kCommandRow - back.height()) / 2, back.width(), back.height());
    spinner_->move(kSpinnerLeft, (panel::kCommandRow - panel::kSpinner) / 2);
    bar_->setGeometry(fieldWidth, 0, ThinScrollBar::kWidth, height());
    const bool scrolls = (isCut_ || height() >= panel::kLargestCommandArea) && field_->isVisible();
    const int seen = field_->viewport()->height();
    bar_->setExtent(scrolls ? seen + field_->verticalScrollBar()->maximum() : 0, seen);
}

} // namespace quillmoth
