#include "tests/support/HTTPConnection.h"

#include "Foundation/ASCII.h"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>

namespace quillmoth::test {

namespace {

/// Splits `text` at the first `separator`; what is behind it stays in `text`.
std::string_view take(std::string_view& text, std::string_view separator) {
    const std::size_t end = text.find(separator);
    const std::string_view taken = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + separator.size());
    return taken;
}

std::string pathOf(std::string_view target) {
    const std::size_t scheme = target.find("://");
    if (scheme != std::string_view::npos)
        target.remove_prefix(std::min(target.size(), target.find('/', scheme + 3)));
    return std::string(target.substr(0, target.find('?')));
}

ScriptedRequest parseHead(std::string_view head) {
    ScriptedRequest request;
    std::string_view line = take(head, "\r\n");
    request.method = take(line, " ");
    request.target = take(line, " ");
    request.path = pathOf(request.target);
    while (!head.empty()) {
        line = take(head, "\r\n");
        const std::string_view name = take(line, ":");
        // The blanks behind the value stay: tests look at them.
        line.remove_prefix(std::min(line.size(), line.find_first_not_of(' ')));
        request.headers.emplace_back(name, line);
    }
    return request;
}

} // namespace

std::optional<std::string> ScriptedRequest::header(std::string_view name) const {
    for (const auto& [field, value] : headers) {
        if (equalIgnoringASCIICase(field, name))
            return value;
    }
    return std::nullopt;
}

HTTPConnection::~HTTPConnection() {
    close(false);
}

std::optional<ScriptedRequest> HTTPConnection::readRequest() {
    constexpr std::string_view kEnd = "\r\n\r\n";
    std::size_t end = received_.find(kEnd);
    for (; end == std::string::npos; end = received_.find(kEnd)) {
        // Anything but a method's name is no HTTP, such as the beginning of a TLS connection.
        if (!fill() || std::isupper(static_cast<unsigned char>(received_[0])) == 0)
            return std::nullopt;
    }
    ScriptedRequest request = parseHead(std::string_view(received_).substr(0, end));
    received_.erase(0, end + kEnd.size());
    const std::size_t length =
        std::strtoul(request.header("Content-Length").value_or("0").c_str(), nullptr, 10);
    while (received_.size() < length) {
        if (!fill())
            return std::nullopt;
    }
    request.body = received_.substr(0, length);
    received_.erase(0, length);
    return request;
}

bool HTTPConnection::send(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t sent = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

void HTTPConnection::waitForClient() {
    while (fill()) {
    }
}

void HTTPConnection::close(bool reset) {
    const std::lock_guard lock(mutex_);
    if (socket_ < 0)
        return;
    const linger hard{.l_onoff = 1, .l_linger = 0};
    if (reset)
        ::setsockopt(socket_, SOL_SOCKET, SO_LINGER, &hard, sizeof(hard));
    ::close(std::exchange(socket_, -1));
}

void HTTPConnection::interrupt() {
    const std::lock_guard lock(mutex_);
    if (socket_ >= 0)
        ::shutdown(socket_, SHUT_RDWR);
}

bool HTTPConnection::fill() {
    std::array<char, 16384> bytes{};
    const ssize_t count = ::recv(socket_, bytes.data(), bytes.size(), 0);
    if (count > 0)
        received_.append(bytes.data(), static_cast<std::size_t>(count));
    return count > 0;
}

} // namespace quillmoth::test
