#pragma once

#include "MarkdownUI/Qt/AccessibleDocument.h"
#include "MarkdownUI/Qt/ImageLimits.h"

#include "ItemTest.h"
#include "Pictures.h"

#include <set>
#include <string>

namespace quillmoth::markdown {

inline constexpr double kImageSide = 600;

/// An item whose images wait for the user, or load by themselves; the test plays the network.
class RemoteImages : public ItemTest {
protected:
    RemoteImages()
        : ItemTest(
              {.download = [this](const ImageRequest& request,
                                  auto finished) { asked.emplace_back(request, std::move(finished)); },
               .permissions = {.loadsAll = [this] { return loadsAll; },
                               .loadsFrom = [this](const std::string& host) { return hosts.contains(host); },
                               .allow = [this](const std::string& host) { hosts.insert(host); }},
               .clock = [this] { return now; }}) {}

    void show(const std::string& markdown) {
        item.setWidth(kImageSide);
        item.setForm(TextForm::markdown);
        item.setText(markdown);
        settle();
    }

    void settle() {
        const auto isBusy = [this] {
            const auto unanswered = static_cast<int>(asked.size());
            return services.images.loadingCount() > unanswered && unanswered < kMostImageDownloads;
        };
        do {
            (void)item.displayList({0, 0, kImageSide, kImageSide});
            while (isBusy())
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        } while (isBusy());
    }

    /// Answers the oldest download.
    void answer(const ImageAnswer& result) {
        ASSERT_FALSE(asked.empty());
        const auto finished = asked.front().second;
        asked.erase(asked.begin());
        finished(result);
        settle();
    }

    void click(const PartInfo& part) {
        const Rect frame = item.content().document()->rectanglesOf(part).front();
        const QPointF at(frame.x + frame.width / 2, frame.y + frame.height / 2);
        EXPECT_TRUE(item.isInteractiveAt(at));
        item.mousePress(at, 1, Qt::NoModifier);
        item.mouseRelease(at);
    }

    const PartInfo& image(std::size_t index = 0) { return item.parts().at(index); }

    QString noteOf(const std::string& url) {
        const auto placeholder = services.images.placeholder(url);
        return placeholder ? placeholder->note() : QStringLiteral("none");
    }

    std::vector<std::pair<ImageRequest, std::function<void(ImageAnswer)>>> asked;
    std::set<std::string> hosts;
    bool loadsAll = false;
    std::chrono::steady_clock::time_point now{std::chrono::hours(1)};
};

} // namespace quillmoth::markdown
