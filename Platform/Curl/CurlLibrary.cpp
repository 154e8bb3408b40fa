#include "Platform/Curl/CurlLibrary.h"

#include <dlfcn.h>

#include <string>
#include <utility>

// The header wraps some functions in checking macros; here they are plain names.
#undef curl_easy_setopt
#undef curl_easy_getinfo

namespace quillmoth::platform {

namespace {

constexpr const char* kFileName = "libcurl.so.4";

/// Looks functions up, and remembers the first that is missing.
class Loader {
public:
    explicit Loader(void* library) : library_(library) {}

    template<class Function>
    void load(Function& function, const char* name) {
        function = reinterpret_cast<Function>(dlsym(library_, name));
        if (function == nullptr && missing_ == nullptr)
            missing_ = name;
    }

    [[nodiscard]] const char* missing() const { return missing_; }

private:
    void* library_;
    const char* missing_ = nullptr;
};

Error notUsable(const std::string& detail) {
    std::string text = "The network library ";
    text.append(kFileName).append(" cannot be used: ").append(detail).append(".");
    return {std::move(text)};
}

void loadFunctions(Loader& loader, CurlLibrary& curl) {
    loader.load(curl.globalInit, "curl_global_init");
    loader.load(curl.slistAppend, "curl_slist_append");
    loader.load(curl.slistFreeAll, "curl_slist_free_all");
    loader.load(curl.easyInit, "curl_easy_init");
    loader.load(curl.easyCleanup, "curl_easy_cleanup");
    loader.load(curl.easySetOption, "curl_easy_setopt");
    loader.load(curl.easyGetInfo, "curl_easy_getinfo");
    loader.load(curl.easyPause, "curl_easy_pause");
    loader.load(curl.easyErrorText, "curl_easy_strerror");
    loader.load(curl.multiInit, "curl_multi_init");
    loader.load(curl.multiCleanup, "curl_multi_cleanup");
    loader.load(curl.multiAddHandle, "curl_multi_add_handle");
    loader.load(curl.multiRemoveHandle, "curl_multi_remove_handle");
    loader.load(curl.multiPerform, "curl_multi_perform");
    loader.load(curl.multiPoll, "curl_multi_poll");
    loader.load(curl.multiWakeUp, "curl_multi_wakeup");
    loader.load(curl.multiReadInfo, "curl_multi_info_read");
}

Result<CurlLibrary> openLibrary() {
    void* library = dlopen(kFileName, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr)
        return notUsable("it is not installed");
    CurlLibrary curl{};
    Loader loader(library);
    loadFunctions(loader, curl);
    if (loader.missing() != nullptr)
        return notUsable(std::string("it is too old, for it lacks ") + loader.missing());
    if (curl.globalInit(CURL_GLOBAL_DEFAULT) != CURLE_OK)
        return notUsable("it does not start");
    return curl;
}

} // namespace

const Result<CurlLibrary>& curlLibrary() {
    static const Result<CurlLibrary> library = openLibrary();
    return library;
}

} // namespace quillmoth::platform
