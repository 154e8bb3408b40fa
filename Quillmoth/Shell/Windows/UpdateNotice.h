#pragma once

#include "Quillmoth/Settings/Updater.h"

#include <QPalette>
#include <QString>

#include <functional>

class QMessageBox;
class QWidget;

namespace quillmoth {

/// What the notice of a newer version says and does.
struct UpdateNotice {
    UpdateFeed feed;
    /// "1.2 build 34"
    QString presentVersion;
    std::function<void(const std::string& url)> openURL;
};

/// Shows the notice as a sheet on the window of `parent`. Returns at once. Main thread.
void showUpdateSheet(QWidget& parent, const UpdateNotice& notice);

/// Shows the notice, which nobody has asked for, in a window of its own that leaves the keyboard where it is.
/// The window deletes itself when it is closed.
QMessageBox* showUpdateWindow(const QPalette& palette, const UpdateNotice& notice);

} // namespace quillmoth
