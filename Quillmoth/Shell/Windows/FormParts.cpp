#include "Quillmoth/Shell/Windows/FormParts.h"

#include "Quillmoth/Shell/Looks/Fonts.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>

namespace quillmoth {

namespace {

constexpr int kLabelGap = 10;
constexpr int kFieldRowSpacing = 12;

} // namespace

QString fromUTF8(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QPushButton* makeFormButton(const QString& title) {
    auto* button = new QPushButton(title);
    button->setAutoDefault(false);
    button->setFocusPolicy(Qt::TabFocus);
    button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    return button;
}

QLineEdit* makeField(const QString& name) {
    auto* field = new QLineEdit;
    field->setAccessibleName(name);
    return field;
}

QGridLayout* makeGrid() {
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(kLabelGap);
    grid->setVerticalSpacing(kFieldRowSpacing);
    grid->setColumnStretch(1, 1);
    return grid;
}

void addLabel(QGridLayout& grid, int row, const QString& text, QWidget& control) {
    auto* label = new QLabel(text);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    label->setMinimumWidth(QFontMetrics(textFont()).horizontalAdvance(QStringLiteral("OpenAI API Key:")) + 1);
    // Screen readers take the name of a picker from its label.
    label->setBuddy(&control);
    grid.addWidget(label, row, 0);
}

void showText(QLineEdit& field, const std::string& text) {
    const QString shown = fromUTF8(text);
    if (field.text() == shown)
        return;
    // What comes from the store does not go there again.
    const QSignalBlocker blocker(field);
    field.setText(shown);
}

} // namespace quillmoth
