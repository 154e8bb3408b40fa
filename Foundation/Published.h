#pragma once

#include "Foundation/Subscription.h"

#include <cstdint>
#include <functional>
#include <string_view>
#include <utility>

namespace quillmoth {

/// An object whose published fields tell their subscribers before each assignment. One thread.
class ObservableObject {
public:
    ObservableObject() = default;
    ObservableObject(const ObservableObject&) = delete;
    ObservableObject& operator=(const ObservableObject&) = delete;

    /// `subscriber` is called with the name of the field before each assignment, of an equal value too; the
    /// field still holds its former value then.
    Subscription objectWillChange(std::function<void(std::string_view field)> subscriber) {
        return willChange_.subscribe(std::move(subscriber));
    }

    /// Sends the notice for `field`. Called by Published, and by owners of fields with a setter of their own.
    void sendWillChange(std::string_view field) { willChange_.emit(field); }

protected:
    ~ObservableObject() = default;

private:
    Signal<std::string_view> willChange_;
};

/// A field of an ObservableObject. Reading is free; every assignment sends the owner's notice first.
template<class T>
class Published {
public:
    /// `name` must outlive the field: a literal.
    Published(ObservableObject& owner, std::string_view name, T initial = T())
        : owner_(owner), name_(name), value_(std::move(initial)) {}

    Published(const Published&) = delete;

    /// Takes the other field's value, as an assignment of it.
    Published& operator=(const Published& other) { return *this = other.value_; }

    Published& operator=(T value) {
        mutate([&](T& former) { former = std::move(value); });
        return *this;
    }

    /// Edits the value in place, as one assignment.
    template<class Edit>
    void mutate(Edit&& edit) {
        owner_.sendWillChange(name_);
        ++generation_;
        std::forward<Edit>(edit)(value_);
    }

    /// The same, for an edit that only puts something behind the end of the value (elements behind the last
    /// one, text behind that of the last one).
    template<class Edit>
    void grow(Edit&& edit) {
        owner_.sendWillChange(name_);
        std::forward<Edit>(edit)(value_);
    }

    /// Another one after each assignment but those by `grow`: while it stays the same, what a reader has
    /// taken over from the value still holds, and only what is behind it is new.
    [[nodiscard]] std::uint64_t generation() const { return generation_; }

    [[nodiscard]] const T& get() const { return value_; }

    operator const T&() const { return value_; }

    const T& operator*() const { return value_; }

    const T* operator->() const { return &value_; }

    [[nodiscard]] std::string_view name() const { return name_; }

private:
    ObservableObject& owner_;
    std::string_view name_;
    T value_;
    std::uint64_t generation_ = 0;
};

} // namespace quillmoth
