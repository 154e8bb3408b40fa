#include "Foundation/FatalError.h"

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace quillmoth {

namespace {

FatalErrorHandler& installedHandler() {
    static FatalErrorHandler handler;
    return handler;
}

} // namespace

void fatalError(const std::string& text) {
    if (installedHandler())
        installedHandler()(text);
    std::fputs(("Fatal error: " + text + "\n").c_str(), stderr);
    std::fflush(nullptr);
    std::abort();
}

ScopedFatalErrorHandler::ScopedFatalErrorHandler(FatalErrorHandler handler)
    : former_(std::exchange(installedHandler(), std::move(handler))) {}

ScopedFatalErrorHandler::~ScopedFatalErrorHandler() {
    installedHandler() = std::move(former_);
}

} // namespace quillmoth
