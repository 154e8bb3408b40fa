#pragma once

#include "Platform/UserDefaults.h"

#include <cstdint>
#include <initializer_list>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <utility>

/// What comes from outside: files, settings, links, answers of services, other programs. Some is as it should
/// be, some nearly, and some is damaged.
namespace quillmoth::sweep {

/// Chances that a seed gives again.
class Dice {
public:
    explicit Dice(std::uint64_t seed) : engine_(seed) {}

    /// From 0 to `count` less one; `count` is at least 1.
    std::size_t below(std::size_t count) { return static_cast<std::size_t>(engine_() % count); }

    bool once(std::size_t in) { return below(in) == 0; }

    template<class List>
    const auto& of(const List& list) {
        return *(std::begin(list) + static_cast<std::ptrdiff_t>(below(std::size(list))));
    }

private:
    std::mt19937_64 engine_;
};

/// A word, a sign, nothing, or something that is no text.
[[nodiscard]] std::string text(Dice& dice);
/// Cut, doubled, or with a byte or a sign of JSON in the wrong place.
[[nodiscard]] std::string damaged(std::string bytes, Dice& dice);
/// One of those in this section of inputs.txt, now and then damaged.
[[nodiscard]] std::string input(const std::string& section, Dice& dice);
/// Bytes of an event stream, which may be any part of one.
[[nodiscard]] std::string streamBytes(Dice& dice);
[[nodiscard]] int status(Dice& dice);
[[nodiscard]] std::pair<std::string, platform::DefaultsValue> setting(Dice& dice);

} // namespace quillmoth::sweep
