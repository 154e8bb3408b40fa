#pragma once

#include <cstdlib>
#include <memory>

namespace quillmoth::platform {

struct FreeDeleter {
    void operator()(void* memory) const { std::free(memory); }
};

/// What libxcb hands out is to be freed by its receiver.
template<class T>
using X11Reply = std::unique_ptr<T, FreeDeleter>;

template<class T>
[[nodiscard]] X11Reply<T> owned(T* reply) {
    return X11Reply<T>(reply);
}

} // namespace quillmoth::platform
