#include "Quillmoth/Shell/Windows/OfferSection.h"

#include "Quillmoth/Shell/Controls/Labels.h"
#include "Quillmoth/Shell/Controls/Switch.h"
#include "Quillmoth/Shell/Windows/FormParts.h"

#include <QBoxLayout>

#include <utility>

namespace quillmoth {

OfferSection::OfferSection(std::vector<platform::DesktopOffer> offers) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(kItemSpacing);
    for (platform::DesktopOffer& offer : offers) {
        auto* group = new QVBoxLayout;
        group->setSpacing(kNoteGap);
        Row row{.offer = std::move(offer), .control = nullptr, .note = new ToneLabel(Tone::secondary)};
        row.control = new Switch(fromUTF8(row.offer.title));
        row.control->onChange = [this, set = row.offer.set](bool isOn) {
            set(isOn);
            refresh();
            if (onChange)
                onChange();
        };
        row.note->setContentsMargins(kNoteIndent, 0, 0, 0);
        group->addWidget(row.control);
        group->addWidget(row.note);
        column->addLayout(group);
        rows_.push_back(std::move(row));
    }
    refresh();
}

void OfferSection::refresh() {
    for (const Row& row : rows_) {
        row.control->setOn(row.offer.isOn());
        row.note->setPlainText(fromUTF8(row.offer.note()));
    }
}

} // namespace quillmoth
