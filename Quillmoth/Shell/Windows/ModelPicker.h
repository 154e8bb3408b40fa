#pragma once

#include <QComboBox>

#include <functional>

namespace quillmoth {

/// A pop-up that also shows a value that is not among those it offers.
class ModelPicker final : public QComboBox {
public:
    ModelPicker();

    /// Called when the user has chosen.
    std::function<void(const QString& model)> onChoice;

    void setModels(const QStringList& offered, const QString& current);

    [[nodiscard]] QSize sizeHint() const override;
    /// A name that finds no room is cut.
    [[nodiscard]] QSize minimumSizeHint() const override;

    void showPopup() override;

protected:
    void paintEvent(QPaintEvent* event) override;
    /// Turning the wheel over the window scrolls it and chooses nothing.
    void wheelEvent(QWheelEvent* event) override;
};

} // namespace quillmoth
