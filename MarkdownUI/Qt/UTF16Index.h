#pragma once

#include <QString>

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace quillmoth::markdown {

/// A UTF-8 text as a QString, with the way from byte offsets to UTF-16 offsets and back. ASCII text, the
/// common case, needs no table. Offsets inside a character are moved to its start, those beyond the end to
/// the end.
class UTF16Index {
public:
    UTF16Index() = default;
    explicit UTF16Index(std::string_view utf8);

    [[nodiscard]] const QString& text() const { return text_; }

    [[nodiscard]] int utf16Of(std::size_t byte) const;
    [[nodiscard]] std::size_t byteOf(int utf16) const;

private:
    QString text_;
    std::vector<std::uint32_t> bytes_; ///< for each UTF-16 offset its byte, the end included; empty for ASCII
};

} // namespace quillmoth::markdown
