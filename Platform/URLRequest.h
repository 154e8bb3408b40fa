#pragma once

#include "Foundation/Limits.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quillmoth::platform {

enum class URLRequestCachePolicy { useProtocolCachePolicy = 0 };

/// An HTTP request as a value. Header names compare without regard to ASCII case (RFC 9110, 5.1).
struct URLRequest {
    std::string url;
    URLRequestCachePolicy cachePolicy = URLRequestCachePolicy::useProtocolCachePolicy;
    /// Longest wait for data, in seconds; a session's own configuration may be shorter or longer.
    double timeoutInterval = 60;
    std::string httpMethod = "GET";
    std::vector<std::pair<std::string, std::string>> headers;
    std::optional<std::string> httpBody;
    /// Of the body of an answer in one piece, in bytes: a longer one ends the task with Code::tooLarge.
    std::size_t largestAnswer = limits::kWholeAnswer;
    /// Fails where it would connect to a loopback, link-local or private address, be it that of a proxy.
    bool publicAddressesOnly = false;

    /// Adds a header; where one of that name exists the value is appended behind a comma.
    void addValue(const std::string& value, const std::string& field);
    /// Sets a header, replacing any of that name.
    void setValue(const std::string& value, const std::string& field);
    [[nodiscard]] std::optional<std::string> value(const std::string& field) const;

    friend bool operator==(const URLRequest&, const URLRequest&) = default;
};

struct URLResponse {
    std::string url;
    /// Present for HTTP answers only.
    std::optional<int> statusCode;
    std::vector<std::pair<std::string, std::string>> headers;
};

/// Why a task ended without a complete answer.
struct URLError {
    enum class Code {
        cancelled,
        timedOut,
        cannotFindHost,
        cannotConnectToHost,
        connectionLost,
        badURL,
        secureConnectionFailed,
        tooManyRedirects,
        /// It would have led what is for one server alone to another one, or from https to http.
        redirectRefused,
        /// More has come than is taken of such an answer.
        tooLarge,
        /// The request was for public addresses only.
        privateAddress,
        unknown
    };

    Code code = Code::unknown;
    /// A sentence for the user.
    std::string localizedDescription;
};

} // namespace quillmoth::platform
