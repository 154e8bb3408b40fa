#pragma once

#include <string>
#include <utility>

#include <unistd.h>

namespace quillmoth {

/// An open file, closed with the object. Move-only.
class FileDescriptor {
public:
    explicit FileDescriptor(int number = -1) : number_(number) {}

    FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}

    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }

    ~FileDescriptor() { close(); }

    explicit operator bool() const { return number_ >= 0; }

    [[nodiscard]] int get() const { return number_; }

    /// False where the system reports now that something written before has not arrived.
    bool close() { return number_ < 0 || ::close(std::exchange(number_, -1)) == 0; }

private:
    int number_;
};

} // namespace quillmoth
