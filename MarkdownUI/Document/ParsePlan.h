#pragma once

#include <cstdint>
#include <string_view>

namespace quillmoth::markdown {

/// Where a text may be parsed.
enum class ParsePlan : std::uint8_t {
    /// On any thread: it takes some milliseconds.
    atOnce,
    /// Not on the main thread: it may take some seconds.
    later,
    /// Nowhere: it is longer than limits::kMarkdown, or may take the parser minutes, or all memory.
    never,
};

/// How the parser's time grows with the text depends on what is in it: each bracket, tag or address makes it
/// search the paragraph, each line is compared with the nesting that is open, and the short rows of a table
/// are filled up. This estimates that from one look at the text, on the high side. Any thread.
[[nodiscard]] ParsePlan parsePlanOf(std::string_view text);

} // namespace quillmoth::markdown
