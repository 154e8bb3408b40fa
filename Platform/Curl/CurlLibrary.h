#pragma once

#include "Foundation/Result.h"

#include <curl/curl.h>

namespace quillmoth::platform {

/// The functions of libcurl that are in use. The library brings two dozen others with it, which would cost
/// each start of the program 10 ms; so it is opened when the first request is made.
struct CurlLibrary {
    decltype(&::curl_global_init) globalInit;
    decltype(&::curl_slist_append) slistAppend;
    decltype(&::curl_slist_free_all) slistFreeAll;

    decltype(&::curl_easy_init) easyInit;
    decltype(&::curl_easy_cleanup) easyCleanup;
    decltype(&::curl_easy_setopt) easySetOption;
    decltype(&::curl_easy_getinfo) easyGetInfo;
    decltype(&::curl_easy_pause) easyPause;
    decltype(&::curl_easy_strerror) easyErrorText;

    decltype(&::curl_multi_init) multiInit;
    decltype(&::curl_multi_cleanup) multiCleanup;
    decltype(&::curl_multi_add_handle) multiAddHandle;
    decltype(&::curl_multi_remove_handle) multiRemoveHandle;
    decltype(&::curl_multi_perform) multiPerform;
    decltype(&::curl_multi_poll) multiPoll;
    decltype(&::curl_multi_wakeup) multiWakeUp;
    decltype(&::curl_multi_info_read) multiReadInfo;
};

/// Opens the library on the first call; it stays open. The error is a sentence for the user. Any thread.
const Result<CurlLibrary>& curlLibrary();

} // namespace quillmoth::platform
