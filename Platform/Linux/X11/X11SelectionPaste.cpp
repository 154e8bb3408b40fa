#include "Platform/Linux/X11/X11SelectionPaste.h"

#include <xkbcommon/xkbcommon-keysyms.h>

namespace quillmoth::platform {

namespace {

using Stroke = X11KeyboardEvents::Stroke;

} // namespace

PasteOutcome X11SelectionPaste::paste(const std::string& text,
                                      std::chrono::steady_clock::time_point deadline) {
    const PasteHabit habit = front_.pasteHabit(hasOtherFocus_);
    if (habit == PasteHabit::none)
        return PasteOutcome::terminal;
    if (!keys_.takesKeys())
        return PasteOutcome::impossible;
    if (text.empty()) {
        const bool isSent = habit == PasteHabit::usual && keys_.postStrokes({{.keysym = XKB_KEY_Delete}});
        return isSent ? PasteOutcome::fetched : PasteOutcome::impossible;
    }
    return pasteboard_.paste(text, front_.application(), keysFor(habit), deadline);
}

X11Pasteboard::PasteKeys X11SelectionPaste::keysFor(PasteHabit habit) {
    const auto sending = [this](std::vector<Stroke> strokes) {
        return [this, strokes = std::move(strokes)] { return keys_.postStrokes(strokes); };
    };
    switch (habit) {
    case PasteHabit::emacs: {
        X11Pasteboard::PasteKeys keys{.paste = sending({{XKB_KEY_y, true}})};
        keys.selected = front_.primarySelection().value_or("");
        if (!keys.selected.empty()) {
            keys.cut = sending({{XKB_KEY_w, true}});
            keys.undo = sending({{XKB_KEY_x, true}, {XKB_KEY_u}});
        }
        return keys;
    }
    case PasteHabit::vim:
        // To the normal mode from any other, to what was selected last, and the register of the clipboard.
        return {.paste = sending({{XKB_KEY_backslash, true},
                                  {XKB_KEY_n, true},
                                  {XKB_KEY_g},
                                  {XKB_KEY_v},
                                  {XKB_KEY_quotedbl},
                                  {XKB_KEY_plus},
                                  {XKB_KEY_p}})};
    case PasteHabit::tk:
        if (front_.primarySelection().value_or("").empty())
            break;
        return {.paste = sending({{XKB_KEY_Delete}, {XKB_KEY_v, true}})};
    case PasteHabit::usual:
    case PasteHabit::none:
        break;
    }
    return {.paste = [this] {
        keys_.postPaste();
        return true;
    }};
}

} // namespace quillmoth::platform
