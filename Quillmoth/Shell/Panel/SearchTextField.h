#pragma once

#include "Quillmoth/Assistant/FloatingViewController.h"
#include "Quillmoth/Shell/Panel/GrowingTextField.h"

namespace quillmoth {

/// The field for commands and searches. Arrows, Return and Escape go to the controller first.
class SearchTextField final : public GrowingTextField {
public:
    SearchTextField(std::shared_ptr<FloatingViewController> controller, QWidget* parent);

    /// Takes the text, the placeholder and the state of the model over.
    void refresh();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    std::shared_ptr<FloatingViewController> controller_;
    QString placeholder_;
};

} // namespace quillmoth
