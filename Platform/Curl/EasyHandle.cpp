#include "Platform/Curl/EasyHandle.h"

#include "Foundation/ASCII.h"
#include "Foundation/Loopback.h"
#include "Foundation/PrivateNetwork.h"
#include "Foundation/Text.h"
#include "Platform/Curl/Server.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace quillmoth::platform {

namespace {

// A peer that has gone without a word, as after a suspend, is given up within a minute.
constexpr long kIdleSeconds = 20;
constexpr long kProbeSeconds = 10;
constexpr int kProbes = 3;

/// A token of RFC 9110, section 5.6.2.
bool isHeaderName(std::string_view name) {
    constexpr std::string_view kMarks = "!#$%&'*+-.^_`|~";
    return !name.empty() && std::all_of(name.begin(), name.end(), [&](char c) {
        return isASCIILetterOrDigit(c) || kMarks.find(c) != std::string_view::npos;
    });
}

/// A line end within a value, as from a key that was pasted with one, would begin another header: it becomes
/// a blank (RFC 9110, section 5.5). One at an end, and any blank there, does not go out: HTTP/2 servers drop
/// the whole request for it (RFC 9113, section 8.2.1).
std::string safeValue(std::string value) {
    std::replace_if(
        value.begin(), value.end(), [](char c) { return c == '\r' || c == '\n' || c == '\0'; }, ' ');
    return std::string(trimmed(value));
}

/// Sets what the library has no option for. A system without these options goes its usual, longer way.
int prepareSocket(void* /*context*/, curl_socket_t socket, curlsocktype /*purpose*/) {
    const int probes = kProbes;
    ::setsockopt(socket, IPPROTO_TCP, TCP_KEEPCNT, &probes, sizeof(probes));
    // The system does not probe while bytes of ours wait to be confirmed, as those of a request that was sent
    // into a network that is gone; it would send them again for a quarter of an hour.
    const unsigned int milliseconds = (kIdleSeconds + kProbes * kProbeSeconds) * 1000;
    ::setsockopt(socket, IPPROTO_TCP, TCP_USER_TIMEOUT, &milliseconds, sizeof(milliseconds));
    return CURL_SOCKOPT_OK;
}

/// The bytes of an IP address; none of another kind of address.
std::vector<std::uint8_t> bytesOf(const sockaddr& address) {
    const auto* const start = reinterpret_cast<const std::uint8_t*>(&address);
    const auto part = [start](std::size_t offset, std::size_t size) {
        return std::vector<std::uint8_t>(start + offset, start + offset + size);
    };
    if (address.sa_family == AF_INET)
        return part(offsetof(sockaddr_in, sin_addr), sizeof(in_addr));
    if (address.sa_family == AF_INET6)
        return part(offsetof(sockaddr_in6, sin6_addr), sizeof(in6_addr));
    return {};
}

/// Called with each address that a name has led to.
curl_socket_t openPublicSocket(void* hasRefused, curlsocktype /*purpose*/, curl_sockaddr* address) {
    if (isPrivateAddress(bytesOf(address->addr))) {
        *static_cast<bool*>(hasRefused) = true;
        return CURL_SOCKET_BAD;
    }
    return ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
}

} // namespace

