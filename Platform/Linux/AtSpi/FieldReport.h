#pragma once

#include <string>

namespace quillmoth::platform {

/// What the application in front offers of what has the focus; nothing of what stands in it.
struct FieldReport {
    /// The toolkit's own name; empty where the application is not on the accessibility bus.
    std::string toolkit = {};
    /// It did not answer in time.
    bool isHung = false;
    bool hasFocus = false;
    bool hasText = false;
    bool isSecret = false;
    bool isTerminal = false;
    bool isEditable = false;
    /// Its text can be changed piecewise.
    bool takesEdits = false;
};

} // namespace quillmoth::platform
