#pragma once

#include "EventSource/Event.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quillmoth {

/// Cuts the bytes of one event stream into events. Used from one thread. Never fails: a block that is not
/// well-formed UTF-8 is dropped, and so is one that starts with a colon.
///
/// A block ends at a doubled line end. Of the three line ends the first in the order CR LF, LF, CR whose
/// double occurs anywhere in what has arrived decides, even where another one occurs earlier. What follows
/// the last doubled line end never becomes an event. The work is linear in the bytes, however they are cut
/// into chunks.
class EventStreamParser {
public:
    /// Adds a chunk of any size and returns the events that it completes, oldest first.
    std::vector<Event> append(std::string_view data);

    /// True once limits::kStreamBlock bytes have come without the end of a block. They are let go, and
    /// nothing is taken in any more.
    [[nodiscard]] bool isOverfull() const { return isOverfull_; }

private:
    /// A block ends where one of them comes twice in a row.
    static constexpr std::array<std::string_view, 3> validNewlineCharacters{"\r\n", "\n", "\r"};

    struct Cut {
        std::size_t position;
        std::size_t length;
    };

    [[nodiscard]] std::size_t findDelimiter(std::size_t index, std::size_t start);
    [[nodiscard]] Cut nextCut(std::size_t start);
    void checkSize();

    std::string dataBuffer_;
    bool isOverfull_ = false;
    // For each of the line ends: no doubled one begins in the buffer before this offset.
    std::array<std::size_t, validNewlineCharacters.size()> searched_{};
};

} // namespace quillmoth
