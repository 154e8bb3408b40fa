#pragma once

#include "Quillmoth/Shell/Windows/RecorderCocoa.h"

namespace quillmoth {

/// A row with a label and the recorder of a shortcut.
class Recorder : public QWidget {
public:
    Recorder(const QString& title, KeyboardShortcuts::Name name, RecorderServices services);
};

/// The row for the shortcut that opens the panel.
class DoubleShortcut final : public Recorder {
public:
    explicit DoubleShortcut(RecorderServices services);

    [[nodiscard]] static KeyboardShortcuts::Name name() {
        return KeyboardShortcuts::Name("showFloatingPanel");
    }
};

} // namespace quillmoth
