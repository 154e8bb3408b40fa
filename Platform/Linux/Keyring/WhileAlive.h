#pragma once

#include <memory>
#include <utility>

namespace quillmoth::platform {

/// `handler` of one argument, as long as somebody else holds `life`.
template<class Handler>
[[nodiscard]] auto whileAlive(const std::shared_ptr<int>& life, Handler handler) {
    return [life = std::weak_ptr(life), handler = std::move(handler)](const auto& argument) {
        if (!life.expired())
            handler(argument);
    };
}

} // namespace quillmoth::platform
