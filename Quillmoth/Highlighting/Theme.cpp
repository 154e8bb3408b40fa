#include "Quillmoth/Highlighting/Theme.h"

namespace quillmoth::highlighting {

// Each colour keeps a contrast of 4.5 to 1 or better on #25252A, the ground of a code block on the panel.
Theme Theme::midnight(Font withFont) {
    using markdown::Color;
    return {withFont,
            Color::fromHex(0xE4E4EC),
            {
                {TokenType::keyword, Color::fromHex(0xC4A2FF)},
                {TokenType::string, Color::fromHex(0xF2A98C)},
                {TokenType::type, Color::fromHex(0x7FD6C8)},
                {TokenType::call, Color::fromHex(0x82B8FF)},
                {TokenType::number, Color::fromHex(0xF0CF7A)},
                {TokenType::comment, Color::fromHex(0x9A9AA8)},
                {TokenType::property, Color::fromHex(0x9CD3F5)},
                {TokenType::dotAccess, Color::fromHex(0x9FDCA0)},
                {TokenType::preprocessing, Color::fromHex(0xF39AC0)},
            }};
}

} // namespace quillmoth::highlighting
