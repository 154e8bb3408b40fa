#pragma once

#include <chrono>

namespace quillmoth::platform {

struct InstanceRequest;

enum class HandOver {
    delivered,
    notRunning,
    /// There is no session bus to ask.
    noBus,
    /// An instance runs, but refused the request or did not answer in time.
    failed,
};

/// Gives `request`, with the environment's activation token, to the running instance and waits for its
/// answer. Speaks to the bus without Qt: it needs no application object, starts no thread, and a start that
/// only hands over is over in milliseconds. Does not start the program.
HandOver handOver(const InstanceRequest& request,
                  std::chrono::milliseconds timeout = std::chrono::milliseconds(3000));

} // namespace quillmoth::platform
