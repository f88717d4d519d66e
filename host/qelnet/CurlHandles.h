// Owners of libcurl's handles.
#pragma once

#include <curl/curl.h>

#include <memory>

namespace qelnet {

template <auto kFree>
struct CurlDeleter {
  template <typename Handle>
  void operator()(Handle* handle) const {
    kFree(handle);
  }
};

using EasyHandle = std::unique_ptr<CURL, CurlDeleter<curl_easy_cleanup>>;
using MultiHandle = std::unique_ptr<CURLM, CurlDeleter<curl_multi_cleanup>>;
using UrlHandle = std::unique_ptr<CURLU, CurlDeleter<curl_url_cleanup>>;
using HeaderList = std::unique_ptr<curl_slist, CurlDeleter<curl_slist_free_all>>;
using CurlText = std::unique_ptr<char, CurlDeleter<curl_free>>;

/// Makes libcurl ready for use, once in the process. Throws when it cannot be used. Any thread may call.
void PrepareCurl();

}  // namespace qelnet
