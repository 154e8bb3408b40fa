#pragma once

#include <cstdint>
#include <string_view>

namespace quillmoth::highlighting {

enum class KeywordClass : std::uint8_t {
    none,
    reserved,   ///< a keyword wherever it stands alone
    literal,    ///< reserved, and a value: never an argument label
    contextual, ///< a keyword only where a name, a brace or a bracket follows
};

/// How the grammar reads `word`.
[[nodiscard]] KeywordClass keywordClass(std::string_view word);

} // namespace quillmoth::highlighting
