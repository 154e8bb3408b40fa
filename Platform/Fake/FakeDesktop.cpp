#include "Platform/Fake/FakeDesktop.h"

#include "Foundation/FatalError.h"

#include <utility>

namespace quillmoth::platform {

namespace {

constexpr std::string_view kResourceFolder = "file:///bundle/";

constexpr const char* kPresets = R"([
{"id":"00000000-0000-4000-8000-0000000000A1","emoji":"✂️","name":"Shorten","prompt":"Shorten: {selected text}",
 "promptType":"context"},
{"id":"00000000-0000-4000-8000-0000000000A2","emoji":"📣","name":"Call to action",
 "prompt":"Write a call to action for [product] that asks for [action].","systemPrompt":"You write.",
 "promptType":"nonContext"},
{"id":"00000000-0000-4000-8000-0000000000A3","emoji":"💡","name":"Brainstorm ideas",
 "prompt":"Give me ten ideas.","systemPrompt":"You think.","promptType":"nonContext"}
])";

} // namespace

std::optional<std::string> FakeKeyboardLayout::translate(std::uint16_t keyCode) {
    const auto found = characters.find(keyCode);
    return found == characters.end() ? std::nullopt : std::optional(found->second);
}

FakeBundle::FakeBundle() : resources{{"prompt.json", kPresets}} {}

std::optional<std::string> FakeBundle::urlForResource(std::string_view filename) const {
    if (!resources.contains(filename))
        return std::nullopt;
    return std::string(kResourceFolder).append(filename);
}

Result<std::string> FakeBundle::read(const std::string& resourceURL) const {
    if (!resourceURL.starts_with(kResourceFolder))
        return Error{resourceURL + " is no resource."};
    const std::string filename = resourceURL.substr(kResourceFolder.size());
    const auto found = resources.find(filename);
    if (found == resources.end() || unreadable.contains(filename))
        return Error{filename + " cannot be read."};
    return found->second;
}

std::optional<std::string> FakeBundle::info(std::string_view key) const {
    const auto found = infos.find(key);
    return found == infos.end() ? std::nullopt : std::optional(found->second);
}

void FakeStatusItems::show(const std::string& shownSymbol, const std::string& accessibilityDescription,
                           std::vector<MenuItem> shownMenu) {
    ++showCount;
    symbol = shownSymbol;
    description = accessibilityDescription;
    menu = std::move(shownMenu);
}

void FakeStatusItems::choose(const std::string& title) const {
    for (const MenuItem& item : menu) {
        if (item.title == title && item.action) {
            // A copy: the action may show another menu.
            const auto action = item.action;
            action();
            return;
        }
    }
    fatalError("The menu has no item \"" + title + "\".");
}

} // namespace quillmoth::platform
