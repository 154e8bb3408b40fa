#include "Quillmoth/Shell/Panel/Spinner.h"

#include "Foundation/Qt/Transition.h"
#include "Quillmoth/Shell/Looks/Lengths.h"
#include "Quillmoth/Shell/Looks/Palette.h"

#include <QPainter>

namespace quillmoth {

namespace {

constexpr double kMillisecondsATurn = 900;
constexpr int kStepsWithoutAnimation = 12;
constexpr int kFrameMilliseconds = 16;
constexpr double kStroke = 2.6 * 0.7;
constexpr double kDegreesToUnits = 16;

} // namespace

Spinner::Spinner(QWidget* parent) : QWidget(parent) {
    resize(panel::kSpinner, panel::kSpinner);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAccessibleName(QStringLiteral("Waiting for the answer"));
    QObject::connect(&timer_, &QTimer::timeout, this, [this] { advance(); });
    hide();
}

void Spinner::setAngle(double angle) {
    angle_ = angle;
    update();
}

void Spinner::advance() {
    const double turned = angle_ + 360.0 * timer_.interval() / kMillisecondsATurn;
    setAngle(turned >= 360 ? turned - 360 : turned);
}

void Spinner::showEvent(QShowEvent*) {
    timer_.start(animates(this) ? kFrameMilliseconds
                                : static_cast<int>(kMillisecondsATurn / kStepsWithoutAnimation));
}

void Spinner::hideEvent(QHideEvent*) {
    timer_.stop();
}

void Spinner::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF ring = QRectF(rect()).adjusted(kStroke / 2, kStroke / 2, -kStroke / 2, -kStroke / 2);
    painter.setPen(QPen(kPanelTheme.spinnerTrack, kStroke));
    painter.drawEllipse(ring);
    painter.setPen(QPen(kPanelTheme.white, kStroke, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(ring, qRound((90 - angle_) * kDegreesToUnits), qRound(-90 * kDegreesToUnits));
}

} // namespace quillmoth
