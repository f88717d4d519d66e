// The layout of the text report, byte for byte: components.
#include <gmock/gmock.h>

#include <string>

#include "tests/report/ReportSupport.h"
#include "tests/report/text/TextReportFixture.h"

namespace {

using qelcore::utility::OSComponentRegistry;
using qelcore::utility::OSComponentType;
using testsupport::Component;
using testsupport::kDebugSection;
using testsupport::Property;

class TextReportWriterTest : public testsupport::TextReportFixture {};

TEST_F(TextReportWriterTest, NoComponents) {
  EXPECT_EQ(TextOf({}, {}), "System Components:\n\n");
}

TEST_F(TextReportWriterTest, EveryKind) {
  EXPECT_EQ(TextOf({Component(OSComponentType::kOS, "Example OS", "10.0.17763.1"),
                    Component(OSComponentType::kVideo, "Card", "24.21.14.1195"),
                    Component(OSComponentType::kAudio, "Speakers (High Definition)", "6.0.9912.1"),
                    Component(OSComponentType::kNetwork, "Ethernet", "10.79"),
                    Component(OSComponentType::kFile, "/opt/driver.so", "1"), Property("memory.mb", "16384"),
                    Component(OSComponentType::kInvalid, "Thing", "3")},
                   {}),
            "System Components:\n"
            "\n"
            "[Operating System] Example OS v.10.0.17763.1\n"
            "\n"
            "----------------------------------------------------------------------------\n"
            "[Video] Card v.24.21.14.1195\n"
            "\n"
            "----------------------------------------------------------------------------\n"
            "[Audio] Speakers (High Definition) v.6.0.9912.1\n"
            "\n"
            "----------------------------------------------------------------------------\n"
            "[Network] Ethernet v.10.79.0.0\n"
            "\n"
            "----------------------------------------------------------------------------\n"
            "[File System] /opt/driver.so v.1.0.0.0\n"
            "\n"
            "----------------------------------------------------------------------------\n"
            "[Property] memory.mb : 16384\n"
            "\n"
            "----------------------------------------------------------------------------\n"
            "[Unknown] Thing v.3.0.0.0\n");
}

TEST_F(TextReportWriterTest, ComponentsOfOneKindFollowOneAnother) {
  EXPECT_EQ(
      TextOf(
          {Component(OSComponentType::kOS, "Example OS", "1"), Component(OSComponentType::kOS, "Kernel", "2"),
           Component(OSComponentType::kVideo, "A", "3"), Component(OSComponentType::kVideo, "B", "4")},
          {}),
      "System Components:\n"
      "\n"
      "[Operating System] Example OS v.1.0.0.0\n"
      "[Operating System] Kernel v.2.0.0.0\n"
      "\n"
      "----------------------------------------------------------------------------\n"
      "[Video] A v.3.0.0.0\n"
      "[Video] B v.4.0.0.0\n");
}

TEST_F(TextReportWriterTest, AFirstComponentThatIsNoOperatingSystemBeginsWithASeparator) {
  EXPECT_EQ(TextOf({Component(OSComponentType::kVideo, "Card", "1")}, {}),
            "System Components:\n"
            "\n"
            "\n"
            "----------------------------------------------------------------------------\n"
            "[Video] Card v.1.0.0.0\n");
}

TEST_F(TextReportWriterTest, AKindThatComesBackIsSeparatedAgain) {
  EXPECT_EQ(TextOf({Component(OSComponentType::kVideo, "A", "1"), Component(OSComponentType::kOS, "B", "2"),
                    Component(OSComponentType::kVideo, "C", "3")},
                   {}),
            "System Components:\n"
            "\n"
            "\n"
            "----------------------------------------------------------------------------\n"
            "[Video] A v.1.0.0.0\n"
            "\n"
            "----------------------------------------------------------------------------\n"
            "[Operating System] B v.2.0.0.0\n"
            "\n"
            "----------------------------------------------------------------------------\n"
            "[Video] C v.3.0.0.0\n");
}

TEST_F(TextReportWriterTest, NamesVersionsAndValuesAreWrittenAsTheyAre) {
  EXPECT_EQ(
      TextOf({Component(OSComponentType::kOS, "", ""), Component(OSComponentType::kOS, "zero", "0.0.0.0"),
              Component(OSComponentType::kOS, "plus", "0.1.+"),
              Component(OSComponentType::kOS, "%s%n {0} <b>\t\\n", "4294967295"),
              Component(OSComponentType::kOS, "Ger\xC3\xA4t \xE6\x97\xA5\xE6\x9C\xAC", "1"), Property("", ""),
              Property("a : b", " : c v.1 ")},
             {}),
      "System Components:\n"
      "\n"
      "[Operating System]  v.\n"
      "[Operating System] zero v.0.0.0.0\n"
      "[Operating System] plus v.0.1.+\n"
      "[Operating System] %s%n {0} <b>\t\\n v.4294967295.0.0.0\n"
      "[Operating System] Ger\xC3\xA4t \xE6\x97\xA5\xE6\x9C\xAC v.1.0.0.0\n"
      "\n"
      "----------------------------------------------------------------------------\n"
      "[Property]  : \n"
      "[Property] a : b :  : c v.1 \n");
}

TEST_F(TextReportWriterTest, WhatIsInTheStreamStays) {
  qelcore::UTF8StringStream stream;
  stream << "before\n";
  qelsystemcompatibilityreport::WriteTextReport(stream, OSComponentRegistry({}), {}, {});
  EXPECT_EQ(stream.Text(), std::string("before\nSystem Components:\n\n") + kDebugSection);
}

}  // namespace
