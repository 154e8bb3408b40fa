#include "Platform/Linux/Keyring/KeyringUserDefaults.h"
#include "Platform/Fake/FakeMainQueue.h"
#include "Platform/Fake/FakeSecretStore.h"
#include "Platform/Fake/FakeUserDefaults.h"
#include "Quillmoth/Chat/ChatRoute.h"

#include <gtest/gtest.h>

namespace quillmoth::platform {
namespace {

constexpr const char* kKey = "openapikey";
using State = SecretStore::State;

class KeyringTest : public testing::Test {
protected:
    KeyringTest() {
        unsetenv("QUILLMOTH_OPENAI_BASE_URL");
        file.set("gatewayBaseURL", std::string("https://gateway.example"));
        restart();
    }

    void restart() {
        defaults = std::make_unique<KeyringUserDefaults>(
            file, store, [this](const std::string&, const std::function<void(bool)>& completion) {
                mainQueue.async([this, completion] { completion(isFileWritten); });
            });
    }

    /// A start with the key in the keyring.
    void startWithKey(State state) {
        file.set("keepsKeyInKeyring", true);
        store.secret = "sk-1";
        store.state = state;
        restart();
    }

    void setKeeps(bool keeps) {
        defaults->setKeepsInKeyring(keeps);
        mainQueue.runUntilIdle();
    }

    void type(const std::string& key) { defaults->set(kKey, key); }

    std::string key() const { return defaults->string(kKey).value_or(""); }

    std::string refusal() const {
        const auto route = chatRoute(*defaults);
        return route ? "" : route.error().description;
    }

    /// Where the key is: in the settings file, in the keyring, and whether the switch is on.
    void expectPlaces(const std::optional<std::string>& inFile, const std::optional<std::string>& inKeyring,
                      bool keeps) const {
        EXPECT_EQ(file.string(kKey), inFile);
        EXPECT_EQ(store.secret, inKeyring);
        EXPECT_EQ(defaults->keepsInKeyring(), keeps);
        EXPECT_FALSE(defaults->isMovingKey());
    }

