#pragma once

namespace quillmoth::platform {

/// What has become of a text that another application was to paste.
enum class PasteOutcome {
    /// The application has fetched it.
    fetched,
    /// It was told to, and has not fetched it in time. What was on the clipboard comes back once it does.
    notFetched,
    /// The application has acted on the keys otherwise than expected; what it did was taken back.
    takenBack,
    /// Not tried: no keys can be sent, or what is on the clipboard could not be kept.
    impossible,
    /// Not tried: a terminal would run the lines of the text.
    terminal,
};

} // namespace quillmoth::platform
