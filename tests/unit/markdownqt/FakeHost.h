#pragma once

#include "MarkdownUI/Qt/MarkdownHost.h"
#include "Platform/Fake/FakeMainQueue.h"

#include <QStringList>

#include <vector>

namespace quillmoth::markdown {

/// Notes what an item asks for, and calls it on a queue that tests step by hand.
class FakeHost : public MarkdownHost {
public:
    void itemChanged(const QRectF& /*area*/) override {}

    void itemResized() override { ++resizes; }

    void openLink(const QString& url) override { opened.append(url); }

    void copyText(const QString& text) override { copied.append(text); }

    void copyButtonRenamed(std::size_t codeBlock) override { renamed.push_back(codeBlock); }

    void callAfter(std::chrono::milliseconds delay, std::function<void()> work) override {
        mainQueue.asyncAfter(delay, std::move(work));
    }

    platform::FakeMainQueue mainQueue;
    QStringList opened;
    QStringList copied;
    std::vector<std::size_t> renamed;
    int resizes = 0;
};

} // namespace quillmoth::markdown
