#include "Quillmoth/Shell/Panel/ScrollView.h"

#include <QWheelEvent>

namespace quillmoth {

namespace {

constexpr double kPixelsPerNotch = 60;
constexpr double kAnglePerNotch = 120;

} // namespace

ScrollView::ScrollView(QWidget& content, QWidget* parent)
    : QWidget(parent), content_(content), bar_(new ThinScrollBar(ThinScrollBar::Place::panel, this)) {
    content.setParent(this);
    bar_->raise();
    QObject::connect(bar_, &QAbstractSlider::valueChanged, this, [this] {
        if (onScrolled)
            onScrolled();
        placeContent();
    });
}

void ScrollView::contentChanged() {
    const int width = this->width() - ThinScrollBar::kWidth;
    contentHeight_ = content_.heightForWidth(width);
    bar_->setExtent(contentHeight_, height());
    placeContent();
}

void ScrollView::placeContent() {
    content_.setGeometry(0, -bar_->value(), width() - ThinScrollBar::kWidth, qMax(contentHeight_, height()));
}

void ScrollView::scrollTo(int position) {
    bar_->setValue(position);
}

void ScrollView::reveal(int top, int bottom) {
    if (top < bar_->value() || bottom - top > height())
        scrollTo(top);
    else if (bottom > bar_->value() + height())
        scrollTo(bottom - height());
}

void ScrollView::scrollByPages(int pages) {
    constexpr int kKept = 40;
    bar_->setValue(bar_->value() + pages * qMax(kKept, height() - kKept));
}

void ScrollView::resizeEvent(QResizeEvent*) {
    bar_->setGeometry(width() - ThinScrollBar::kWidth, 0, ThinScrollBar::kWidth, height());
    contentChanged();
}

void ScrollView::wheelEvent(QWheelEvent* event) {
    const double pixels = event->pixelDelta().isNull()
                              ? event->angleDelta().y() * kPixelsPerNotch / kAnglePerNotch
                              : event->pixelDelta().y();
    wheelRest_ += pixels;
    const int whole = static_cast<int>(wheelRest_);
    wheelRest_ -= whole;
    bar_->setValue(bar_->value() - whole);
    event->accept();
}

} // namespace quillmoth