EasyHandle::EasyHandle(const CurlLibrary& curl, const URLRequest& request,
                       const URLSessionConfiguration& configuration)
    : curl_(curl), headers_(nullptr, curl.slistFreeAll), handle_(curl.easyInit(), curl.easyCleanup) {
    set(CURLOPT_ERRORBUFFER, errorText_->data());
    set(CURLOPT_URL, request.url.c_str());
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    // What is for this machine does not leave it for the proxy of the environment.
    if (const auto server = serverOf(request.url); server && isLoopbackHost(server->host))
        set(CURLOPT_PROXY, "");
    set(CURLOPT_FOLLOWLOCATION, 0L);
    set(CURLOPT_SSL_VERIFYPEER, 1L);
    set(CURLOPT_SSL_VERIFYHOST, 2L);
    if (!configuration.trustedCertificates.empty())
        set(CURLOPT_CAINFO, configuration.trustedCertificates.c_str());
    set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    set(CURLOPT_USERAGENT, QUILLMOTH_USER_AGENT);
    set(CURLOPT_NOSIGNAL, 1L);
    // Lets a peer that has gone without a word be noticed, as a stream may be silent for as long as it likes.
    set(CURLOPT_TCP_KEEPALIVE, 1L);
    set(CURLOPT_TCP_KEEPIDLE, kIdleSeconds);
    set(CURLOPT_TCP_KEEPINTVL, kProbeSeconds);
    set(CURLOPT_SOCKOPTFUNCTION, &prepareSocket);
    if (request.publicAddressesOnly) {
        set(CURLOPT_OPENSOCKETFUNCTION, &openPublicSocket);
        set(CURLOPT_OPENSOCKETDATA, hasRefusedAddress_.get());
        // An open one may lead to where this request may not go.
        set(CURLOPT_FRESH_CONNECT, 1L);
    }
    // A cancelled task does not wait for the answer of the name server.
    set(CURLOPT_QUICK_EXIT, 1L);
    setMethod(request);
    setHeaders(request, configuration.httpAdditionalHeaders);
}

void EasyHandle::setCallbacks(Callback headerCallback, Callback bodyCallback, void* context) {
    set(CURLOPT_HEADERFUNCTION, headerCallback);
    set(CURLOPT_HEADERDATA, context);
    set(CURLOPT_WRITEFUNCTION, bodyCallback);
    set(CURLOPT_WRITEDATA, context);
}

void EasyHandle::unpause() {
    curl_.easyPause(handle_.get(), CURLPAUSE_CONT);
}

long EasyHandle::certificateFault() const {
    long fault = 0;
    curl_.easyGetInfo(handle_.get(), CURLINFO_SSL_VERIFYRESULT, &fault);
    return fault;
}

template<class Value>
void EasyHandle::set(CURLoption option, Value value) {
    curl_.easySetOption(handle_.get(), option, value);
}

void EasyHandle::setMethod(const URLRequest& request) {
    const bool isPost = request.httpMethod == "POST";
    if (request.httpBody || isPost) {
        set(CURLOPT_POST, 1L);
        set(CURLOPT_POSTFIELDSIZE_LARGE,
            static_cast<curl_off_t>(request.httpBody ? request.httpBody->size() : 0));
        set(CURLOPT_POSTFIELDS, request.httpBody ? request.httpBody->data() : "");
    } else if (request.httpMethod == "HEAD") {
        set(CURLOPT_NOBODY, 1L);
    }
    if (!isPost && request.httpMethod != "HEAD")
        set(CURLOPT_CUSTOMREQUEST, request.httpMethod.c_str());
}

void EasyHandle::setHeaders(const URLRequest& request,
                            const std::map<std::string, std::string>& additionalHeaders) {
    for (const auto& [name, value] : request.headers)
        addHeader(name, value);
    for (const auto& [name, value] : additionalHeaders) {
        if (!request.value(name))
            addHeader(name, value);
    }
    // No waiting for a "100 Continue" before the body, and no type that nobody asked for.
    addHeaderLine("Expect:");
    const bool hasType =
        request.value("Content-Type") ||
        std::any_of(additionalHeaders.begin(), additionalHeaders.end(),
                    [](const auto& header) { return equalIgnoringASCIICase(header.first, "Content-Type"); });
    if (!hasType)
        addHeaderLine("Content-Type:");
    set(CURLOPT_HTTPHEADER, headers_.get());
}

void EasyHandle::addHeader(const std::string& name, const std::string& value) {
    if (!isHeaderName(name))
        return;
    const std::string safe = safeValue(value);
    // The library's way to say that a header is there and empty.
    addHeaderLine(safe.empty() ? name + ";" : name + ": " + safe);
}

void EasyHandle::addHeaderLine(const std::string& line) {
    if (curl_slist* list = curl_.slistAppend(headers_.get(), line.c_str())) {
        // The head of the list stays the same once there is one.
        headers_.release();
        headers_.reset(list);
    }
}

} // namespace quillmoth::platform
