#include "Platform/Linux/X11/Selection/X11Selection.h"

#include "Platform/Linux/X11/Selection/X11SelectionReader.h"

namespace quillmoth::platform {

std::optional<std::string> selectionText(std::uint32_t selection, std::chrono::milliseconds deadline) {
    X11SelectionConnection connection;
    if (!connection.isOpen())
        return std::nullopt;
    auto text =
        X11SelectionReader(connection).text(selection, X11SelectionConnection::Clock::now() + deadline);
    // Some programs hand out the end of their string with it.
    while (text && text->ends_with('\0'))
        text->pop_back();
    return text;
}

} // namespace quillmoth::platform
