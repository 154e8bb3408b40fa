#pragma once

#include "MarkdownUI/Layout/ImageSource.h"

#include <string>
#include <unordered_set>

namespace quillmoth::markdown {

/// The images of one document. One that arrives counts as loading until takeNotice, so that the text of the
/// document stays the one that is laid out.
class SteadyImages final : public ImageSource {
public:
    explicit SteadyImages(ImageSource& source) : source_(source) {} ///< outlives this

    [[nodiscard]] DefaultImageViewModel requestImage(const std::string& url) override {
        const DefaultImageViewModel status = source_.requestImage(url);
        if (!status.isShown())
            missing_.insert(url);
        else if (!missing_.empty() && missing_.contains(url))
            return {DefaultImageViewModel::State::loading, {}};
        return status;
    }

    /// True where one was asked for that had not arrived by then.
    [[nodiscard]] bool isMissingAny() const { return !missing_.empty(); }

    /// Of those that have arrived.
    void takeNotice() {
        std::erase_if(missing_,
                      [this](const std::string& url) { return source_.requestImage(url).isShown(); });
    }

    /// The document is another one.
    void forget() { missing_.clear(); }

private:
    ImageSource& source_;
    std::unordered_set<std::string> missing_;
};

} // namespace quillmoth::markdown
