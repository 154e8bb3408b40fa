#pragma once

#include "Platform/Curl/CurlLibrary.h"
#include "Platform/URLRequest.h"
#include "Platform/URLSession.h"

#include <array>
#include <cstddef>
#include <map>
#include <memory>
#include <string>

namespace quillmoth::platform {

/// One HTTP exchange as libcurl knows it. `request` must outlive the object. Network thread.
class EasyHandle {
public:
    /// Called with the bytes; returns how many were taken, or CURL_WRITEFUNC_PAUSE.
    using Callback = std::size_t (*)(char* data, std::size_t size, std::size_t count, void* context);

    EasyHandle(const CurlLibrary& curl, const URLRequest& request,
               const URLSessionConfiguration& configuration);

    /// `headerCallback` gets each line of the head, `bodyCallback` the body; both get `context`.
    void setCallbacks(Callback headerCallback, Callback bodyCallback, void* context);

    [[nodiscard]] CURL* get() const { return handle_.get(); }

    void unpause();

    /// What was wrong with the server's certificate, as OpenSSL numbers it; 0 or 1 where only its names
    /// were.
    [[nodiscard]] long certificateFault() const;

    /// An address was not connected to since the request is for public ones only.
    [[nodiscard]] bool hasRefusedAddress() const { return *hasRefusedAddress_; }

    /// libcurl's own words for the failure; may be empty.
    [[nodiscard]] std::string errorDetail() const { return errorText_->data(); }

private:
    using ErrorText = std::array<char, CURL_ERROR_SIZE>;

    template<class Value>
    void set(CURLoption option, Value value);
    void setMethod(const URLRequest& request);
    void setHeaders(const URLRequest& request, const std::map<std::string, std::string>& additionalHeaders);
    void addHeader(const std::string& name, const std::string& value);
    void addHeaderLine(const std::string& line);

    const CurlLibrary& curl_;
    // Before the handle, which uses them to its end.
    std::unique_ptr<ErrorText> errorText_ = std::make_unique<ErrorText>();
    std::unique_ptr<bool> hasRefusedAddress_ = std::make_unique<bool>(false);
    std::unique_ptr<curl_slist, decltype(&::curl_slist_free_all)> headers_;
    std::unique_ptr<CURL, decltype(&::curl_easy_cleanup)> handle_;
};

} // namespace quillmoth::platform
