#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace quillmoth::test {

/// Sets a variable of the environment, or takes it away, for the lifetime of the object.
class ScopedVariable {
public:
    ScopedVariable(const char* name, const std::optional<std::string>& value) : name_(name) {
        if (const char* former = std::getenv(name))
            former_ = former;
        put(value);
    }

    ~ScopedVariable() { put(former_); }

    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

private:
    void put(const std::optional<std::string>& value) const {
        value ? setenv(name_, value->c_str(), 1) : unsetenv(name_);
    }

    const char* name_;
    std::optional<std::string> former_;
};

} // namespace quillmoth::test
