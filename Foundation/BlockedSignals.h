#pragma once

#include <csignal>

namespace quillmoth {

/// Blocks all signals on this thread for the lifetime of the object, so that a thread started meanwhile
/// leaves them to the main thread, and no write to a closed connection ends the process with SIGPIPE.
class BlockedSignals {
public:
    BlockedSignals() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &former_);
    }

    ~BlockedSignals() { pthread_sigmask(SIG_SETMASK, &former_, nullptr); }

    BlockedSignals(const BlockedSignals&) = delete;
    BlockedSignals& operator=(const BlockedSignals&) = delete;

private:
    sigset_t former_{};
};

} // namespace quillmoth
