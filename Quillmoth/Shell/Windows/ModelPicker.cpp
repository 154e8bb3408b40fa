#include "Quillmoth/Shell/Windows/ModelPicker.h"

#include "Quillmoth/Shell/Looks/Palette.h"
#include "Quillmoth/Shell/Looks/ThinScrollBar.h"

#include <QAbstractItemView>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QStylePainter>
#include <QWheelEvent>

namespace quillmoth {

namespace {

constexpr int kLeastPicker = 100;

} // namespace

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

} // namespace quillmoth
