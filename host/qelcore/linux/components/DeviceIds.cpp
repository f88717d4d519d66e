#include "host/qelcore/linux/components/DeviceIds.h"

#include <utility>

#include "host/qelcore/components/PlainText.h"

namespace qelcore::host::components {
namespace {

constexpr std::size_t kLongestList = std::size_t{16} << 20;

/// The rest of the line that begins with `start`, behind the blanks that follow it. Nothing when no line of
/// the text does.
std::optional<std::pair<std::size_t, std::string_view>> FindLine(std::string_view text,
                                                                 const std::string& start) {
  std::size_t begin = 0;
  if (!text.starts_with(start)) {
    begin = text.find("\n" + start);
    if (begin == std::string_view::npos) return std::nullopt;
    ++begin;
  }
  std::size_t end = text.find('\n', begin);
  if (end == std::string_view::npos) end = text.size();
  return std::pair(end, text.substr(begin + start.size(), end - begin - start.size()));
}

/// Where the lines that belong to the vendor whose line ends at `begin` end: at the next line that is neither
/// indented nor empty nor a comment.
std::size_t EndOfSection(std::string_view text, std::size_t begin) {
  for (std::size_t end = begin; end < text.size();) {
    const std::size_t line = end + 1;
    if (line >= text.size()) break;
    const char first = text[line];
    if (first != '\t' && first != '#' && first != '\n' && first != '\r') return end + 1;
    end = text.find('\n', line);
    if (end == std::string_view::npos) break;
  }
  return text.size();
}

}  // namespace

DeviceIds::DeviceIds(const RootedFiles& files, std::vector<std::string> places, std::string bus)
    : mFiles(files), mPlaces(std::move(places)), mBus(std::move(bus)) {}

DeviceIds DeviceIds::ForPci(const RootedFiles& files) {
  return {files, {"usr/share/hwdata/pci.ids", "usr/share/misc/pci.ids", "usr/share/pci.ids"}, "PCI"};
}

DeviceIds DeviceIds::ForUsb(const RootedFiles& files) {
  return {files, {"usr/share/hwdata/usb.ids", "usr/share/misc/usb.ids", "usr/share/usb.ids"}, "USB"};
}

const std::string& DeviceIds::Text() {
  if (mText) return *mText;
  mText.emplace();
  for (const std::string& place : mPlaces) {
    std::optional<std::string> text = mFiles.Read(place, kLongestList);
    if (!text || text->empty()) continue;
    mText = std::move(text);
    break;
  }
  return *mText;
}

const DeviceIds::Section& DeviceIds::SectionOf(std::uint32_t vendor) {
  const auto [place, isNew] = mSections.try_emplace(vendor);
  Section& section = place->second;
  if (!isNew) return section;
  const std::string_view text = Text();
  if (const auto line = FindLine(text, FourHexadecimalDigits(vendor) + "  ")) {
    section.mVendorName = CleanText(line->second);
    section.mBegin = line->first;
    section.mEnd = EndOfSection(text, line->first);
  }
  return section;
}

std::string DeviceIds::Name(const DeviceId& id) {
  const Section& section = SectionOf(id.mVendor);
  const std::string device = FourHexadecimalDigits(id.mDevice);
  if (section.mVendorName.empty()) {
    return mBus + " device " + FourHexadecimalDigits(id.mVendor) + ":" + device;
  }
  const std::string_view lines =
      std::string_view(Text()).substr(section.mBegin, section.mEnd - section.mBegin);
  const auto line = FindLine(lines, "\t" + device + "  ");
  const std::string deviceName = line ? CleanText(line->second) : std::string();
  return section.mVendorName + " " + (deviceName.empty() ? "Device " + device : deviceName);
}

}  // namespace qelcore::host::components
