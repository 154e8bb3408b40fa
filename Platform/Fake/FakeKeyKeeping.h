#pragma once

#include "Foundation/Subscription.h"
#include "Platform/KeyKeeping.h"

#include <functional>
#include <string>
#include <vector>

namespace quillmoth::platform {

/// The place of the key as the test sets it; a change is a call of tell().
class FakeKeyKeeping final : public KeyKeeping {
public:
    void lookForKeyring() override { ++looks; }

    [[nodiscard]] bool offersKeyring() const override { return offers; }

    [[nodiscard]] bool keepsInKeyring() const override { return keeps; }

    void setKeepsInKeyring(bool wish) override { wishes.push_back(wish); }

    [[nodiscard]] bool isMovingKey() const override { return moves; }

    [[nodiscard]] std::string keepingProblem() const override { return problem; }

    Subscription onChange(std::function<void()> subscriber) override {
        return changed_.subscribe(std::move(subscriber));
    }

    void tell() { changed_.emit(); }

    int looks = 0;
    bool offers = false;
    bool keeps = false;
    bool moves = false;
    std::string problem;
    std::vector<bool> wishes;

private:
    Signal<> changed_;
};

} // namespace quillmoth::platform
