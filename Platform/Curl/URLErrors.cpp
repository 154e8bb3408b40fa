#include "Platform/Curl/URLErrors.h"

#include "Foundation/Limits.h"

#include <algorithm>
#include <array>

namespace quillmoth::platform {

namespace {

using Code = URLError::Code;

struct Row {
    CURLcode curlCode;
    Code code;
    const char* before;
    const char* behind;
};

constexpr const char* kNotSecure = "A secure connection to the server ";
constexpr const char* kNotMade = " could not be made.";
constexpr const char* kLost = "The connection to the server ";
constexpr const char* kWasLost = " was lost.";

constexpr std::array kRows{
    Row{CURLE_COULDNT_CONNECT, Code::cannotConnectToHost, "Could not connect to the server ", "."},
    Row{CURLE_COULDNT_RESOLVE_HOST, Code::cannotFindHost, "Could not find the server ", "."},
    Row{CURLE_COULDNT_RESOLVE_PROXY, Code::cannotFindHost, "Could not find the proxy to the server ", "."},
    Row{CURLE_PROXY, Code::cannotConnectToHost, "The proxy did not connect to the server ", "."},
    Row{CURLE_OPERATION_TIMEDOUT, Code::timedOut, "The server ", " took too long to answer."},
    Row{CURLE_GOT_NOTHING, Code::connectionLost, kLost, kWasLost},
    Row{CURLE_PARTIAL_FILE, Code::connectionLost, kLost, kWasLost},
    Row{CURLE_RECV_ERROR, Code::connectionLost, kLost, kWasLost},
    Row{CURLE_SEND_ERROR, Code::connectionLost, kLost, kWasLost},
    Row{CURLE_HTTP2, Code::connectionLost, kLost, kWasLost},
    Row{CURLE_HTTP2_STREAM, Code::connectionLost, kLost, kWasLost},
    Row{CURLE_SSL_CONNECT_ERROR, Code::secureConnectionFailed, kNotSecure, kNotMade},
    Row{CURLE_SSL_CACERT_BADFILE, Code::secureConnectionFailed, kNotSecure, kNotMade},
    Row{CURLE_SSL_CERTPROBLEM, Code::secureConnectionFailed, kNotSecure, kNotMade},
    Row{CURLE_SSL_CIPHER, Code::secureConnectionFailed, kNotSecure, kNotMade},
    Row{CURLE_SSL_ISSUER_ERROR, Code::secureConnectionFailed, kNotSecure, kNotMade},
    Row{CURLE_UNSUPPORTED_PROTOCOL, Code::unknown, "The server ", " does not speak HTTP."},
    Row{CURLE_WEIRD_SERVER_REPLY, Code::unknown, "The server ", " does not speak HTTP."},
};

constexpr Row kOther{CURLE_OK, Code::unknown, "The exchange with the server ", " failed."};

// X509_V_OK and X509_V_ERR_UNSPECIFIED: the certificate itself is good, or libcurl looked at its names first.
constexpr long kNothing = 0;
constexpr long kUnspecified = 1;
// X509_V_ERR_CERT_NOT_YET_VALID and X509_V_ERR_CERT_HAS_EXPIRED (X509_STORE_CTX_get_error(3ssl)).
constexpr long kNotYetValid = 9;
constexpr long kHasExpired = 10;

/// The library's own words name the machine that it tried to reach: where that is not the server, it is a
/// proxy.
bool namesAnother(const std::string& detail, const Server& server) {
    std::string host = server.host;
    std::erase_if(host, [](char c) { return c == '[' || c == ']'; });
    return !detail.empty() && detail.find(host) == std::string::npos;
}

} // namespace

URLError transferError(CURLcode code, const Server& server, const std::string& detail) {
    if (code == CURLE_COULDNT_CONNECT && namesAnother(detail, server))
        return {Code::cannotConnectToHost,
                "Could not connect to the proxy to the server " + server.name() + "."};
    const auto* found =
        std::find_if(kRows.begin(), kRows.end(), [&](const Row& row) { return row.curlCode == code; });
    const Row& row = found == kRows.end() ? kOther : *found;
    return {row.code, row.before + server.name() + row.behind};
}

URLError certificateError(const Server& server, long fault) {
    const char* words = " is not trusted: none of the authorities that this computer knows has signed it.";
    if (fault == kNothing || fault == kUnspecified)
        words = " is for another server.";
    else if (fault == kNotYetValid || fault == kHasExpired)
        words = " has expired, or is not valid yet.";
    return {Code::secureConnectionFailed,
            "The certificate of the server " + server.name() + words + " Nothing was sent."};
}

URLError timeoutError(const Server& server) {
    return transferError(CURLE_OPERATION_TIMEDOUT, server, {});
}

URLError tooManyRedirectsError(const Server& server) {
    return {Code::tooManyRedirects,
            "The server " + server.name() + " redirected the request too many times."};
}

URLError tooLargeAnswerError(const Server& server, std::size_t largest) {
    return {Code::tooLarge, "The server " + server.name() + " sent more than " +
                                std::to_string(largest / limits::kKilobyte) +
                                " KB, which is more than such an answer may have. It was broken off."};
}

URLError tooManyHeadersError(const Server& server) {
    return {Code::tooLarge,
            "The server " + server.name() + " sent headers without end. The answer was broken off."};
}

URLError badAddressError() {
    return {Code::badURL, "The address of the server is not valid."};
}

URLError badRedirectError(const Server& server) {
    return {Code::badURL,
            "The server " + server.name() + " redirected the request to an address that is not valid."};
}

URLError privateAddressError(const Server& server) {
    return {Code::privateAddress,
            "The server " + server.name() + " is on a private network. Nothing was sent there."};
}

URLError foreignRedirectError(const Server& server, const Server& target) {
    return {Code::redirectRefused, "The server " + server.name() + " sends requests on to " +
                                       target.origin() +
                                       ". Nothing of yours was sent there. If you trust it, set its address "
                                       "in Settings."};
}

URLError unencryptedRedirectError(const Server& server, const Server& target) {
    return {Code::redirectRefused, "The server " + server.name() + " sends requests on to " +
                                       target.origin() + ", which is not encrypted. Nothing was sent there."};
}

} // namespace quillmoth::platform
