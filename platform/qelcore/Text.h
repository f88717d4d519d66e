// Text: conversion between UTF-8 and UTF-16, and the stream that reports are built in.
#pragma once

#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

#include "platform/qelcore/Export.h"

namespace qelcore {

namespace string {

/// Converts UTF-8 to UTF-16. Every malformed sequence becomes one U+FFFD; nothing is thrown.
[[nodiscard]] QELCORE_EXPORT std::u16string UTF8to16(std::string_view text);

/// Converts UTF-16 to UTF-8. Every unpaired surrogate becomes one U+FFFD; nothing is thrown.
[[nodiscard]] QELCORE_EXPORT std::string UTF16to8(std::u16string_view text);

}  // namespace string

/// A UTF-8 text that never changes. Copies share it; any number of threads may read it.
class QELCORE_EXPORT ImmutableString {
 public:
  ImmutableString() = default;
  explicit ImmutableString(std::string text) : mText(std::make_shared<const std::string>(std::move(text))) {}

  [[nodiscard]] std::string_view View() const {
    return mText ? std::string_view(*mText) : std::string_view();
  }

 private:
  std::shared_ptr<const std::string> mText;
};

/// An output stream that collects UTF-8 text. Numbers are written in the default format of the classic locale
/// whatever the process's locale is: no grouping, a point before decimals.
class QELCORE_EXPORT UTF8StringStream : public std::ostringstream {
 public:
  UTF8StringStream();
  ~UTF8StringStream() override;

  /// All that was written so far.
  [[nodiscard]] std::string Text() const { return str(); }
};

}  // namespace qelcore
