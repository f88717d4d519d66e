#include "host/qelcore/components/PIISafeName.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using qelcore::host::PersonalNames;
using qelcore::host::RemovePersonalData;

const PersonalNames kAnna{.mUser = "abell", .mHost = "anna-laptop.example.org", .mHome = "/data/homes/abell"};

struct Row {
  const char* mName;
  const char* mSafeName;
};

TEST(PIISafeName, ReplacesNamesOfUserAndMachineAsWholeWords) {
  const Row rows[] = {
      {"abell", "<user>"},
      {"Printer of ABell", "Printer of <user>"},
      {"abell's headset", "<user>'s headset"},
      {"(abell)", "(<user>)"},
      {"my_abell_x", "my_<user>_x"},
      {"anna-laptop", "<host>"},
      {"ANNA-LAPTOP.example.org audio", "<host> audio"},
      {"anna-laptop.example.org.", "<host>."},
      {"display on Anna-Laptop", "display on <host>"},
      {"labell", "labell"},
      {"abells", "abells"},
      {"abell2", "abell2"},
      {"\xC3\xA9"
       "abell",
       "\xC3\xA9"
       "abell"},
      {"anna-laptops", "anna-laptops"},
      {"anna", "anna"},
      {"laptop", "laptop"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(RemovePersonalData(row.mName, kAnna), row.mSafeName) << row.mName;
  }
}

TEST(PIISafeName, ReplacesPlacesOfPeopleInPaths) {
  const Row rows[] = {
      {"/data/homes/abell", "~"},
      {"/data/homes/abell/lib/x.so", "~/lib/x.so"},
      {"/data/homes/abellmore/x", "/data/homes/abellmore/x"},
      {"/home/bert/x.so", "~/x.so"},
      {"/home/bert", "~"},
      {"file:///home/bert/x", "file://~/x"},
      {"see \"/home/bert\" there", "see \"~\" there"},
      {"/home/", "/home/"},
      {"/home", "/home"},
      {"/homes/bert", "/homes/bert"},
      {"/Users/bert/Library", "~/Library"},
      {"C:\\Users\\Bert Smith\\AppData\\x.dll", "~\\AppData\\x.dll"},
      {"c:\\users\\bert", "~"},
      {"D:/Users/bert/x", "~/x"},
      {"C:\\Users\\", "C:\\Users\\"},
      {"C:\\UsersOld\\bert", "C:\\UsersOld\\bert"},
      {"C:\\Windows\\System32\\x.dll", "C:\\Windows\\System32\\x.dll"},
      {"/home/bert/home/carl/x", "~~/x"},
      {"/home/abell/x of abell", "~/x of <user>"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(RemovePersonalData(row.mName, kAnna), row.mSafeName) << row.mName;
  }
}

TEST(PIISafeName, ReplacesAddresses) {
  EXPECT_EQ(RemovePersonalData("Headset 00:1A:2B:3C:4D:5E of anna@example.org at 10.0.0.7", kAnna),
            "Headset <address> of <address> at <address>");
  EXPECT_EQ(RemovePersonalData("abell@example.org", kAnna), "<address>");
}

TEST(PIISafeName, NamesThatTellNothingStay) {
  for (const char* const name : {"root", "User", "ADMIN", "administrator", "guest", "intel", "nvidia",
                                 "audio", "ab", "x", "2080", "1000", "", "localhost"}) {
    const PersonalNames names{.mUser = name, .mHost = name, .mHome = "/var/lib/" + std::string(name)};
    const std::string text =
        "Intel NVIDIA audio 2080 root user admin guest ab x localhost " + std::string(name);
    EXPECT_EQ(RemovePersonalData(text, names), text) << name;
  }
  const PersonalNames root{.mUser = "root", .mHost = "debian", .mHome = "/root"};
  EXPECT_EQ(RemovePersonalData("/root/x.so", root), "~/x.so");
  EXPECT_EQ(RemovePersonalData("/rootfs/x.so", root), "/rootfs/x.so");
}

TEST(PIISafeName, UnknownNamesReplaceNothing) {
  EXPECT_EQ(RemovePersonalData("any / name", {}), "any / name");
  EXPECT_EQ(RemovePersonalData("any / name", {.mUser = "", .mHost = "", .mHome = "/"}), "any / name");
}

TEST(PIISafeName, AUserNamedLikeAMarkDoesNotNestMarks) {
  const PersonalNames names{.mUser = "address", .mHost = "host", .mHome = ""};
  EXPECT_EQ(RemovePersonalData("anna@example.org", names), "<address>");
}

TEST(PIISafeName, DeviceNamesStayAsTheyAre) {
  for (const std::string name :
       {"NVIDIA GeForce RTX 2080 Ti",
        "NVIDIA GeForce GTX 660  ",
        "Intel(R) Wi-Fi 6 AX201 160MHz",
        "WAN Miniport (PPTP)",
        "Intel\xC2\xAE UHD Graphics 630",
        "Realtek High Definition Audio",
        "Realtek PCIe GBE Family Controller #2",
        "AMD Radeon(TM) RX 5700 XT",
        "Microsoft Kernel Debug Network Adapter",
        "Advanced Micro Devices, Inc. [AMD/ATI] Turks PRO [Radeon HD 6570/7570/8550]",
        "RTL8111/8168/8411 PCI Express Gigabit Ethernet Controller",
        "802.11n USB Wireless LAN Card",
        "82579LM Gigabit Network Connection (Lewisville)",
        "USB Audio Device",
        "High Definition Audio (HDMI/DP)",
        "Bluetooth Device (Personal Area Network)",
        "Intel(R) Core(TM) i7-4770 CPU @ 3.40GHz",
        "Windows",
        "Linux",
        "C:\\Windows\\System32\\nvoglv64.dll",
        "/usr/lib/x86_64-linux-gnu/libGL.so.1",
        "24.21.14.1195",
        "\xE3\x83\xAA\xE3\x82\xA2\xE3\x83\xAB\xE3\x82\xBF\xE3\x82\xA4\xE3\x83\xA0",
        "GP104 [GeForce GTX 1070] (rev a1)",
        "Virtio 1.0 GPU",
        "llvmpipe (LLVM 15.0.6, 256 bits)",
        "Killer E2400 Gigabit Ethernet Controller"}) {
    EXPECT_EQ(RemovePersonalData(name, kAnna), name);
  }
}

}  // namespace
