#include "host/qelcore/windows/components/Registry.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/host/qelcore/windows/components/OwnRegistry.h"

namespace qelcore::host::windows {
namespace {

class Registry : public testing::Test {
 protected:
  testsupport::OwnRegistry mRegistry;
};

TEST_F(Registry, HasTexts) {
  mRegistry.SetText(L"A\\B", L"Text", L"caf\u00E9 \U0001F600");
  mRegistry.SetText(L"A\\B", L"Long", std::wstring(10'000, L'x'));
  mRegistry.SetText(L"A\\B", L"Endless", std::wstring(100'000, L'x'));
  mRegistry.SetText(L"A\\B", L"Placeholder", L"%SystemRoot%");
  mRegistry.SetText(L"A\\B", L"Empty", L"");
  mRegistry.SetNumber(L"A\\B", L"Number", 7);
  const RegistryKey key(L"A\\B");
  EXPECT_EQ(key.Text(L"Text"), "caf\xC3\xA9 \xF0\x9F\x98\x80");
  EXPECT_EQ(key.Text(L"Long"), std::string(10'000, 'x'));
  EXPECT_EQ(key.Text(L"Endless"), "");
  EXPECT_EQ(key.Text(L"Placeholder"), "%SystemRoot%");
  EXPECT_EQ(key.Text(L"Empty"), "");
  EXPECT_EQ(key.Text(L"Number"), "");
  EXPECT_EQ(key.Text(L"Absent"), "");
}

TEST_F(Registry, HasNumbers) {
  mRegistry.SetNumber(L"A", L"Number", 0xFFFFFFFF);
  mRegistry.SetBytes(L"A", L"Four", {0x78, 0x56, 0x34, 0x12});
  mRegistry.SetBytes(L"A", L"Eight", {0, 0, 0, 0, 2, 0, 0, 0});
  mRegistry.SetBytes(L"A", L"Three", {1, 2, 3});
  mRegistry.SetBytes(L"A", L"Nine", {1, 2, 3, 4, 5, 6, 7, 8, 9});
  mRegistry.SetText(L"A", L"Text", L"7");
  const RegistryKey key(L"A");
  EXPECT_EQ(key.Number(L"Number"), 0xFFFFFFFFU);
  EXPECT_EQ(key.Number(L"Four"), 0x12345678U);
  EXPECT_EQ(key.Number(L"Eight"), std::uint64_t{2} << 32);
  for (const wchar_t* const name : {L"Three", L"Nine", L"Text", L"Absent"}) {
    EXPECT_EQ(key.Number(name), std::nullopt);
  }
}

TEST_F(Registry, AMissingKeyHasNoValues) {
  const RegistryKey key(L"Absent");
  EXPECT_EQ(key.Text(L"Text"), "");
  EXPECT_EQ(key.Number(L"Number"), std::nullopt);
  const RegistryKey invalid = RegistryKey::Adopt(reinterpret_cast<void*>(std::intptr_t{-1}));
  EXPECT_EQ(invalid.Text(L"Text"), "");
}

}  // namespace
}  // namespace qelcore::host::windows