    FakeMainQueue mainQueue;
    FakeUserDefaults file;
    FakeSecretStore store{mainQueue};
    bool isFileWritten = true;
    std::unique_ptr<KeyringUserDefaults> defaults;
};

TEST_F(KeyringTest, the_key_moves_into_the_keyring_and_back_and_can_be_read_all_the_while) {
    type("sk-as-long-as-keys-are");
    for (const bool keeps : {true, false}) {
        defaults->setKeepsInKeyring(keeps);
        do {
            EXPECT_EQ(key(), "sk-as-long-as-keys-are");
            EXPECT_EQ(refusal(), "");
            EXPECT_TRUE(store.secret || file.string(kKey)) << "the key is nowhere for a moment";
        } while (mainQueue.runOne());
        expectPlaces(keeps ? std::nullopt : std::optional("sk-as-long-as-keys-are"),
                     keeps ? std::optional("sk-as-long-as-keys-are") : std::nullopt, keeps);
    }
    EXPECT_EQ(defaults->keepingProblem(), "");
}

TEST_F(KeyringTest, a_move_that_fails_leaves_the_key_where_it_was_and_is_told) {
    type("sk-1");
    for (std::string* failure : {&store.writeFailure, &store.readFailure}) {
        *failure = "No space.";
        setKeeps(true);
        EXPECT_EQ(file.string(kKey), "sk-1");
        EXPECT_FALSE(defaults->keepsInKeyring());
        EXPECT_NE(defaults->keepingProblem().find("No space. It stays in the settings file."),
                  std::string::npos);
        failure->clear();
    }
    const auto expectStaysInKeyring = [this] {
        setKeeps(false);
        expectPlaces(std::nullopt, "sk-1", true);
        EXPECT_NE(defaults->keepingProblem(), "");
    };
    startWithKey(State::locked);
    file.remove(kKey);
    store.unlocksWhenAsked = false;
    expectStaysInKeyring();
    store.state = State::unlocked;
    store.readFailure = "It broke.";
    expectStaysInKeyring();
    store.readFailure.clear();
    isFileWritten = false;
    expectStaysInKeyring();
    EXPECT_EQ(key(), "sk-1");
    isFileWritten = true;
    setKeeps(false);
    expectPlaces("sk-1", std::nullopt, false);
}

TEST_F(KeyringTest, a_locked_keyring_is_asked_for_by_the_first_request_which_goes_nowhere) {
    startWithKey(State::locked);
    store.unlocksWhenAsked = false;
    EXPECT_NE(refusal(), "") << "a key that has not been fetched is no absent key";
    defaults->prepareKey();
    mainQueue.runUntilIdle();
    EXPECT_EQ(store.questions, 0);
    for (const int questions : {1, 2}) {
        EXPECT_TRUE(refusal().starts_with("The keyring is locked. Unlock it to send.")) << refusal();
        EXPECT_FALSE(wantedChatRoute(*defaults));
        EXPECT_FALSE(wantedChatRoute(*defaults)) << "asks while the first question stands";
        mainQueue.runUntilIdle();
        EXPECT_EQ(store.questions, questions);
    }
    store.unlocksWhenAsked = true;
    int changes = 0;
    const Subscription change = static_cast<UserDefaults&>(*defaults).onChange([&] { ++changes; });
    EXPECT_FALSE(wantedChatRoute(*defaults));
    mainQueue.runUntilIdle();
    EXPECT_EQ(changes, 1);
    const auto route = wantedChatRoute(*defaults);
    ASSERT_TRUE(route);
    EXPECT_EQ(route->key, "sk-1");
    EXPECT_EQ(route->address, "https://api.openai.com");
}

TEST_F(KeyringTest, an_unlocked_keyring_gives_the_key_before_it_is_asked_for) {
    startWithKey(State::unlocked);
    EXPECT_EQ(mainQueue.pendingCount(), 0U) << "a start touches the keyring";
    defaults->prepareKey();
    mainQueue.runUntilIdle();
    EXPECT_EQ(key(), "sk-1");
}

TEST_F(KeyringTest, a_key_that_has_gone_from_the_keyring_or_does_not_come_refuses_the_request) {
    startWithKey(State::unlocked);
    store.readFailure = "It broke.";
    defaults->prepareKey();
    mainQueue.runUntilIdle();
    EXPECT_NE(refusal().find("It broke."), std::string::npos) << refusal();
    store.readFailure.clear();
    store.secret.reset();
    EXPECT_FALSE(wantedChatRoute(*defaults));
    mainQueue.runUntilIdle();
    EXPECT_NE(refusal().find("holds no key"), std::string::npos) << refusal();
    type("sk-2");
    mainQueue.runUntilIdle();
    expectPlaces(std::nullopt, "sk-2", true);
    EXPECT_EQ(refusal(), "");
}

TEST_F(KeyringTest, what_is_typed_goes_to_the_keyring_alone_and_an_emptied_key_leaves_it) {
    setKeeps(true);
    for (const char* typed : {"s", "sk", "sk-", "sk-2"}) {
        type(typed);
        mainQueue.runOne();
        EXPECT_EQ(key(), typed);
        EXPECT_EQ(file.string(kKey), "");
    }
    EXPECT_TRUE(defaults->isSavingKey());
    mainQueue.runUntilIdle();
    expectPlaces(std::nullopt, "sk-2", true);
    type("");
    type("sk-3");
    type("");
    mainQueue.runUntilIdle();
    expectPlaces("", std::nullopt, true);
    // Without a key nobody is asked for the password.
    store.state = State::locked;
    restart();
    defaults->prepareKey();
    mainQueue.runUntilIdle();
    EXPECT_EQ(wantedChatRoute(*defaults)->address, "https://gateway.example");
    setKeeps(false);
    EXPECT_EQ(store.questions, 0);
}

TEST_F(KeyringTest, a_typed_key_that_cannot_be_saved_is_told_holds_and_can_go_to_the_file) {
    setKeeps(true);
    store.writeFailure = "No space.";
    type("sk-2");
    mainQueue.runUntilIdle();
    EXPECT_NE(defaults->keepingProblem().find("No space."), std::string::npos);
    EXPECT_EQ(key(), "sk-2");
    setKeeps(false);
    expectPlaces("sk-2", std::nullopt, false);
}

TEST_F(KeyringTest, what_is_typed_while_the_key_moves_is_what_arrives) {
    for (const char* typed : {"sk-2", ""}) {
        for (int after = 0; after < 3; ++after) {
            file.set("keepsKeyInKeyring", false);
            file.set(kKey, std::string("sk-1"));
            restart();
            defaults->setKeepsInKeyring(true);
            for (int step = 0; step < after; ++step)
                mainQueue.runOne();
            type(typed);
            mainQueue.runUntilIdle();
            EXPECT_EQ(key(), typed);
            const bool isEmpty = *typed == '\0';
            expectPlaces(isEmpty ? std::optional("") : std::nullopt,
                         isEmpty ? std::nullopt : std::optional(typed), true);
            defaults->setKeepsInKeyring(false);
            for (int step = 0; step < after; ++step)
                mainQueue.runOne();
            type("sk-3");
            mainQueue.runUntilIdle();
            expectPlaces("sk-3", std::nullopt, false);
        }
    }
}

TEST_F(KeyringTest, a_move_that_was_broken_off_is_finished_without_a_question) {
    type("sk-1");
    file.set("keepsKeyInKeyring", true);
    store.state = State::locked;
    restart();
    for (const State state : {State::locked, State::unlocked}) {
        store.state = state;
        EXPECT_EQ(key(), "sk-1");
        EXPECT_EQ(refusal(), "");
        defaults->prepareKey();
        mainQueue.runUntilIdle();
    }
    EXPECT_EQ(store.questions, 0);
    expectPlaces(std::nullopt, "sk-1", true);
}

} // namespace
} // namespace quillmoth::platform
