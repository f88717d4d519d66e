#include "platform/qelcore/Config.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/qelcore/HostSetup.h"

namespace {

using qelcore::config::AddTerminationForSingleton;
using qelcore::config::ConfigurationParameters;
using qelcore::config::InitializerRegistrar;
using qelcore::config::ProcessBeginEndNotificationRegistrar;
using qelcore::host::BeginProcess;
using qelcore::host::EndProcess;

using Texts = std::vector<std::string>;

/// What ran, in this order. Not a plain object, because the registrars below run before it would be made.
Texts& Ran() {
  static Texts ran;
  return ran;
}

std::function<bool()> Note(const std::string& text, bool result = true) {
  return [text, result] {
    Ran().push_back(text);
    return result;
  };
}

// Registered before `main`, as the modules of an application do it.
const ProcessBeginEndNotificationRegistrar kFirstRegistrar([](const ConfigurationParameters& parameters) {
  const auto major = parameters.FindInteger("AppMajorVersion");
  const auto minor = parameters.FindInteger("AppMinorVersion");
  Ran().push_back("first " + (major ? std::to_string(*major) : "none") + '.' +
                  (minor ? std::to_string(*minor) : "none"));
});
const ProcessBeginEndNotificationRegistrar kSecondRegistrar([](const ConfigurationParameters&) {
  Ran().push_back("second");
});

class ProcessLife : public testing::Test {
 protected:
  void SetUp() override {
    qelcore::host::SetTraceSink([this](std::string_view channel, int level, std::string_view text) {
      mTraced.push_back(std::string(channel) + ' ' + std::to_string(level) + ' ' + std::string(text));
    });
    qelcore::host::SetTraceLevel(1);
  }

  void TearDown() override { qelcore::host::SetTraceSink(nullptr); }

  [[nodiscard]] bool WasTraced(const std::string& part) const {
    for (const std::string& text : mTraced) {
      if (text.find(part) != std::string::npos) {
        return true;
      }
    }
    return false;
  }

