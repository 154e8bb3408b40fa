#pragma once

#include "Quillmoth/Assistant/FloatingViewController.h"
#include "Quillmoth/Shell/Panel/BracketField.h"
#include "Quillmoth/Shell/Panel/ChipText.h"

#include <vector>

namespace quillmoth {

/// The form for the blanks of a preset: the text with its chips, and a field for each blank.
class FormView final : public QWidget {
public:
    FormView(std::shared_ptr<FloatingViewController> controller, QWidget* parent);

    /// Makes the fields where the form is new, and takes the texts of the model over. True where the height
    /// may have changed.
    bool refresh();
    /// The form is not shown any more: the next one is a new one.
    void dismiss();

    void setActive(bool active);

    [[nodiscard]] int heightForWidth(int width) const override;

    /// The field of a blank; none where there is no such blank.
    [[nodiscard]] BracketField* fieldFor(std::int64_t id) const;

    [[nodiscard]] const std::vector<BracketField*>& fields() const { return fields_; }

    [[nodiscard]] ChipText& text() const { return *text_; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    [[nodiscard]] bool isOfThisForm(const std::vector<ExtractedText>& pieces) const;
    void makeFields(const std::vector<ExtractedText>& pieces);
    void updateFields(const std::vector<ExtractedText>& pieces);
    void place();

    std::shared_ptr<FloatingViewController> controller_;
    ChipText* text_;
    std::vector<BracketField*> fields_;
    bool shown_ = false;
    bool active_ = true;
};

} // namespace quillmoth
