#pragma once

#include "Platform/Platform.h"
#include "Platform/URLSession.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace quillmoth {

/// Says in words whether the configured server can be used, by asking it for its list of models. The key goes
/// to that server only, and never into a text. Main thread.
class ConnectionTest {
public:
    struct Answer {
        bool isGood = false;
        std::string text;
    };

    using Completion = std::function<void(const Answer& answer)>;

    /// The services outlive the object.
    explicit ConnectionTest(const platform::Platform& platform);
    ~ConnectionTest();
    ConnectionTest(const ConnectionTest&) = delete;
    ConnectionTest& operator=(const ConnectionTest&) = delete;

    /// `completion` is called once, later, unless the object goes or start is called again before.
    void start(Completion completion);

private:
    void finish(std::uint64_t number, const Answer& answer);

    const platform::Platform platform_;
    Completion completion_;
    std::shared_ptr<platform::URLSessionDataTask> task_;
    std::uint64_t number_ = 0;
    // Lets an answer that comes late find out that the object has gone.
    std::shared_ptr<ConnectionTest*> self_;
};

/// What an answer to the request means, in words. `server` is the address that was asked.
[[nodiscard]] ConnectionTest::Answer connectionAnswer(const std::string& server, const std::string& model,
                                                      bool hasKey, const std::optional<std::string>& data,
                                                      const std::optional<platform::URLResponse>& response,
                                                      const std::optional<platform::URLError>& error);

} // namespace quillmoth
