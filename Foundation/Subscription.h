#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace quillmoth {

/// A running subscription: ends when the object is destroyed or reset. Move-only.
class [[nodiscard]] Subscription {
public:
    Subscription() = default;

    explicit Subscription(std::function<void()> cancel) : cancel_(std::move(cancel)) {}

    Subscription(Subscription&& other) noexcept : cancel_(std::exchange(other.cancel_, nullptr)) {}

    Subscription& operator=(Subscription&& other) noexcept {
        if (this != &other) {
            reset();
            cancel_ = std::exchange(other.cancel_, nullptr);
        }
        return *this;
    }

    ~Subscription() { reset(); }

    void reset() {
        if (auto cancel = std::exchange(cancel_, nullptr))
            cancel();
    }

    explicit operator bool() const { return static_cast<bool>(cancel_); }

private:
    std::function<void()> cancel_;
};

/// A list of subscribers on one thread. Subscribers may come and go while emit runs: one that is added then
/// is not called in this round, and one that is removed is not called any more. A subscriber may also destroy
/// the signal itself.
template<class... Arguments>
class Signal {
public:
    using Subscriber = std::function<void(Arguments...)>;

    Subscription subscribe(Subscriber subscriber) {
        auto entry = std::make_shared<Subscriber>(std::move(subscriber));
        auto list = std::make_shared<List>(*list_);
        list->push_back(entry);
        list_ = std::move(list);
        return Subscription([handle = std::weak_ptr(handle_), weak = std::weak_ptr(entry)] {
            const auto signal = handle.lock();
            const auto entry = weak.lock();
            if (signal && entry)
                (*signal)->remove(entry);
        });
    }

    void emit(Arguments... arguments) const {
        const auto list = list_;
        const std::weak_ptr<Signal*> alive = handle_;
        for (const auto& entry : *list) {
            if (alive.expired())
                return;
            if (list == list_ || isSubscribed(entry))
                (*entry)(arguments...);
        }
    }

    [[nodiscard]] bool empty() const { return list_->empty(); }

    Signal() = default;
    Signal(const Signal&) = delete;
    Signal& operator=(const Signal&) = delete;

private:
    using Entry = std::shared_ptr<Subscriber>;
    using List = std::vector<Entry>;

    void remove(const Entry& entry) {
        auto list = std::make_shared<List>(*list_);
        std::erase(*list, entry);
        list_ = std::move(list);
    }

    [[nodiscard]] bool isSubscribed(const Entry& entry) const {
        return std::find(list_->begin(), list_->end(), entry) != list_->end();
    }

    std::shared_ptr<const List> list_ = std::make_shared<const List>();
    // Lets a subscription that outlives the signal find out that it has gone.
    std::shared_ptr<Signal*> handle_ = std::make_shared<Signal*>(this);
};

} // namespace quillmoth
