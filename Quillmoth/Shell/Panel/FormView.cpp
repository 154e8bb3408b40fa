#include "Quillmoth/Shell/Panel/FormView.h"

#include <algorithm>

namespace quillmoth {

namespace {

constexpr int kFormInset = 35;
constexpr int kTop = 22;
constexpr int kBelowText = 18;
constexpr int kFieldGap = 10;

std::vector<const ExtractedText*> blanksOf(const std::vector<ExtractedText>& pieces) {
    std::vector<const ExtractedText*> blanks;
    for (const ExtractedText& piece : pieces)
        if (piece.isBracketed)
            blanks.push_back(&piece);
    return blanks;
}

} // namespace

FormView::FormView(std::shared_ptr<FloatingViewController> controller, QWidget* parent)
    : QWidget(parent), controller_(std::move(controller)), text_(new ChipText(this)) {
    setAccessibleName(QStringLiteral("Form"));
}

bool FormView::isOfThisForm(const std::vector<ExtractedText>& pieces) const {
    const auto blanks = blanksOf(pieces);
    return shown_ && std::equal(blanks.begin(), blanks.end(), fields_.begin(), fields_.end(),
                                [](const ExtractedText* blank, const BracketField* field) {
                                    return blank->id == field->id();
                                });
}

bool FormView::refresh() {
    const std::vector<ExtractedText>& pieces = controller_->model()._extractedTexts;
    const int before = heightForWidth(width());
    text_->setFontSize(controller_->_fontSize);
    text_->setPieces(pieces);
    const bool isNew = !isOfThisForm(pieces);
    if (isNew)
        makeFields(pieces);
    else
        updateFields(pieces);
    // The height is often that of the form before, and then no resizing follows.
    if (isNew)
        place();
    return isNew || heightForWidth(width()) != before;
}

void FormView::makeFields(const std::vector<ExtractedText>& pieces) {
    dismiss();
    shown_ = true;
    for (const ExtractedText* blank : blanksOf(pieces)) {
        auto* field = new BracketField(blank->id, QString::fromStdString(blank->text), this);
        const std::int64_t id = blank->id;
        field->onEdited = [this, id](const QString& text) {
            controller_->formFieldEdited(id, text.toStdString());
        };
        field->onReturn = [this, id] { controller_->returnInFormField(id); };
        field->setCaretShown(active_);
        field->show();
        fields_.push_back(field);
    }
    // Each one goes to the front of the order, which so ends up from top to bottom.
    for (auto field = fields_.rbegin(); field != fields_.rend(); ++field)
        controller_->formFieldAppeared((*field)->id());
    controller_->formAppeared();
}

void FormView::updateFields(const std::vector<ExtractedText>& pieces) {
    const auto blanks = blanksOf(pieces);
    for (std::size_t index = 0; index < fields_.size(); ++index)
        fields_[index]->setText(QString::fromStdString(blanks[index]->text));
}

void FormView::dismiss() {
    shown_ = false;
    // A field may be handling the key that ends the form.
    for (BracketField* field : fields_) {
        field->hide();
        field->deleteLater();
    }
    fields_.clear();
}

void FormView::setActive(bool active) {
    active_ = active;
    for (BracketField* field : fields_)
        field->setCaretShown(active);
}

BracketField* FormView::fieldFor(std::int64_t id) const {
    const auto found = std::find_if(fields_.begin(), fields_.end(),
                                    [id](const BracketField* field) { return field->id() == id; });
    return found == fields_.end() ? nullptr : *found;
}

int FormView::heightForWidth(int width) const {
    const int text = text_->heightForWidth(width - 2 * kFormInset);
    const int count = static_cast<int>(fields_.size());
    return kTop + text + kBelowText + count * (BracketField::kHeight + kFieldGap) -
           (count > 0 ? kFieldGap : 0) + kTop;
}

void FormView::resizeEvent(QResizeEvent*) {
    place();
}

void FormView::place() {
    const int inside = width() - 2 * kFormInset;
    const int textHeight = text_->heightForWidth(inside);
    text_->setGeometry(kFormInset, kTop, inside, textHeight);
    int top = kTop + textHeight + kBelowText;
    for (BracketField* field : fields_) {
        field->setGeometry(kFormInset - BracketField::kOutside, top - BracketField::kOutside,
                           inside + 2 * BracketField::kOutside,
                           BracketField::kHeight + 2 * BracketField::kOutside);
        top += BracketField::kHeight + kFieldGap;
    }
}

} // namespace quillmoth
