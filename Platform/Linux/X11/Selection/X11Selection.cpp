#include "Platform/Linux/X11/Selection/X11Selection.h"

#include "Platform/Linux/X11/Selection/X11SelectionReader.h"

namespace quillmoth::platform {

std::optional<std::string> selectionText(std::uint32_t selection, std::chrono::milliseconds deadline) {
    X11SelectionConnection connection;
    if (!connection.isOpen())
        return std::nullopt;
    return X11SelectionReader(connection).text(selection, X11SelectionConnection::Clock::now() + deadline);
}

} // namespace quillmoth::platform
