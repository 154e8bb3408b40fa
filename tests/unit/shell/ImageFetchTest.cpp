#include "Quillmoth/Shell/Panel/ImageFetch.h"

#include "MarkdownUI/Qt/ImageLimits.h"
#include "Platform/Fake/FakeOperationQueues.h"
#include "Platform/Fake/FakeURLSessions.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace quillmoth {
namespace {

using markdown::ImageProblem;
using markdown::ImageReach;

class ImageFetchTest : public testing::Test {
protected:
    ImageFetchTest() { queues.setRunsInline(true); }

    platform::FakeDataTask& fetch(ImageReach reach) {
        answer.reset();
        download({"https://x.org/a", reach},
                 [this](markdown::ImageAnswer result) { answer = std::move(result); });
        return sessions.lastSession().lastTask();
    }

    platform::FakeOperationQueues queues;
    platform::FakeURLSessions sessions;
    markdown::ImageDownload download = makeImageDownload(sessions, queues);
    std::optional<markdown::ImageAnswer> answer;
};

TEST_F(ImageFetchTest, ends_a_transfer_that_grows_too_large) {
    const auto limit = static_cast<std::size_t>(markdown::kMostImageBytes);
    auto& whole = fetch(ImageReach::asked);
    whole.deliverStatus(200);
    whole.deliverData(std::string(limit - 1, 'x'));
    whole.deliverData("x");
    EXPECT_FALSE(whole.isCancelled());
    whole.complete();
    EXPECT_EQ(answer->data.size(), markdown::kMostImageBytes);
    EXPECT_EQ(answer->problem, ImageProblem::none);

    auto& grown = fetch(ImageReach::asked);
    grown.deliverStatus(200);
    grown.deliverData(std::string(limit, 'x'));
    grown.deliverData("x");
    EXPECT_TRUE(grown.isCancelled());
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->problem, ImageProblem::tooManyBytes);
    EXPECT_TRUE(answer->data.isEmpty());

    auto& announced = fetch(ImageReach::asked);
    announced.deliverResponse({.url = "https://x.org/a",
                               .statusCode = 200,
                               .headers = {{"content-length", std::to_string(limit + 1)}}});
    EXPECT_EQ(announced.disposition(), platform::URLSessionDelegate::ResponseDisposition::cancel);
    announced.cancel();
    EXPECT_EQ(answer->problem, ImageProblem::tooManyBytes);

    auto& missing = fetch(ImageReach::asked);
    missing.deliverStatus(404);
    missing.cancel();
    EXPECT_EQ(answer->problem, ImageProblem::unreachable);
}

TEST_F(ImageFetchTest, stays_within_its_reach) {
    const auto redirect = [this](ImageReach reach, const std::string& to) {
        auto& task = fetch(reach);
        EXPECT_EQ(task.request().publicAddressesOnly, reach != ImageReach::asked);
        platform::URLRequest next = task.request();
        next.url = to;
        task.redirect({.url = "https://x.org/a", .statusCode = 302, .headers = {}}, next);
        return task.redirectAnswers().at(0);
    };
    EXPECT_FALSE(redirect(ImageReach::asked, "https://X.org:8080/b")->publicAddressesOnly);
    EXPECT_TRUE(redirect(ImageReach::asked, "http://192.168.1.1/")->publicAddressesOnly);
    EXPECT_TRUE(redirect(ImageReach::publicNetwork, "https://y.org/b")->publicAddressesOnly);
    EXPECT_TRUE(redirect(ImageReach::sameHost, "https://x.org/b").has_value());
    EXPECT_FALSE(redirect(ImageReach::sameHost, "https://x.org.y.org/b").has_value());
    sessions.lastSession().lastTask().deliverStatus(302);
    sessions.lastSession().lastTask().cancel();
    EXPECT_EQ(answer->problem, ImageProblem::elsewhere);

    auto& task = fetch(ImageReach::sameHost);
    task.complete(platform::URLError{platform::URLError::Code::privateAddress, ""});
    EXPECT_EQ(answer->problem, ImageProblem::privateNetwork);
}

} // namespace
} // namespace quillmoth
