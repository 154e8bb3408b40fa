#pragma once

#include "Foundation/Limits.h"
#include "Foundation/Text.h"
#include "Platform/Accessibility.h"

#include <optional>
#include <string>
#include <utility>

namespace quillmoth {

/// The ways to the text that is selected in the application in front.
enum class CaptureWay {
    /// The focused element tells its selected text.
    selectedText,
    /// Gathered from the focused element over the range of its text markers, as in web content.
    markerRange,
    /// The PRIMARY selection, of which the application in front is the owner.
    primary,
    /// A synthetic copy, by way of the clipboard.
    copy,
};

/// Why there is no text.
enum class CaptureObstacle {
    /// The focused element could not be read.
    noFocus,
    /// The focused element tells its text in no way.
    noText,
    /// What was asked has a selection to tell of, and nothing is in it.
    nothingSelected,
    /// The clipboard holds the same text as before the copy.
    sameAsClipboard,
};

/// What a capture has found, how, and why not.
struct CaptureResult {
    /// The way that led to the text, or the last one on which an element was asked.
    CaptureWay way = CaptureWay::selectedText;
    /// Empty where there is an obstacle, and only there.
    std::string text = {};
    std::optional<CaptureObstacle> obstacle = {};
    /// What the read of the focused element has failed with.
    platform::AXError error = platform::kAXErrorSuccess;
    /// The text is the first limits::kSelection bytes of a longer one.
    bool isCut = false;
    /// False where the user has not let this program read others. There may be a text all the same.
    bool isPermitted = true;

    friend bool operator==(const CaptureResult&, const CaptureResult&) = default;
};

/// `text` by `way`, cut where it is too long; where it is empty, `obstacle` instead.
[[nodiscard]] inline CaptureResult captured(CaptureWay way, std::string text,
                                            CaptureObstacle obstacle = CaptureObstacle::nothingSelected) {
    const std::size_t kept = prefixOfBytes(text, limits::kSelection).size();
    const bool isCut = kept < text.size();
    text.resize(kept);
    CaptureResult result{.way = way, .text = std::move(text), .isCut = isCut};
    if (result.text.empty())
        result.obstacle = obstacle;
    return result;
}

} // namespace quillmoth
