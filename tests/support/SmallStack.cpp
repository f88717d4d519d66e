#include "tests/support/SmallStack.h"

#include <gtest/gtest.h>
#include <pthread.h>

namespace testsupport {

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr std::size_t kStackSize = 4 << 20;
#else
constexpr std::size_t kStackSize = 1 << 20;
#endif

void* RunBody(void* body) {
  (*static_cast<const std::function<void()>*>(body))();
  return nullptr;
}

}  // namespace

void RunOnStackOfOneMebibyte(const std::function<void()>& body) {
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, kStackSize), 0);
  pthread_t thread;
  std::function<void()> copy = body;
  ASSERT_EQ(pthread_create(&thread, &attributes, RunBody, &copy), 0);
  pthread_attr_destroy(&attributes);
  ASSERT_EQ(pthread_join(thread, nullptr), 0);
}

}  // namespace testsupport
