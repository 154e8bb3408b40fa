#pragma once

#include <functional>
#include <memory>

namespace quillmoth::platform {

struct InstanceRequest;

/// The instance of the program in this session: owns the bus name "org.quillmoth.Quillmoth" and answers the
/// interface org.freedesktop.Application there. Main thread, with an application object. The name goes with
/// the object.
class SingleInstance {
public:
    enum class Claim {
        owner,
        /// Another process has become the instance meanwhile: hand over to it.
        taken,
        /// There is no session bus: the program runs without being found. It is logged.
        alone,
    };

    /// `handler` receives each request in a turn of its own, after the sender has its answer.
    explicit SingleInstance(std::function<void(const InstanceRequest&)> handler);
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    Claim claim();

private:
    class Object;
    std::unique_ptr<Object> object_;
};

} // namespace quillmoth::platform
