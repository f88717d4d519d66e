// `scr diff` as a step in a pipe: a line out for each line in.
#include "platform/qelcore/Json.h"
#include "tests/app/ScrTest.h"

namespace {

namespace json = qelcore::json;
using testsupport::Blocklist;

constexpr const char* kOffice = R"({"components": [{"name": "Windows", "type": "OS", "version": "10"}]})";

class LinuxDiffLinesTest : public testsupport::ScrTest {
 protected:
  void SetUp() override {
    Write("old.json", Blocklist(""));
    Write("new.json", Blocklist(R"({"name": "Windows", "type": "OS"})"));
  }

  /// Runs a line of the shell, in which `scr_diff` compares the two lists on lines.
  testsupport::ProgramResult Shell(const std::string& line) {
    return testsupport::RunProgram(
        "/bin/bash",
        {"-c", "scr_diff() { " QELSCR_SCR
               " --pref-dir preferences --app-dir application diff old.json new.json "
               "\"$@\"; }\n" +
                   line},
        {}, mFiles.Path(), mFiles.Path());
  }

  static std::vector<std::string> Kinds(const std::string& output) {
    std::vector<std::string> kinds;
    for (std::size_t place = 0; place < output.size();) {
      const std::size_t end = output.find('\n', place);
      const std::any value = json::Parse(output.substr(place, end - place));
      EXPECT_TRUE(value.has_value()) << output.substr(place, end - place);
      const json::Dictionary& object = json::AsDictionary(value);
      EXPECT_EQ(json::FindInteger(object, "line"), kinds.size() + 1);
      kinds.push_back(*json::FindText(object, "kind"));
      place = end + 1;
    }
    return kinds;
  }
};

TEST_F(LinuxDiffLinesTest, EachLineIsAnsweredInItsOrder) {
  Write("lines", std::string(kOffice) + "\n{\n\n" + kOffice + "\r\n[1]\n" +
                     R"({"machine": "lab 7", "components": []})" + "\n" + kOffice);
  const auto result = Shell("scr_diff --machine - < lines");
  EXPECT_EQ(result.mExitCode, 1) << "for the bad lines";
  EXPECT_EQ(result.mErrors, "");
  EXPECT_EQ(Kinds(result.mOutput),
            (std::vector<std::string>{"machine", "error", "error", "machine", "error", "machine", "machine"}))
      << result.mOutput;
  EXPECT_NE(result.mOutput.find("\"machine\":\"lab 7\""), std::string::npos) << result.mOutput;
  EXPECT_NE(result.mOutput.find("\"error\":\"line 2, "), std::string::npos) << result.mOutput;
}

/// A cluster engine takes any other code for a failure.
TEST_F(LinuxDiffLinesTest, DifferencesAreNoFailureOfAStep) {
  Write("lines", std::string(kOffice) + "\n");
  const auto result = Shell("scr_diff -m - < lines");
  EXPECT_EQ(result.mExitCode, 0) << result.mErrors;
  EXPECT_NE(result.mOutput.find("\"new\":[{"), std::string::npos) << result.mOutput;
  const auto none = Shell("scr_diff -m - < /dev/null");
  EXPECT_EQ(none.mExitCode, 0) << none.mErrors;
  EXPECT_EQ(none.mOutput, "");
}

TEST_F(LinuxDiffLinesTest, ManyLinesKeepTheirOrder) {
  std::string lines;
  for (int number = 0; number < 3000; ++number) lines += std::string(number % 3 == 1 ? "{" : kOffice) + "\n";
  Write("lines", lines);
  const auto result = Shell("scr_diff -m - --threads 8 < lines");
  EXPECT_EQ(result.mExitCode, 1) << result.mErrors;
  const auto kinds = Kinds(result.mOutput);
  ASSERT_EQ(kinds.size(), 3000U);
  for (std::size_t place = 0; place < kinds.size(); ++place) {
    EXPECT_EQ(kinds[place], place % 3 == 1 ? "error" : "machine") << place;
  }
}

/// A line is answered when it came, not when the next one comes or the input ends.
TEST_F(LinuxDiffLinesTest, AnAnswerDoesNotWaitForTheNextLine) {
  Write("line", std::string(kOffice) + "\n");
  const auto result = Shell(
      "mkfifo in out; scr_diff -m - < in > out & exec 3> in 4< out; cat line >&3; read -r -t 60 answer <&4; "
      "echo \"$answer\"; exec 3>&-; wait");
  EXPECT_EQ(Kinds(result.mOutput), std::vector<std::string>{"machine"}) << result.mErrors;
}

TEST_F(LinuxDiffLinesTest, NoLineEndsTheStream) {
  // Deep nesting, bytes that are no text, zeros, very many components, and a line beyond every length.
  const auto result = Shell(
      "{ head -c 100000 /dev/zero | tr '\\0' '['; echo; printf '\\xff\\xfe\\x80\\n'; printf '\\0\\0\\n';"
      "  printf '{\"components\": ['; for i in {1..11000}; do printf '{\"name\":\"a\",\"type\":\"OS\"},'; "
      "done;"
      "  echo '{\"name\":\"a\",\"type\":\"OS\"}]}'; head -c 40000000 /dev/zero | tr '\\0' 'x'; echo; "
      "  echo '" +
      std::string(kOffice) + "'; } | scr_diff -m -");
  EXPECT_EQ(result.mExitCode, 1) << result.mErrors;
  EXPECT_EQ(Kinds(result.mOutput),
            (std::vector<std::string>{"error", "error", "error", "error", "error", "machine"}))
      << result.mOutput;
  EXPECT_NE(result.mOutput.find("more than 10000 components"), std::string::npos) << result.mOutput;
  EXPECT_NE(result.mOutput.find("longer than 16777216 bytes"), std::string::npos) << result.mOutput;
}

TEST_F(LinuxDiffLinesTest, AReaderThatHasSeenEnoughEndsItQuietly) {
  Write("line", std::string(kOffice) + "\n");
  for (const char* const signal : {"", "trap '' PIPE; "}) {
    const auto result =
        Shell(std::string(signal) + "yes \"$(cat line)\" 2> /dev/null | scr_diff -m - | head -n 1");
    EXPECT_EQ(result.mErrors, "") << signal;
    EXPECT_EQ(Kinds(result.mOutput), std::vector<std::string>{"machine"}) << signal;
  }
}

TEST_F(LinuxDiffLinesTest, AFullDiskIsAnError) {
  Write("line", std::string(kOffice) + "\n");
  const auto result = Shell("scr_diff -m - < line > /dev/full");
  EXPECT_EQ(result.mExitCode, 1);
  EXPECT_NE(result.mErrors.find("standard output"), std::string::npos) << result.mErrors;
}

TEST_F(LinuxDiffLinesTest, PathsComeFromStandardInput) {
  Write("fleet/a.json", kOffice);
  Write("fleet/b c.json", kOffice);
  const auto result =
      Shell("printf 'fleet/b c.json\\nfleet/a.json\\n' | scr_diff --machines-from - | tail -n 1");
  EXPECT_EQ(result.mOutput, "2 machines, 2 with a change: 2 new, 0 ongoing, 0 resolved\n") << result.mErrors;
}

TEST_F(LinuxDiffLinesTest, ProgressIsShownOnATerminal) {
  for (int number = 0; number < 20; ++number) Write("fleet/" + std::to_string(number) + ".json", kOffice);
  // `script` runs the command on a terminal of its own.
  const auto result =
      Shell("script --quiet --return --command '" QELSCR_SCR
            " --pref-dir preferences --app-dir application diff old.json old.json --machine fleet' "
            "typescript");
  EXPECT_EQ(result.mExitCode, 0) << result.mOutput;
  EXPECT_NE(result.mOutput.find("\r\x1b[K1 of 20 machines"), std::string::npos) << result.mOutput;
  EXPECT_NE(result.mOutput.find("\r\x1b[K\r\n20 machines, 0 with a change"), std::string::npos)
      << result.mOutput;
}

}  // namespace
