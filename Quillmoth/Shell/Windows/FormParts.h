#pragma once

#include <QString>

#include <string>
#include <string_view>

class QGridLayout;
class QLineEdit;
class QPushButton;
class QWidget;

/// What the parts of the settings' form are made of.
namespace quillmoth {

/// A note begins under the text of its switch.
inline constexpr int kNoteIndent = 44;
inline constexpr int kNoteGap = 2;

/// Between one item of the form and the next.
inline constexpr int kItemSpacing = 14;

[[nodiscard]] QString fromUTF8(std::string_view text);

[[nodiscard]] QPushButton* makeFormButton(const QString& title);

/// `name` is what assistive technology calls it.
[[nodiscard]] QLineEdit* makeField(const QString& name);

/// Labels at the left, fields at the right. The labels of every grid have the same width.
[[nodiscard]] QGridLayout* makeGrid();

/// Adds the label of `control`.
void addLabel(QGridLayout& grid, int row, const QString& text, QWidget& control);

/// Shows the text with no signal. Leaves the cursor of a field alone that shows it already.
void showText(QLineEdit& field, const std::string& text);

} // namespace quillmoth
