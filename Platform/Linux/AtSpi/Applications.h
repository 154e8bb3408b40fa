#pragma once

#include "Platform/Linux/AtSpi/Operation.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace quillmoth::platform {

/// Toolkits that differ in how they count and what they tell.
enum class Toolkit {
    /// Whose answers have never been compared with what it shows.
    unknown,
    /// GTK 3 and others that tell what is so.
    other,
    gtk4,
    qt,
    gecko,
    chromium
};

/// What is known of the applications on the accessibility bus, by their connection's unique name, which is
/// never used twice. The accessibility thread.
class Applications {
public:
    /// The process behind a connection; asks the bus, not the application. 0 where it is not known.
    [[nodiscard]] std::int64_t processOf(Operation& operation, const std::string& name);

    [[nodiscard]] Toolkit toolkitOf(Operation& operation, const std::string& name);

    /// The root objects of all applications.
    [[nodiscard]] std::vector<ObjectReference> roots(Operation& operation);

    /// The root objects of the applications that run in `process`.
    [[nodiscard]] std::vector<ObjectReference> rootsOf(Operation& operation, std::int64_t process);

    void forget(const std::string& name);

private:
    std::map<std::string, std::int64_t> processes_;
    std::map<std::string, Toolkit> toolkits_;
};

/// A null reference where it has none or does not tell.
[[nodiscard]] ObjectReference parentOf(Operation& operation, const ObjectReference& object);

/// The children of `object`; none where it does not tell.
[[nodiscard]] std::vector<ObjectReference> childrenOf(Operation& operation, const ObjectReference& object);

} // namespace quillmoth::platform
