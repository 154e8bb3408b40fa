#include "tests/desktop/support/ProgramTest.h"

#include "tests/desktop/support/FailureScreenshots.h"

#include <algorithm>
#include <cstdio>
#include <linux/input-event-codes.h>
#include <memory>
#include <stdexcept>
#include <xcb/xcb.h>

namespace quillmoth::test {

namespace {

std::unique_ptr<ProgramSession>& sharedSession() {
    static std::unique_ptr<ProgramSession> made;
    return made;
}

/// Ends the desktop with the run of all tests.
class SessionEnd : public testing::Environment {
public:
    void TearDown() override { sharedSession().reset(); }
};

} // namespace

bool soon(const std::function<bool()>& condition) {
    // What fails after a failure need not be waited for.
    return holdsWithin(std::chrono::seconds(testing::Test::HasFailure() ? 1 : 20), condition);
}

bool ProgramTest::startSession(int height) {
    if (sharedSession())
        return false;
    sharedSession() = std::make_unique<ProgramSession>("openbox", height);
    testing::AddGlobalTestEnvironment(new SessionEnd);
    return true;
}

ProgramSession& ProgramTest::session() {
    return *sharedSession();
}

void ProgramTest::TearDown() {
    keepScreenshotOfFailure(desktop());
    if (HasFailure())
        std::printf("on screen:\n%soutput:\n%s", session().isRunning() ? shown().described().c_str() : "",
                    session().output().c_str());
}

bool ProgramTest::eventually(const std::string& what, const std::function<bool()>& condition) {
    const bool holds = soon(condition);
    EXPECT_TRUE(holds) << what;
    return holds;
}

AccessibleElement ProgramTest::await(std::string_view role, std::string_view name) {
    std::optional<AccessibleElement> found;
    if (!soon([&] {
            found = shown().find(role, name);
            return found.has_value();
        }))
        throw std::runtime_error("There is no " + std::string(role) + " \"" + std::string(name) + '"');
    return *found;
}

bool ProgramTest::goes(std::string_view role, std::string_view name) {
    return soon([&] { return !has(role, name); });
}

bool ProgramTest::isFocused(std::string_view object) {
    return soon([&] {
        const auto focused = shown().focused();
        return !focused.empty() && focused.back().starts_with(object);
    });
}

void ProgramTest::pointAt(const DesktopRectangle& place) {
    input().movePointer(place.x + place.width / 2, place.y + place.height / 2);
}

void ProgramTest::click(const AccessibleElement& element, int clicks) {
    hover(element);
    for (int count = 0; count < clicks; ++count)
        input().clickButton(1);
}

void ProgramTest::drag(int fromX, int fromY, int byX, int byY) {
    constexpr int kSteps = 8;
    input().movePointer(fromX, fromY);
    input().pressButton(1);
    for (int step = 1; step <= kSteps; ++step)
        input().movePointer(fromX + byX * step / kSteps, fromY + byY * step / kSteps);
    input().releaseButton(1);
}

void ProgramTest::openPanel() {
    pressHotKey();
    ASSERT_TRUE(eventually("the hot key opens the panel", isOpen));
    // The keyboard arrives a moment behind the picture.
    ASSERT_TRUE(isFocused("text Command"));
}

void ProgramTest::awaitHotKey() {
    for (const bool opens : {true, false}) {
        EXPECT_EQ(session().run({"--toggle"}).exitCode, 0);
        eventually("the program has begun", [&] { return isOpen() == opens; });
    }
}

bool ProgramTest::closes() {
    return soon([] { return !isOpen(); });
}

std::string ProgramTest::command() {
    const auto field = shown().find("text", "Command");
    return field ? field->text() : "";
}

std::string ProgramTest::clipboard() {
    return runChild({"xclip", "-selection", "clipboard", "-o"}, std::chrono::seconds(2)).output;
}

bool ProgramTest::hasColor(const DesktopRectangle& place, std::uint32_t color) {
    const auto cookie =
        xcb_get_image(desktop().connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, desktop().rootWindow(),
                      static_cast<std::int16_t>(place.x), static_cast<std::int16_t>(place.y),
                      static_cast<std::uint16_t>(place.width), static_cast<std::uint16_t>(place.height), ~0U);
    const auto image = ownedReply(xcb_get_image_reply(desktop().connection(), cookie, nullptr));
    if (!image)
        return false;
    const auto* pixels = reinterpret_cast<const std::uint32_t*>(xcb_get_image_data(image.get()));
    return std::any_of(pixels, pixels + xcb_get_image_data_length(image.get()) / 4,
                       [&](std::uint32_t pixel) { return (pixel & 0xFFFFFF) == color; });
}

} // namespace quillmoth::test
