#pragma once

#include "Platform/Accessibility.h"
#include "Platform/Linux/AtSpi/GLibPointers.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace quillmoth::platform {

/// An accessible object: a connection's unique name on the accessibility bus and a path there.
struct ObjectReference {
    std::string name;
    std::string path;

    /// True where the protocol says that there is no such object.
    [[nodiscard]] bool isNull() const;

    friend auto operator<=>(const ObjectReference&, const ObjectReference&) = default;
};

/// The calls that serve one request of the program, under one deadline. A call that fails gives a null
/// Variant and says why in `error`. After a time-out, a cancellation or the loss of the bus no further call
/// is made, so a sequence of calls may be written down without looking at each. The accessibility thread.
class Operation {
public:
    using Clock = std::chrono::steady_clock;
    using Milliseconds = std::chrono::milliseconds;

    /// How long a single call may take.
    static constexpr Milliseconds kCallLimit{250};

    /// `bus` and `cancellable` outlive the operation.
    Operation(GDBusConnection* bus, GCancellable* cancellable, Clock::time_point deadline);

    /// A floating `parameters` is taken over. `replyType` is a type string, or null where any reply will do.
    Variant call(const ObjectReference& object, const char* interface, const char* method,
                 GVariant* parameters, const char* replyType, Milliseconds limit = kCallLimit);

    /// The value of a property, of the basic type `type`.
    Variant property(const ObjectReference& object, const char* interface, const char* name,
                     const char* type);

    /// Why the latest call failed; kAXErrorFailure where none did.
    [[nodiscard]] AXError error() const { return error_; }

    /// True where no further call will be made.
    [[nodiscard]] bool isOver() const { return isOver_; }

    /// The application that did not answer a call in time.
    [[nodiscard]] const std::string& unresponsive() const { return unresponsive_; }

    [[nodiscard]] GDBusConnection* bus() const { return bus_; }

private:
    void fail(const GError& error, const std::string& name);
    void end(AXError error);

    GDBusConnection* bus_;
    GCancellable* cancellable_;
    Clock::time_point deadline_;
    AXError error_ = kAXErrorFailure;
    bool isOver_ = false;
    std::string unresponsive_;
};

/// The objects in a reply that holds an array of references.
[[nodiscard]] std::vector<ObjectReference> objectsIn(GVariant* reply);

/// The one object in a reply.
[[nodiscard]] ObjectReference objectIn(GVariant* reply);

} // namespace quillmoth::platform
