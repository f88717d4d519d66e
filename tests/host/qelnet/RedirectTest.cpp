#include "host/qelnet/Redirect.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using qelnet::FollowRedirect;
using qelnet::IsRedirect;
using qelnet::ParseUrl;
using qelnet::Request;

Request RequestFor(const std::string& url) {
  Request request;
  request.mUrl = ParseUrl(url).value();
  return request;
}

TEST(Redirect, StatusesThatSendElsewhere) {
  for (const long status : {301L, 302L, 303L, 307L, 308L}) EXPECT_TRUE(IsRedirect(status)) << status;
  for (const long status : {0L, 200L, 201L, 300L, 304L, 305L, 306L, 309L, 404L}) {
    EXPECT_FALSE(IsRedirect(status)) << status;
  }
}

struct SchemeCase {
  const char* mFrom;
  const char* mTo;
  bool mIsFollowed;
};

TEST(Redirect, NeverLosesTheEncryption) {
  const SchemeCase cases[] = {
      {"http://a.example/", "http://b.example/x", true},
      {"http://a.example/", "https://b.example/x", true},
      {"https://a.example/", "https://b.example/x", true},
      {"https://a.example/", "http://a.example/x", false},
      {"HTTPS://a.example/", "HTTP://a.example/x", false},
      {"http://a.example/", "ftp://b.example/x", false},
      {"http://a.example/", "file:///etc/hostname", false},
      {"http://a.example/", "", false},
      {"http://a.example/", "/x", false},
      {"http://a.example/", "http://b.example:99999/x", false},
  };
  for (const SchemeCase& row : cases) {
    SCOPED_TRACE(std::string(row.mFrom) + " -> " + row.mTo);
    Request request = RequestFor(row.mFrom);
    const std::string before = request.mUrl.mText;
    EXPECT_EQ(FollowRedirect(request, row.mTo).empty(), row.mIsFollowed);
    EXPECT_EQ(request.mUrl.mText, row.mIsFollowed ? row.mTo : before);
    EXPECT_EQ(request.mRedirects, row.mIsFollowed ? 1 : 0);
  }
}

TEST(Redirect, TenAreFollowed) {
  Request request = RequestFor("http://a.example/");
  for (int number = 1; number <= 10; ++number) {
    EXPECT_EQ(FollowRedirect(request, "http://a.example/" + std::to_string(number)), "");
  }
  EXPECT_EQ(FollowRedirect(request, "http://a.example/11"), "It was redirected too often.");
  EXPECT_EQ(request.mUrl.mText, "http://a.example/10");
}

TEST(Redirect, CredentialsStayWithTheirServer) {
  const qelnet::Headers all = {
      {"Authorization", "a"}, {"COOKIE", "b"}, {"host", "c"}, {"Proxy-Authorization", "d"}, {"X-Kept", "e"}};
  const qelnet::Headers kept = {{"X-Kept", "e"}};
  Request request = RequestFor("http://a.example/");
  request.mHeaders = all;
  EXPECT_EQ(FollowRedirect(request, "http://A.EXAMPLE:80/elsewhere"), "");
  EXPECT_EQ(request.mHeaders, all);
  for (const char* const location : {"http://a.example:8080/", "https://a.example/", "http://b.example/"}) {
    SCOPED_TRACE(location);
    Request other = RequestFor("http://a.example/");
    other.mHeaders = all;
    EXPECT_EQ(FollowRedirect(other, location), "");
    EXPECT_EQ(other.mHeaders, kept);
  }
}

}  // namespace
