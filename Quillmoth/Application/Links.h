#pragma once

#include "Foundation/Result.h"
#include "Quillmoth/Prompts/PromptData.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// What may come of links, which others write. Any thread.
namespace quillmoth {

/// True for a link of an answer that may be opened: http and https, mailto, and the program's own.
[[nodiscard]] bool isOpenedFromAnswer(std::string_view url);

/// What to say of a link that is not.
[[nodiscard]] std::string unopenedLinkWords(std::string_view url);

/// The preset that a URL of the program's own carries in its first query item "data"; none where there is no
/// such item with a value. Fails, in words for the user, where that is no preset or the URL is longer than
/// limits::kLink.
[[nodiscard]] Result<std::optional<PromptData>> presetOfLink(const std::string& url);

} // namespace quillmoth
