#pragma once

#include "Quillmoth/Settings/ImageSettings.h"

#include <QWidget>

class QPushButton;

namespace quillmoth {

class Switch;
class ToneLabel;

/// The part of the settings for the images in answers: whether they load by themselves, and the hosts whose
/// images do.
class ImageSection final : public QWidget {
public:
    /// The store outlives it.
    explicit ImageSection(platform::UserDefaults& userDefaults);

    /// Shows what the settings hold.
    void refresh();

private:
    ImageSettings settings_;
    Switch* loadSwitch_;
    ToneLabel* hosts_;
    QPushButton* forgetButton_;
};

} // namespace quillmoth
