#include "Quillmoth/Chat/ChatDeltaReader.h"

#include "Foundation/Text.h"

#include <algorithm>
#include <utility>

namespace quillmoth {

namespace {

constexpr std::string_view kName = "\"content\"";
constexpr std::string_view kKey = "\"content\":\"";

bool holds(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

/// Where the closing quote of the text is that starts at `position`.
std::size_t endOfText(std::string_view json, std::size_t position) {
    while (position < json.size() && json[position] != '"')
        position += json[position] == '\\' ? 2 : 1;
    return std::min(position, json.size());
}

/// What the letter behind a backslash stands for (RFC 8259, 7), or 0.
char unescaped(char letter) {
    constexpr std::string_view kLetters = "\"\\/bfnrt";
    constexpr std::string_view kMeanings = "\"\\/\b\f\n\r\t";
    const std::size_t index = kLetters.find(letter);
    return index == std::string_view::npos ? '\0' : kMeanings[index];
}

/// Puts what the inside of a JSON text stands for into `text`. False where it is damaged, and for \u.
bool decode(std::string_view json, std::string& text) {
    if (!isValidUTF8(json))
        return false;
    text.clear();
    for (std::size_t i = 0; i < json.size(); ++i) {
        char c = json[i];
        if (static_cast<unsigned char>(c) < 0x20 || c == '"')
            return false;
        if (c == '\\' && (++i == json.size() || (c = unescaped(json[i])) == '\0'))
            return false;
        text += c;
    }
    return true;
}

std::optional<std::string>* contentOf(ChatResponseDelta& delta) {
    if (!delta.choices || delta.choices->size() != 1 || !delta.choices->front().delta)
        return nullptr;
    auto& content = delta.choices->front().delta->content;
    return content ? &content : nullptr;
}

} // namespace

const ChatResponseDelta* ChatDeltaReader::read(std::string_view json) {
    if (readLikeFormer(json))
        return &delta_;
    before_.clear();
    behind_.clear();
    auto delta = readChatResponseDelta(json);
    if (!delta)
        return nullptr;
    delta_ = std::move(*delta);
    rememberForm(json);
    return &delta_;
}

bool ChatDeltaReader::readLikeFormer(std::string_view json) {
    if (before_.empty() || json.size() < before_.size() + behind_.size() || !json.starts_with(before_) ||
        !json.ends_with(behind_))
        return false;
    json.remove_prefix(before_.size());
    json.remove_suffix(behind_.size());
    auto* content = contentOf(delta_);
    return content != nullptr && decode(json, **content);
}

/// Without a backslash outside of the content, a key that is spelled "content" only once is the one that the
/// record took its content from.
void ChatDeltaReader::rememberForm(std::string_view json) {
    const std::size_t key = json.find(kKey);
    if (contentOf(delta_) == nullptr || key == std::string_view::npos)
        return;
    const std::size_t start = key + kKey.size();
    const auto before = json.substr(0, start);
    const auto behind = json.substr(endOfText(json, start));
    if (holds(before, "\\") || holds(behind, "\\") || holds(before.substr(0, key), kName) ||
        holds(behind, kName))
        return;
    before_ = before;
    behind_ = behind;
}

} // namespace quillmoth
