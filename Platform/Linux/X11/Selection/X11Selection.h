#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace quillmoth::platform {

/// The text of a selection (ICCCM 2.0, section 2), asked of its owner on a connection that is made for it.
/// Large texts come in pieces. None where the owner has no text or does not deliver all of it in time.
[[nodiscard]] std::optional<std::string> selectionText(std::uint32_t selection,
                                                       std::chrono::milliseconds deadline);

} // namespace quillmoth::platform
