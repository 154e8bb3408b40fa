#pragma once

#include "MarkdownUI/Style/FontProperties.h"

#include <QFont>
#include <QString>

#include <cstddef>
#include <unordered_map>

namespace quillmoth::markdown {

/// Turns Font values into Qt's fonts. Main thread.
class FontCache {
public:
    /// The desktop's fonts for texts and for code.
    FontCache();
    FontCache(const QString& textFamily, const QString& codeFamily);

    /// The reference holds as long as the cache.
    [[nodiscard]] const QFont& fontOf(const Font& font);

    /// As `fontOf`, without the letter spacing and with `spacing` pixels more behind each character.
    [[nodiscard]] QFont spacedFontOf(const Font& font, double spacing);

private:
    struct Hash {
        std::size_t operator()(const Font& font) const { return hashValue(font); }
    };

    [[nodiscard]] QFont makeQFont(const Font& font) const;

    QString textFamily_;
    QString codeFamily_;
    std::unordered_map<Font, QFont, Hash> fonts_;
};

} // namespace quillmoth::markdown