  Texts mTraced;
};

TEST_F(ProcessLife, ParametersAreDeliveredOnceInTheOrderOfConstruction) {
  EXPECT_EQ(Ran(), Texts());
  qelcore::host::SetApplicationVersion(7, 3);
  EXPECT_TRUE(BeginProcess());
  EXPECT_EQ(Ran(), (Texts{"first 7.3", "second"}));
  EXPECT_TRUE(BeginProcess());
  EXPECT_EQ(Ran().size(), 2U);
}

TEST_F(ProcessLife, WithoutAVersionNoneIsDelivered) {
  EXPECT_TRUE(BeginProcess());
  EXPECT_EQ(Ran(), (Texts{"first none.none", "second"}));
}

TEST_F(ProcessLife, ALateRegistrarGetsTheParametersAtOnce) {
  qelcore::host::SetApplicationVersion(-1, 2147483647);
  EXPECT_TRUE(BeginProcess());
  const ProcessBeginEndNotificationRegistrar late([](const ConfigurationParameters& parameters) {
    Ran().push_back(std::to_string(*parameters.FindInteger("AppMinorVersion")));
  });
  EXPECT_EQ(Ran().back(), "2147483647");
}

TEST_F(ProcessLife, ACallbackThatThrowsDoesNotKeepTheOthers) {
  const ProcessBeginEndNotificationRegistrar faulty(
      [](const ConfigurationParameters&) { throw std::runtime_error("from a callback"); });
  const ProcessBeginEndNotificationRegistrar after(
      [](const ConfigurationParameters&) { Ran().push_back("after"); });
  EXPECT_TRUE(BeginProcess());
  EXPECT_EQ(Ran().back(), "after");
  EXPECT_TRUE(WasTraced("from a callback"));
}

TEST_F(ProcessLife, WhatItsModuleTookAwayDoesNotRun) {
  {
    const ProcessBeginEndNotificationRegistrar gone(
        [](const ConfigurationParameters&) { Ran().push_back("gone"); });
    const InitializerRegistrar unloaded("unloaded", Note("unloaded"), {});
  }
  const InitializerRegistrar dependent("dependent", Note("dependent"), {"unloaded"});
  EXPECT_FALSE(BeginProcess());
  EXPECT_EQ(Ran(), (Texts{"first none.none", "second"}));
  EXPECT_TRUE(WasTraced("\"unloaded\", which it depends on, is not known."));
}

TEST(ConfigurationParameters, AnIntegerIsFoundWhenItIsOne) {
  const ConfigurationParameters parameters({{"number", 5}, {"text", "5"}});
  EXPECT_EQ(parameters.FindInteger("number"), 5);
  EXPECT_EQ(parameters.FindInteger("text"), std::nullopt);
  EXPECT_EQ(parameters.FindInteger("absent"), std::nullopt);
  EXPECT_EQ(ConfigurationParameters().FindInteger("number"), std::nullopt);
}

TEST_F(ProcessLife, InitializersRunAfterWhatTheyDependOn) {
  const InitializerRegistrar c("c", Note("c"), {"b", "a"});
  const InitializerRegistrar b("b", Note("b"), {"a"});
  const InitializerRegistrar d("d", Note("d"), {});
  const InitializerRegistrar a("a", Note("a"), {});
  EXPECT_TRUE(BeginProcess());
  EXPECT_EQ(Ran(), (Texts{"first none.none", "second", "d", "a", "b", "c"}));
  EXPECT_TRUE(BeginProcess());
  EXPECT_EQ(Ran().size(), 6U);
  EXPECT_EQ(mTraced, Texts());
}

TEST_F(ProcessLife, AFailureKeepsThoseThatDependOnIt) {
  const InitializerRegistrar a("a", Note("a", false), {});
  const InitializerRegistrar b("b", Note("b"), {"a"});
  const InitializerRegistrar c("c", Note("c"), {"b"});
  const InitializerRegistrar d("d", Note("d"), {});
  EXPECT_FALSE(BeginProcess());
  EXPECT_EQ(Ran(), (Texts{"first none.none", "second", "a", "d"}));
  EXPECT_TRUE(WasTraced("Config 1 The initializer \"a\" failed."));
  EXPECT_TRUE(WasTraced("The initializer \"b\" did not run, because \"a\" failed."));
  EXPECT_TRUE(WasTraced("The initializer \"c\" did not run, because \"b\" failed."));
}

TEST_F(ProcessLife, AnInitializerThatThrowsHasFailed) {
  const InitializerRegistrar a("a", []() -> bool { throw std::runtime_error("from an initializer"); }, {});
  const InitializerRegistrar empty("empty", nullptr, {});
  const InitializerRegistrar b("b", Note("b"), {});
  EXPECT_FALSE(BeginProcess());
  EXPECT_EQ(Ran().back(), "b");
  EXPECT_TRUE(WasTraced("from an initializer"));
  EXPECT_TRUE(WasTraced("\"empty\" failed"));
}

TEST_F(ProcessLife, AnUnknownDependencyIsNamed) {
  const InitializerRegistrar a("a", Note("a"), {"nobody"});
  const InitializerRegistrar b("b", Note("b"), {"a"});
  const InitializerRegistrar c("c", Note("c"), {});
  EXPECT_FALSE(BeginProcess());
  EXPECT_EQ(Ran().back(), "c");
  EXPECT_EQ(Ran().size(), 3U);
  EXPECT_TRUE(
      WasTraced("The initializer \"a\" did not run, because \"nobody\", which it depends on, is not known."));
  EXPECT_TRUE(WasTraced("\"b\" did not run, because \"a\""));
}

TEST_F(ProcessLife, ACircleIsNamedAndTheOthersRun) {
  const InitializerRegistrar a("a", Note("a"), {"b"});
  const InitializerRegistrar b("b", Note("b"), {"a"});
  const InitializerRegistrar self("self", Note("self"), {"self"});
  const InitializerRegistrar c("c", Note("c"), {});
  EXPECT_FALSE(BeginProcess());
  EXPECT_EQ(Ran(), (Texts{"first none.none", "second", "c"}));
  for (const char* const name : {"a", "b", "self"}) {
    EXPECT_TRUE(WasTraced("The initializer \"" + std::string(name) + "\" did not run")) << name;
  }
}

TEST_F(ProcessLife, ACircleIsListed) {
  const InitializerRegistrar a("a", Note("a"), {"done", "b"});
  const InitializerRegistrar b("b", Note("b"), {"c"});
  const InitializerRegistrar c("c", Note("c"), {"missing", "a"});
  const InitializerRegistrar outside("outside", Note("outside"), {"b"});
  const InitializerRegistrar self("self", Note("self"), {"self"});
  const InitializerRegistrar done("done", Note("done"), {});
  EXPECT_FALSE(BeginProcess());
  EXPECT_EQ(
      mTraced,
      (Texts{"Config 1 The initializer \"a\" did not run, because it waits for itself: a -> b -> c -> a.",
             "Config 1 The initializer \"b\" did not run, because it waits for itself: b -> c -> a -> b.",
             "Config 1 The initializer \"c\" did not run, because it waits for itself: c -> a -> b -> c.",
             "Config 1 The initializer \"c\" did not run, because \"missing\", which it depends on, is not "
             "known.",
             "Config 1 The initializer \"outside\" did not run, because \"b\" did not run.",
             "Config 1 The initializer \"self\" did not run, because it waits for itself: self -> self."}));
}

TEST_F(ProcessLife, OfTwoCirclesTheShorterIsListed) {
  const InitializerRegistrar a("a", Note("a"), {"b", "d"});
  const InitializerRegistrar b("b", Note("b"), {"c"});
  const InitializerRegistrar c("c", Note("c"), {"a"});
  const InitializerRegistrar d("d", Note("d"), {"a"});
  EXPECT_FALSE(BeginProcess());
  EXPECT_TRUE(WasTraced("\"a\" did not run, because it waits for itself: a -> d -> a."));
  EXPECT_TRUE(WasTraced("\"c\" did not run, because it waits for itself: c -> a -> b -> c."));
}

TEST_F(ProcessLife, AnInitializerMayRegisterAnother) {
  const InitializerRegistrar a("a",
                               [] {
                                 Ran().push_back("a");
                                 static const InitializerRegistrar inner("inner", Note("inner"), {"a"});
                                 return true;
                               },
                               {});
  EXPECT_TRUE(BeginProcess());
  EXPECT_EQ(Ran(), (Texts{"first none.none", "second", "a", "inner"}));
}

TEST_F(ProcessLife, ALateInitializerRunsAsSoonAsItCan) {
  EXPECT_TRUE(BeginProcess());
  Ran().clear();
  const InitializerRegistrar b("b", Note("b"), {"a"});
  EXPECT_EQ(Ran(), Texts());
  const InitializerRegistrar a("a", Note("a"), {});
  EXPECT_EQ(Ran(), (Texts{"a", "b"}));
}

TEST_F(ProcessLife, AnUnknownDependencyOfALateInitializerIsNamedOnce) {
  EXPECT_TRUE(BeginProcess());
  const InitializerRegistrar a("a", Note("a"), {"nobody"});
  const Texts expected = {
      "Config 1 The initializer \"a\" did not run, because \"nobody\", which it depends on, is not known."};
  EXPECT_EQ(mTraced, expected);
  const InitializerRegistrar b("b", Note("b"), {});
  EXPECT_EQ(Ran().back(), "b");
  EXPECT_EQ(mTraced, expected);
  EXPECT_FALSE(BeginProcess());
  EXPECT_EQ(mTraced, expected);
}

TEST_F(ProcessLife, ACircleOfLateInitializersIsNamed) {
  EXPECT_TRUE(BeginProcess());
  const InitializerRegistrar self("self", Note("self"), {"self"});
  const InitializerRegistrar a("a", Note("a"), {"b"});
  const InitializerRegistrar b("b", Note("b"), {"a"});
  EXPECT_EQ(
      mTraced,
      (Texts{"Config 1 The initializer \"self\" did not run, because it waits for itself: self -> self.",
             "Config 1 The initializer \"a\" did not run, because \"b\", which it depends on, is not known.",
             "Config 1 The initializer \"b\" did not run, because it waits for itself: b -> a -> b."}));
}

TEST_F(ProcessLife, WhatAnInitializerRegistersMayWaitForItsEnd) {
  const auto registersAnother = [](const std::string& name) {
    return [name] {
      static std::vector<std::unique_ptr<InitializerRegistrar>> inner;
      inner.push_back(std::make_unique<InitializerRegistrar>("inner " + name, Note("inner " + name),
                                                             std::vector<std::string>{name}));
      return true;
    };
  };
  const InitializerRegistrar a("a", registersAnother("a"), {});
  EXPECT_TRUE(BeginProcess());
  const InitializerRegistrar late("late", registersAnother("late"), {});
  EXPECT_EQ(Ran(), (Texts{"first none.none", "second", "inner a", "inner late"}));
  EXPECT_EQ(mTraced, Texts());
}

TEST_F(ProcessLife, TerminationRunsBackwards) {
  AddTerminationForSingleton([] { Ran().push_back("first"); }, "first");
  AddTerminationForSingleton([] { throw std::runtime_error("from an action"); }, "the faulty one");
  AddTerminationForSingleton(nullptr, "the empty one");
  AddTerminationForSingleton(
      [] {
        Ran().push_back("last");
        AddTerminationForSingleton([] { Ran().push_back("added by last"); }, "inner");
      },
      "last");
  EndProcess();
  EXPECT_EQ(Ran(), (Texts{"last", "added by last", "first"}));
  EXPECT_TRUE(WasTraced("the faulty one: from an action"));
  EXPECT_TRUE(WasTraced("the empty one"));
  EndProcess();
  EXPECT_EQ(Ran().size(), 3U);
}

}  // namespace
