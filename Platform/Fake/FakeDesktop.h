#pragma once

#include "Foundation/Subscription.h"
#include "Platform/Application.h"
#include "Platform/Bundle.h"
#include "Platform/KeyboardLayout.h"
#include "Platform/StatusItem.h"
#include "Platform/Workspace.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace quillmoth::platform {

/// The layout is this table; an empty one is a layout that is not known.
class FakeKeyboardLayout final : public KeyboardLayout {
public:
    [[nodiscard]] std::optional<std::string> translate(std::uint16_t keyCode) override;

    std::map<std::uint16_t, std::string> characters;
};

class FakeWorkspace final : public Workspace {
public:
    [[nodiscard]] std::optional<std::int64_t> frontmostApplicationProcessIdentifier() override {
        return frontmost;
    }

    [[nodiscard]] std::string frontmostApplicationName() override { return name; }

    [[nodiscard]] std::optional<std::string> frontmostPrimarySelection() override { return primary; }

    [[nodiscard]] std::optional<std::string> selectionInsteadOfCopy() override { return terminalSelection; }

    bool openURL(const std::string& url) override {
        openedURLs.push_back(url);
        return takesURLs;
    }

    std::optional<std::int64_t> frontmost;
    std::string name;
    std::optional<std::string> primary;
    std::optional<std::string> terminalSelection;
    bool takesURLs = true;
    std::vector<std::string> openedURLs;
};

/// Resources by name. Serves a "prompt.json" with three presets as long as the test puts no other one there.
class FakeBundle final : public Bundle {
public:
    FakeBundle();

    [[nodiscard]] std::optional<std::string> urlForResource(std::string_view filename) const override;
    [[nodiscard]] Result<std::string> read(const std::string& resourceURL) const override;
    [[nodiscard]] std::optional<std::string> info(std::string_view key) const override;

    std::map<std::string, std::string, std::less<>> resources;
    /// Names of resources that are there and cannot be read.
    std::set<std::string, std::less<>> unreadable;
    std::map<std::string, std::string, std::less<>> infos;
};

class FakeStatusItems final : public StatusItems {
public:
    void show(const std::string& shownSymbol, const std::string& accessibilityDescription,
              std::vector<MenuItem> shownMenu) override;

    /// Chooses the menu item of this title; a fatal fault where there is none.
    void choose(const std::string& title) const;

    std::size_t showCount = 0;
    std::string symbol;
    std::string description;
    std::vector<MenuItem> menu;
};

class FakeApplication final : public Application {
public:
    void closeFirstWindow() override { calls.emplace_back("closeFirstWindow"); }

    void activateIgnoringOtherApps() override { calls.emplace_back("activateIgnoringOtherApps"); }

    void showSettingsWindow() override { calls.emplace_back("showSettingsWindow"); }

    void terminate() override { calls.emplace_back("terminate"); }

    std::vector<std::string> calls;
};

} // namespace quillmoth::platform
