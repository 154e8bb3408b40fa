#pragma once

#include <cstddef>
#include <cstdint>

/// How much is taken of what comes from outside: servers, links, files, other programs. Sizes are in bytes.
/// Who meets a limit tells it where the user looks, and what became of the text. Limits of images are those
/// of their loader; those of time stand where the clock is read.
namespace quillmoth::limits {

inline constexpr std::size_t kKilobyte = 1024;
inline constexpr std::size_t kMegabyte = 1024 * kKilobyte;

// Answers of servers.

/// The text of one answer: ten times what the longest answers of models are. What is beyond is cut.
inline constexpr std::size_t kAnswer = 4 * kMegabyte;
/// One event of a stream, or what comes with no end of an event. It may hold a whole answer, escaped.
inline constexpr std::size_t kStreamBlock = 16 * kMegabyte;
/// The events of a stream that wait for the main thread: some hundred thousand pieces of text. A server that
/// sends faster than they are shown would take all memory.
inline constexpr std::size_t kWaitingEvents = 64 * kMegabyte;
/// An answer in one piece where the request sets no limit of its own.
inline constexpr std::size_t kWholeAnswer = 32 * kMegabyte;
/// The answer that names the topic of a conversation, a sentence, with what services put around it. Beyond
/// it the date is the topic.
inline constexpr std::size_t kTopicAnswer = 256 * kKilobyte;
/// A feed of versions, which holds one, with its notes.
inline constexpr std::size_t kFeed = 1 * kMegabyte;
/// A server's list of models: the longest that are known have some hundred, of 200 bytes to 2 KB each.
inline constexpr std::size_t kModelList = 4 * kMegabyte;
/// What the network keeps for a delegate that is behind, before the server has to wait.
inline constexpr std::size_t kWaitingData = 1 * kMegabyte;
/// The lines of one head with all that comes before it (interim answers) and behind the body (trailers), and
/// their bytes. Services send some 30 lines of 4 KB.
inline constexpr std::size_t kHeaderLines = 500;
inline constexpr std::size_t kHeaders = 256 * kKilobyte;
/// The redirects of one request, as browsers have it.
inline constexpr int kRedirects = 20;
/// The body of a redirect, beyond which reading it costs more than a new connection.
inline constexpr std::size_t kRedirectBody = 64 * kKilobyte;

// Setting an answer as Markdown. Beyond these it stays as it was written.

/// Longer texts are parsed off the main thread: 64 KB take some milliseconds.
inline constexpr std::size_t kParsedAtOnce = 64 * kKilobyte;
inline constexpr std::size_t kMarkdown = 1 * kMegabyte;
/// The steps of the parser's searches, estimated, of which some 10^9 take a second: as many are made off the
/// main thread, and on it.
inline constexpr std::uint64_t kParseSteps = 2'500'000'000;
inline constexpr std::uint64_t kParseStepsAtOnce = 100'000'000;
/// The cells that the parser may fill up short rows of tables with, of 0.9 µs and 300 bytes each.
inline constexpr std::uint64_t kTableCells = 100'000;

// What other programs hold.

/// The selection that becomes the context: more than any model reads. What is beyond is cut.
inline constexpr std::size_t kSelection = 1 * kMegabyte;
/// One form of what is on the clipboard, where pictures are large.
inline constexpr std::size_t kClipboardForm = 256 * kMegabyte;
/// The pairs of one request for several forms at once; known programs ask for less than 10.
inline constexpr std::uint32_t kClipboardPairs = 512;
/// The stretches of text selected in one element; nobody selects as many by hand.
inline constexpr std::int64_t kSelectedStretches = 256;
/// The paragraphs next to each other in which a selection is looked for.
inline constexpr std::size_t kSelectedParagraphs = 500;
/// The elements that a selection is gathered from, and how deep they lie in each other.
inline constexpr int kSelectedElements = 500;
inline constexpr int kSelectedDepth = 40;
/// The elements of a window among which the one with the focus is looked for.
inline constexpr std::size_t kWalkedElements = 300;

// Files and links.

/// Any file, to be read: more than this program writes.
inline constexpr std::int64_t kFile = 512 * std::int64_t{kMegabyte};
/// How deep values lie in each other in the settings' file.
inline constexpr int kDefaultsDepth = 64;
/// A link of the program's own.
inline constexpr std::size_t kLink = 64 * kKilobyte;
/// The presets from links that wait while the user is asked about one; a page that sends more is no friend.
inline constexpr std::size_t kWaitingPresets = 8;

} // namespace quillmoth::limits
