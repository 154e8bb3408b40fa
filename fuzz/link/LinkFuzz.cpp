// Links, the whole way from what another program hands over to the preset in the list. An input that is no
// link of the program's own is taken for the data of one.

#include "Fuzz.h"

#include "Foundation/Limits.h"
#include "Foundation/Text.h"
#include "Foundation/URL.h"
#include "Platform/Fake/FakePlatform.h"
#include "Quillmoth/Application/AppDelegate.h"
#include "Quillmoth/Application/Links.h"

#include <optional>

namespace quillmoth::fuzz {

namespace {

constexpr std::string_view kHex = "0123456789ABCDEF";

struct Program {
    platform::FakePlatform platform;
    KeyboardShortcuts::Center shortcuts{platform.userDefaults, platform.hotKeyCenter};
    AppDelegate delegate{platform.platform(), shortcuts};
    PromptModel& presets = *delegate._coreAppModel->_PromptM.get();
    const std::vector<PromptData> shipped = presets.prompts();
};

std::string percentEncoded(std::string_view text) {
    std::string result;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        result += {'%', kHex[byte >> 4], kHex[byte & 0xF]};
    }
    return result;
}

std::optional<std::size_t> hexDigit(char c) {
    const std::size_t value = kHex.find(c >= 'a' && c <= 'f' ? static_cast<char>(c - 'a' + 'A') : c);
    return value < kHex.size() ? std::optional(value) : std::nullopt;
}

std::string plainlyDecoded(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto high = text[i] == '%' && i + 2 < text.size() ? hexDigit(text[i + 1]) : std::nullopt;
        const auto low = high ? hexDigit(text[i + 2]) : std::nullopt;
        result += low ? static_cast<char>(*high * 16 + *low) : text[i];
        i += low ? 2 : 0;
    }
    return result;
}

/// The value of the first item "data", by a plain search.
std::optional<std::string> plainData(const std::string& query) {
    for (const std::string_view item : split(query, '&')) {
        const std::size_t equals = item.find('=');
        if (plainlyDecoded(item.substr(0, equals)) != "data")
            continue;
        return equals == std::string_view::npos ? std::nullopt
                                                : std::optional(plainlyDecoded(item.substr(equals + 1)));
    }
    return std::nullopt;
}

void checkAgainstPlainSearch(const std::string& link, const Result<std::optional<PromptData>>& preset) {
    const auto url = URL::parse(link, URL::kAnything);
    if (!url || link.size() > limits::kLink) {
        promise(!preset, "what is no address is refused");
        return;
    }
    promise(URL::parse(url->text()) == url, "an address is written as it is read");
    const auto data = url->query ? plainData(*url->query) : std::nullopt;
    const auto expected = data ? readPromptData(*data) : Error{};
    promise(static_cast<bool>(preset) == (!data || expected), "refused where the data are no preset");
    if (preset)
        promise(preset->has_value() == data.has_value() && (!data || **preset == *expected),
                "the preset that the data say");
}

/// A preset that can be read can be handed on.
void checkHandingOn(const PromptData& preset) {
    const auto json = writeJSON(std::vector<PromptData>{preset});
    promise(static_cast<bool>(json), "what was read can be written");
    const std::string link =
        "quillmoth://x?data=" + percentEncoded(std::string_view(*json).substr(1, json->size() - 2));
    const auto again = presetOfLink(link);
    promise(link.size() > limits::kLink || (again && *again && **again == preset), "a link carries a preset");
}

void checkImport(const std::string& link, const Result<std::optional<PromptData>>& preset) {
    static Program program;
    program.presets.setPrompts(program.shipped);
    std::string refusal;
    program.delegate.onRefusedLink = [&](const std::string& reason) { refusal = reason; };
    program.delegate.handleOpenURL({link});
    program.platform.workspace.openedURLs.clear();
    const auto& presets = program.presets.prompts();
    promise(preset ? refusal.empty() : !refusal.empty(), "refused in words where there is no preset");
    promise(isValidUTF8(refusal) || !isValidUTF8(link), "the words are text");
    const bool isAdded = preset && *preset;
    promise(presets.size() == program.shipped.size() + (isAdded ? 1 : 0), "added where there is one");
    if (!isAdded)
        return;
    PromptData added = presets.back();
    promise(added.id.has_value(), "added under an id of its own");
    added.id = (*preset)->id;
    promise(added == **preset, "what was shown is what is added");
}

} // namespace

void check(std::string_view input) {
    const std::string link = ownURL(input).value_or("quillmoth://x?data=" + std::string(input));
    const auto preset = presetOfLink(link);
    promise(preset || !preset.error().description.empty(), "a refusal says why");
    checkAgainstPlainSearch(link, preset);
    checkImport(link, preset);
    if (preset && *preset)
        checkHandingOn(**preset);
    if (const auto target = resolveLink(input, ""); target && !isOpenedFromAnswer(*target))
        promise(isValidUTF8(unopenedLinkWords(*target)), "what is said of a link is text");
}

} // namespace quillmoth::fuzz
