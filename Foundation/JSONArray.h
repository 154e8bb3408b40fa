#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace quillmoth {

/// Walks over the entries of a JSON array, so that a large file can be parsed entry by entry. Checks what
/// stands between the entries; the entries themselves are to be checked by a parser.
class JSONArray {
public:
    /// `json` must outlive the object.
    explicit JSONArray(std::string_view json);

    /// The text of the next entry; none at the end and at the first fault.
    [[nodiscard]] std::optional<std::string_view> next();

    /// After the last entry: whether the array was closed and nothing follows it.
    [[nodiscard]] bool isComplete() const { return isComplete_; }

private:
    void skipSpace();
    [[nodiscard]] bool take(char c);
    [[nodiscard]] bool skipValue();
    [[nodiscard]] bool skipText();
    [[nodiscard]] bool skipNested();

    std::string_view json_;
    std::size_t position_ = 0;
    bool isFirst_ = true;
    bool isComplete_ = false;
};

} // namespace quillmoth
