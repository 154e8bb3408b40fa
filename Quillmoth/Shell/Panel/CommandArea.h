#pragma once

#include "Quillmoth/Shell/Looks/ThinScrollBar.h"
#include "Quillmoth/Shell/Panel/PanelButton.h"
#include "Quillmoth/Shell/Panel/SearchTextField.h"
#include "Quillmoth/Shell/Panel/Spinner.h"

namespace quillmoth {

/// The top of the panel: the command field with its spinner, or the way back out of the form.
class CommandArea final : public QWidget {
public:
    CommandArea(std::shared_ptr<FloatingViewController> controller, QWidget* parent);

    /// Grows with the text up to a limit, from which the field scrolls. `width` with the scroll bar's.
    [[nodiscard]] int heightForWidth(int width) const override;

    /// Whether the area is lower than that, so that the field scrolls below the limit too.
    void setCut(bool cut);

    void refresh();
    void setActive(bool active);

    [[nodiscard]] SearchTextField& field() const { return *field_; }

    [[nodiscard]] PanelButton& backButton() const { return *back_; }

    [[nodiscard]] Spinner& spinner() const { return *spinner_; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void place();

    std::shared_ptr<FloatingViewController> controller_;
    SearchTextField* field_;
    PanelButton* back_;
    Spinner* spinner_;
    ThinScrollBar* bar_;
    bool isCut_ = false;
};

} // namespace quillmoth
