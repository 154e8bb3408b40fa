#pragma once

#include "Platform/DesktopOffer.h"

#include <QWidget>

#include <vector>

namespace quillmoth {

class Switch;
class ToneLabel;

/// What the desktop can do for the program, as switches with words below them.
class OfferSection final : public QWidget {
public:
    explicit OfferSection(std::vector<platform::DesktopOffer> offers);

    /// Shows how each stands.
    void refresh();

    /// Called after one was switched.
    std::function<void()> onChange;

private:
    struct Row {
        platform::DesktopOffer offer;
        Switch* control;
        ToneLabel* note;
    };

    std::vector<Row> rows_;
};

} // namespace quillmoth
