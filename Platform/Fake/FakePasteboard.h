#pragma once

#include "Platform/Pasteboard.h"

#include <optional>
#include <string>
#include <vector>

namespace quillmoth::platform {

/// A clipboard in memory; none stands for content that is no text.
class FakePasteboard final : public Pasteboard {
public:
    [[nodiscard]] std::optional<std::string> string() const override { return contents; }

    void clearContents() override {
        calls.emplace_back("clearContents");
        contents.reset();
    }

    void setString(const std::string& text) override {
        calls.push_back("setString " + text);
        contents = text;
    }

    std::optional<std::string> contents;
    /// The writes, in order: "clearContents", "setString " with the text.
    std::vector<std::string> calls;
};

} // namespace quillmoth::platform
