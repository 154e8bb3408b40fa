#include "Platform/Curl/Server.h"

#include "Foundation/ASCII.h"
#include "Foundation/URL.h"

namespace quillmoth::platform {

namespace {

std::string usualPort(const std::string& scheme) {
    return scheme == "https" ? "443" : "80";
}

} // namespace

std::string Server::name() const {
    return port == usualPort(scheme) ? host : host + ":" + port;
}

bool operator==(const Server& first, const Server& second) {
    return first.scheme == second.scheme && equalIgnoringASCIICase(first.host, second.host) &&
           first.port == second.port;
}

std::optional<Server> serverOf(const std::string& url) {
    const auto parsed = URL::parse(url, URL::kAnything);
    const bool hasPort = parsed && parsed->port && !parsed->port->empty();
    if (!parsed || !parsed->isWeb() || (hasPort && !parsed->portNumber()))
        return std::nullopt;
    Server server{
        .scheme = lowercasedASCII(*parsed->scheme), .host = percentDecoded(*parsed->host), .port = {}};
    server.port = hasPort ? std::to_string(*parsed->portNumber()) : usualPort(server.scheme);
    return server;
}

} // namespace quillmoth::platform
