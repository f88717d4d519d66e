#include "app/MachineSource.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <sstream>
#include <streambuf>
#include <system_error>
#include <utility>

#include "app/InputFile.h"
#include "app/Output.h"
#include "app/Paths.h"

namespace app {

namespace {

constexpr std::string_view kExtension = ".json";

std::vector<std::string> FilesIn(const std::string& directory) {
  std::vector<std::string> files;
  try {
    for (const auto& entry : std::filesystem::directory_iterator(ToPath(directory))) {
      std::string path = ToUTF8(entry.path());
      if (path.ends_with(kExtension) && !entry.is_directory()) files.push_back(std::move(path));
    }
  } catch (const std::filesystem::filesystem_error& error) {
    throw UserError(directory + ": " + error.code().message());
  }
  if (files.empty()) throw UserError(directory + ": there is no snapshot in it, no file named *.json");
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace

InputLines::InputLines() {
  // Else every byte is asked for one by one, and a line may wait for the ones behind it.
  std::ios::sync_with_stdio(false);
}

std::optional<InputLines::Line> InputLines::Next() {
  std::streambuf& input = *std::cin.rdbuf();
  constexpr auto kEnd = std::streambuf::traits_type::eof();
  Line line;
  int character = input.sbumpc();
  if (character == kEnd) return std::nullopt;
  for (; character != kEnd && character != '\n'; character = input.sbumpc()) {
    if (line.mText.size() < kLongestLine) {
      line.mText.push_back(static_cast<char>(character));
    } else {
      line.mIsTooLong = true;
    }
  }
  if (line.mText.ends_with('\r')) line.mText.pop_back();
  if (line.mIsTooLong) line.mText = std::string();
  return line;
}

MachineFiles::MachineFiles(const std::vector<std::string>& paths, const std::string& list) {
  for (const std::string& path : paths) Add(path);
  if (list == "-") {
    InputLines lines;
    while (auto line = lines.Next()) {
      if (line->mIsTooLong) throw UserError("--machines-from -: a line is too long for a path");
      if (!line->mText.empty()) Add(line->mText);
    }
  } else if (!list.empty()) {
    std::istringstream lines(ReadInputFile(list));
    for (std::string line; std::getline(lines, line);) {
      if (line.ends_with('\r')) line.pop_back();
      if (!line.empty()) Add(line);
    }
  }
  mCount = mPaths.size();
  if (mCount == 0 && !list.empty()) {
    throw UserError("--machines-from " + list + ": there is no path of a snapshot in it");
  }
}

void MachineFiles::Add(const std::string& path) {
  std::error_code ignored;
  if (!std::filesystem::is_directory(ToPath(path), ignored)) {
    mPaths.push_back(path);
    return;
  }
  for (std::string& file : FilesIn(path)) mPaths.push_back(std::move(file));
}

std::optional<std::string> MachineFiles::Next() {
  if (mPaths.empty()) return std::nullopt;
  std::string path = std::move(mPaths.front());
  mPaths.pop_front();
  return path;
}

}  // namespace app
