#pragma once

#include "tests/desktop/wayland/SwaySession.h"
#include "tests/desktop/wayland/WaylandProgram.h"

#include <linux/input-event-codes.h>

namespace quillmoth::test {

/// A session of sway with the program in it.
class SwayDesktop final : public WaylandDesktop {
public:
    ~SwayDesktop() override { program_.kill(); }

    ProgramSession& program() override { return program_; }

    WaylandInput& input() override { return sway_.input(); }

    void saveScreenshot(const std::string& path) override { SwaySession::saveScreenshot(path); }

    SwaySession& sway() { return sway_; }

private:
    ProgramSession program_{""};
    SwaySession sway_;
};

class SwayProgram : public WaylandProgram {
protected:
    static void SetUpTestSuite() {
        auto desktop = std::make_unique<SwayDesktop>();
        sway_ = &desktop->sway();
        startDesktop(std::move(desktop));
    }

    static void TearDownTestSuite() { endDesktop(); }

    void SetUp() override {
        startProgram();
        startEditor({"mousepad", "--disable-server"}, {{"GDK_BACKEND", "wayland"}});
    }

    static inline SwaySession* sway_ = nullptr;
};

} // namespace quillmoth::test
