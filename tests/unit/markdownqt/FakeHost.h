#pragma once

#include "MarkdownUI/Qt/MarkdownHost.h"

#include <QStringList>

#include <algorithm>
#include <chrono>
#include <functional>
#include <utility>
#include <vector>

namespace quillmoth::markdown {

/// Notes what an item asks for, and has a clock that tests turn by hand.
class FakeHost : public MarkdownHost {
public:
    void itemChanged(const QRectF& /*area*/) override {}

    void itemResized() override { ++resizes; }

    void openLink(const QString& url) override { opened.append(url); }

    void copyText(const QString& text) override { copied.append(text); }

    void copyButtonRenamed(std::size_t codeBlock) override { renamed.push_back(codeBlock); }

    void callAfter(std::chrono::milliseconds delay, std::function<void()> work) override {
        pending_.emplace_back(now_ + delay, std::move(work));
    }

    void advance(std::chrono::milliseconds time) {
        now_ += time;
        const auto due = std::stable_partition(pending_.begin(), pending_.end(),
                                               [this](const auto& entry) { return entry.first > now_; });
        const std::vector<Entry> calls(due, pending_.end());
        pending_.erase(due, pending_.end());
        for (const Entry& call : calls)
            call.second();
    }

    QStringList opened;
    QStringList copied;
    std::vector<std::size_t> renamed;
    int resizes = 0;

private:
    using Entry = std::pair<std::chrono::milliseconds, std::function<void()>>;

    std::chrono::milliseconds now_{0};
    std::vector<Entry> pending_;
};

} // namespace quillmoth::markdown
