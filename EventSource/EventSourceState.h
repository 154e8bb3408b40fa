#pragma once

namespace quillmoth {

enum class EventSourceState {
    /// Asked to connect; no answer yet.
    connecting = 0,
    /// The head of an answer has arrived.
    open = 1,
    /// At first, and after a disconnect. The end of a stream does not lead here.
    closed = 2
};

} // namespace quillmoth
