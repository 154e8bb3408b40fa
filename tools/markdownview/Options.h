#pragma once

#include <QString>

class QCoreApplication;

namespace quillmoth::markdownview {

struct Options {
    QString file;
    QString pictureFile;   ///< write a picture here instead of opening a window
    QString galleryFolder; ///< write the pictures of a gallery there instead of opening a window
    QString textFamily;    ///< the desktop's where empty
    QString codeFamily;
    double width = 592;
    double fontSize = 16;
    double scale = 1;
    bool isDark = true;
    bool dumps = false; ///< print the display list instead of opening a window
};

/// Reads the command line; prints what is wrong with it, or the help, and ends the process.
[[nodiscard]] Options readOptions(const QCoreApplication& application);

} // namespace quillmoth::markdownview
