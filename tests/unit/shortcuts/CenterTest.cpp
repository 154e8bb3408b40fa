#include "KeyboardShortcuts/Center.h"

#include "Platform/Fake/FakeHotKeyCenter.h"
#include "Platform/Fake/FakeUserDefaults.h"

#include <gtest/gtest.h>

namespace quillmoth::KeyboardShortcuts::test {

namespace {

constexpr const char* kStoreKey = "KeyboardShortcuts_showFloatingPanel";
const Shortcut kOptionSpace(Key::space, kFlagOption);
const Shortcut kCommandK(Key::k, kFlagCommand);

class CenterTest : public testing::Test {
protected:
    Center::Action noting(std::string text) {
        return [this, text = std::move(text)] { log.push_back(text); };
    }

    bool press(const Shortcut& keys) {
        return system.press(std::uint32_t(keys.carbonKeyCode), std::uint32_t(keys.carbonModifiers)) == 0;
    }

    bool release(const Shortcut& keys) {
        return system.release(std::uint32_t(keys.carbonKeyCode), std::uint32_t(keys.carbonModifiers)) == 0;
    }

    platform::FakeHotKeyCenter system;
    platform::FakeUserDefaults defaults;
    Center center{defaults, system};
    std::vector<Name> changes;
    Subscription changed =
        center.shortcutByNameDidChange([this](const Name& name) { changes.push_back(name); });
    std::vector<std::string> log;
    const Name plain{"showFloatingPanel"};
};

using Log = std::vector<std::string>;

} // namespace

TEST_F(CenterTest, ADefaultIsWrittenOnlyWhereTheStoreHasNothingAtAll) {
    const std::tuple<std::optional<platform::DefaultsValue>, std::optional<Shortcut>, bool> cases[] = {
        {std::nullopt, kOptionSpace, true},
        {platform::DefaultsValue(false), std::nullopt, false},
        {platform::DefaultsValue(std::string("garbage")), std::nullopt, false},
        {platform::DefaultsValue(kCommandK.toJSON()), kCommandK, false},
    };
    for (const auto& [stored, expected, written] : cases) {
        defaults.remove(kStoreKey);
        changes.clear();
        if (stored)
            defaults.set(kStoreKey, *stored);
        const Name name("showFloatingPanel", kOptionSpace, center);
        EXPECT_EQ(center.getShortcut(name), expected);
        EXPECT_EQ(changes.size(), written ? 1U : 0U);
    }
    EXPECT_EQ(system.requests.size(), 1U);
}

TEST_F(CenterTest, AClearThroughANameWithADefaultIsRememberedAndThroughAPlainOneIsNot) {
    center.setShortcut(std::nullopt, plain);
    EXPECT_TRUE(changes.empty()) << "there was nothing to clear";
    const Name withDefault("showFloatingPanel", kOptionSpace, center);
    EXPECT_EQ(withDefault, plain);
    changes.clear();
    center.setShortcut(std::nullopt, withDefault);
    EXPECT_EQ(defaults.object(kStoreKey), platform::DefaultsValue(false));
    const Name laterStart("showFloatingPanel", kOptionSpace, center);
    EXPECT_EQ(center.getShortcut(laterStart), std::nullopt);

    center.setShortcut(kCommandK, plain);
    center.setShortcut(std::nullopt, plain);
    EXPECT_EQ(changes, std::vector(3, plain));
    EXPECT_EQ(defaults.object(kStoreKey), std::nullopt);
    const Name yetLaterStart("showFloatingPanel", kOptionSpace, center);
    EXPECT_EQ(center.getShortcut(yetLaterStart), kOptionSpace);
}

TEST_F(CenterTest, ActionsRunInTheOrderAddedOnTheirOwnMomentOnly) {
    center.setShortcut(kOptionSpace, plain);
    center.onKeyUp(plain, noting("up 1"));
    center.onKeyUp(plain, noting("up 2"));
    center.onKeyDown(plain, noting("down"));
    EXPECT_EQ(system.requests.size(), 1U);
    EXPECT_TRUE(press(kOptionSpace));
    EXPECT_EQ(log, Log({"down"}));
    EXPECT_TRUE(release(kOptionSpace));
    EXPECT_EQ(log, Log({"down", "up 1", "up 2"}));
}

TEST_F(CenterTest, AChangeRetiresTheFormerCombinationAndKeepsTheActions) {
    center.setShortcut(kOptionSpace, plain);
    center.onKeyUp(plain, noting("up"));
    center.setShortcut(kCommandK, plain);
    EXPECT_FALSE(release(kOptionSpace));
    EXPECT_TRUE(release(kCommandK));
    center.setShortcut(std::nullopt, plain);
    EXPECT_FALSE(release(kCommandK));
    center.setShortcut(kOptionSpace, plain);
    EXPECT_TRUE(release(kOptionSpace));
    EXPECT_EQ(log, Log({"up", "up"}));
}

TEST_F(CenterTest, NothingRunsWhileAShortcutIsBeingRecorded) {
    center.setShortcut(kOptionSpace, plain);
    center.onKeyDown(plain, noting("down"));
    const auto stream = center.events(plain, [this](EventType) { log.emplace_back("event"); });
    center.setRecordingPause(true);
    press(kOptionSpace);
    release(kOptionSpace);
    EXPECT_TRUE(log.empty());
    center.setRecordingPause(false);
    press(kOptionSpace);
    EXPECT_EQ(log, Log({"down", "event"}));
}

TEST_F(CenterTest, TwoNamesOfOneCombinationShareARegistrationThatAChangeOfEitherEnds) {
    const Name other("other");
    center.setShortcut(kOptionSpace, plain);
    center.setShortcut(kOptionSpace, other);
    center.onKeyUp(plain, noting("plain"));
    center.onKeyUp(other, noting("other"));
    EXPECT_EQ(system.registrations.size(), 1U);
    release(kOptionSpace);
    EXPECT_EQ(log.size(), 2U);
    center.setShortcut(kCommandK, other);
    EXPECT_FALSE(release(kOptionSpace));
    center.enable(plain);
    EXPECT_TRUE(release(kOptionSpace));
    EXPECT_EQ(log.back(), "plain");
}

TEST_F(CenterTest, ARefusedRegistrationIsNotTriedAgainUntilTheSlotChanges) {
    system.registerStatus = -9878;
    center.setShortcut(kOptionSpace, plain);
    EXPECT_EQ(center.getShortcut(plain), kOptionSpace);
    system.registerStatus = platform::noErr;
    center.onKeyUp(plain, noting("up"));
    center.enable(plain);
    EXPECT_EQ(system.requests.size(), 1U);
    center.setShortcut(kOptionSpace, plain);
    EXPECT_TRUE(release(kOptionSpace));
}

TEST_F(CenterTest, DisableKeepsTheSlotAndResetBringsTheDefaultBack) {
    const Name withDefault("showFloatingPanel", kOptionSpace, center);
    center.onKeyUp(withDefault, noting("up"));
    center.disable(withDefault);
    EXPECT_FALSE(release(kOptionSpace));
    EXPECT_EQ(center.getShortcut(withDefault), kOptionSpace);
    center.enable(withDefault);
    EXPECT_TRUE(release(kOptionSpace));
    center.setShortcut(kCommandK, withDefault);
    center.reset(std::vector{withDefault});
    EXPECT_TRUE(release(kOptionSpace));
    center.reset(std::vector{plain});
    EXPECT_EQ(defaults.object(kStoreKey), std::nullopt);
}

TEST_F(CenterTest, StreamsCarryTheirEventsUntilTheyEnd) {
    center.setShortcut(kOptionSpace, plain);
    const auto note = [this](EventType type) {
        log.emplace_back(type == EventType::keyDown ? "down" : "up");
    };
    auto both = center.events(plain, note);
    const auto ups = center.events(EventType::keyUp, plain, note);
    const auto downs = center.on(EventType::keyDown, plain, noting("on"));
    press(kOptionSpace);
    release(kOptionSpace);
    EXPECT_EQ(log, Log({"down", "on", "up", "up"}));
    both.reset();
    log.clear();
    press(kOptionSpace);
    release(kOptionSpace);
    EXPECT_EQ(log, Log({"on", "up"}));
}

TEST_F(CenterTest, HandlersMayRemoveEverythingWhileTheyRun) {
    center.setShortcut(kOptionSpace, plain);
    Subscription second;
    Subscription first = center.on(EventType::keyUp, plain, [&] {
        log.emplace_back("first");
        second.reset();
    });
    second = center.on(EventType::keyUp, plain, noting("second"));
    EXPECT_TRUE(release(kOptionSpace));
    EXPECT_EQ(std::exchange(log, {}), Log({"first"}));
    first.reset();
    center.onKeyUp(plain, [this] {
        log.emplace_back("last");
        center.removeAllHandlers();
    });
    const auto stream = center.on(EventType::keyUp, plain, noting("stream"));
    EXPECT_TRUE(release(kOptionSpace));
    EXPECT_EQ(log, Log({"last"}));
    EXPECT_FALSE(release(kOptionSpace));
    EXPECT_TRUE(system.registrations.empty());
    EXPECT_EQ(center.getShortcut(plain), kOptionSpace);
}

TEST_F(CenterTest, ASlotChangedByAnotherProcessCountsAtTheNextKey) {
    center.setShortcut(kOptionSpace, plain);
    center.onKeyUp(plain, noting("up"));
    defaults.set(kStoreKey, kCommandK.toJSON());
    EXPECT_TRUE(release(kOptionSpace));
    EXPECT_TRUE(log.empty());
}

TEST_F(CenterTest, AStoreThatIsFollowedMovesTheHotKeyAndTellsOfEachChangeOnce) {
    center.followStore();
    center.setShortcut(kOptionSpace, plain);
    center.onKeyUp(plain, noting("up"));
    changes.clear();
    for (const Shortcut& stored : {kCommandK, kOptionSpace}) {
        defaults.set(kStoreKey, stored.toJSON());
        defaults.set("other", true);
        EXPECT_TRUE(release(stored));
        EXPECT_EQ(system.registrations.size(), 1U);
        EXPECT_EQ(std::exchange(changes, {}), std::vector{plain});
    }
    EXPECT_EQ(log.size(), 2U);
    center.setShortcut(kCommandK, plain);
    EXPECT_EQ(changes, std::vector{plain}) << "its own change comes back from the store";
    EXPECT_TRUE(release(kCommandK));
    defaults.remove(kStoreKey);
    EXPECT_FALSE(release(kCommandK));
}

} // namespace quillmoth::KeyboardShortcuts::test
