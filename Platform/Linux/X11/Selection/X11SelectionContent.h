#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>
#include <xcb/xproto.h>

namespace quillmoth::platform {

/// One of the forms in which the owner of a selection offers it (ICCCM 2.0, section 2.2).
struct SelectionFormat {
    xcb_atom_t target = XCB_ATOM_NONE;
    xcb_atom_t type = XCB_ATOM_NONE;
    /// Bits of one item: 8, 16 or 32.
    std::uint8_t itemBits = 8;
    std::string bytes;
};

/// What a selection holds. The various encodings of text are kept as one text and made from it again.
struct SelectionContent {
    /// UTF-8; none where the selection is no text.
    std::optional<std::string> text;
    std::vector<SelectionFormat> others;
    /// False where something of worth could not be read, because of its size or of a slow owner.
    bool isComplete = true;

    [[nodiscard]] bool empty() const { return !text && others.empty(); }
};

using SelectionContentRef = std::shared_ptr<const SelectionContent>;

} // namespace quillmoth::platform
