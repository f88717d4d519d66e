// A class of objects for scripts, and what tests of scripts share.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/qelscripting/HostSetup.h"
#include "platform/qelscripting.h"

namespace scripttest {

using Texts = std::vector<std::string>;

/// An object that notes how it is called.
class Recorder final : public qelscripting::ScriptObject {
 public:
  Recorder();
  ~Recorder() override;
};

/// What the objects of the class did, in this order.
[[nodiscard]] Texts& Recorded();

/// How many objects there are at this moment, and how many were made.
[[nodiscard]] int LivingRecorders();
[[nodiscard]] int MadeRecorders();

/// What `Recorder.Do` does; returns what the script gets.
[[nodiscard]] std::function<std::u16string()>& Action();

/// A method without parameters that returns true, to be changed.
[[nodiscard]] qelscripting::ScriptMethod Method(const std::string& name);

/// Defines a class in a namespace of its own, filled by `fill`.
void Define(const std::string& className, const std::function<void()>& fill);

/// A sink for `print`, and the other options at their defaults.
class Script : public testing::Test {
 protected:
  Script();
  ~Script() override;

  /// The options that the sessions made from now on have.
  void SetOptions(qelscripting::host::Options options);

  /// Runs a text called "test" in a session of its own; a failure gives "failed: " and the message.
  [[nodiscard]] static Texts Run(const std::string& text);

  /// The message with which a text fails; fails the test when it does not.
  [[nodiscard]] static std::string MessageOf(const std::string& text);

  std::string mPrinted;
};

}  // namespace scripttest
