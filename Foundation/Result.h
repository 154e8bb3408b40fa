#pragma once

#include <string>
#include <utility>
#include <variant>

namespace quillmoth {

/// Why something failed, in words for a log or for the user.
struct Error {
    std::string description;
};

/// A value, or the error that took its place.
template<class T>
class [[nodiscard]] Result {
public:
    Result(T value) : content_(std::in_place_index<0>, std::move(value)) {}

    Result(Error error) : content_(std::in_place_index<1>, std::move(error)) {}

    explicit operator bool() const { return content_.index() == 0; }

    T& operator*() { return std::get<0>(content_); }

    const T& operator*() const { return std::get<0>(content_); }

    T* operator->() { return &std::get<0>(content_); }

    const T* operator->() const { return &std::get<0>(content_); }

    [[nodiscard]] const Error& error() const { return std::get<1>(content_); }

private:
    std::variant<T, Error> content_;
};

/// Success without a value, or an error.
template<>
class [[nodiscard]] Result<void> {
public:
    Result() = default;

    Result(Error error) : error_(std::move(error)), failed_(true) {}

    explicit operator bool() const { return !failed_; }

    [[nodiscard]] const Error& error() const { return error_; }

private:
    Error error_;
    bool failed_ = false;
};

} // namespace quillmoth
