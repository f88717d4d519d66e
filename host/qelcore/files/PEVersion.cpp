#include "host/qelcore/files/PEVersion.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace qelcore::host {

namespace {

/// Little-endian numbers at any offset of a stream. What lies outside reads as nothing.
class Bytes {
 public:
  explicit Bytes(std::istream& stream) : mStream(stream) {}

  [[nodiscard]] std::optional<std::uint16_t> Number16(std::uint64_t offset) {
    const auto number = Number<2>(offset);
    return number ? std::optional(static_cast<std::uint16_t>(*number)) : std::nullopt;
  }

  [[nodiscard]] std::optional<std::uint32_t> Number32(std::uint64_t offset) { return Number<4>(offset); }

 private:
  template <std::size_t size>
  std::optional<std::uint32_t> Number(std::uint64_t offset) {
    std::array<char, size> bytes{};
    mStream.clear();
    mStream.seekg(static_cast<std::istream::off_type>(offset));
    if (!mStream.read(bytes.data(), static_cast<std::streamsize>(size))) {
      return std::nullopt;
    }
    std::uint32_t number = 0;
    for (std::size_t index = size; index-- > 0;) {
      number = number << 8 | static_cast<unsigned char>(bytes[index]);
    }
    return number;
  }

  std::istream& mStream;
};

/// A part of the file and the address at which the system loads it.
struct Section {
  std::uint32_t mAddress = 0;
  std::uint32_t mSize = 0;
  std::uint32_t mFileOffset = 0;
};

struct Image {
  std::uint32_t mResourceAddress = 0;
  std::vector<Section> mSections;
};

constexpr std::uint16_t kProgramMark = 0x5A4D;     // "MZ"
constexpr std::uint32_t kHeaderMark = 0x00004550;  // "PE"
constexpr std::uint16_t kFormat32 = 0x010B;
constexpr std::uint16_t kFormat64 = 0x020B;
constexpr std::uint32_t kVersionResource = 16;
constexpr std::uint32_t kFixedInfoMark = 0xFEEF04BD;
constexpr std::uint32_t kSubdirectoryFlag = 0x80000000U;
constexpr std::uint16_t kMostSections = 96;
constexpr std::uint32_t kMostEntries = 4096;

std::optional<Image> ReadImage(Bytes& bytes) {
  if (bytes.Number16(0) != kProgramMark) {
    return std::nullopt;
  }
  const auto header = bytes.Number32(0x3C);
  if (!header || bytes.Number32(*header) != kHeaderMark) {
    return std::nullopt;
  }
  const std::uint64_t fileHeader = std::uint64_t{*header} + 4;
  const auto sectionCount = bytes.Number16(fileHeader + 2);
  const auto optionalSize = bytes.Number16(fileHeader + 16);
  const std::uint64_t optionalHeader = fileHeader + 20;
  const auto format = bytes.Number16(optionalHeader);
  if (!sectionCount || *sectionCount > kMostSections || !optionalSize ||
      (format != kFormat32 && format != kFormat64)) {
    return std::nullopt;
  }
  // The directories stand behind the fields whose width depends on the format; resources are the third one.
  const std::uint64_t directories = optionalHeader + (format == kFormat32 ? 96U : 112U);
  const auto directoryCount = bytes.Number32(directories - 4);
  const auto resourceAddress = bytes.Number32(directories + 16);
  if (!directoryCount || *directoryCount < 3 || !resourceAddress || *resourceAddress == 0) {
    return std::nullopt;
  }
  Image image{.mResourceAddress = *resourceAddress, .mSections = {}};
  const std::uint64_t sections = optionalHeader + *optionalSize;
  for (std::uint16_t index = 0; index < *sectionCount; ++index) {
    const std::uint64_t section = sections + std::uint64_t{index} * 40;
    const auto address = bytes.Number32(section + 12);
    const auto size = bytes.Number32(section + 16);
    const auto fileOffset = bytes.Number32(section + 20);
    if (!address || !size || !fileOffset) {
      return std::nullopt;
    }
    image.mSections.push_back({*address, *size, *fileOffset});
  }
  return image;
}

/// The place in the file of what the system loads at `address`; nothing when no section has it.
std::optional<std::uint64_t> FileOffsetOf(const Image& image, std::uint64_t address) {
  for (const Section& section : image.mSections) {
    if (address >= section.mAddress && address - section.mAddress < section.mSize) {
      return section.mFileOffset + (address - section.mAddress);
    }
  }
  return std::nullopt;
}

/// The value of the entry of `identifier` in the resource directory at `directory`; of the first entry when
/// no identifier is asked for.
std::optional<std::uint32_t> FindEntry(Bytes& bytes, std::uint64_t directory,
                                       std::optional<std::uint32_t> identifier) {
  const auto named = bytes.Number16(directory + 12);
  const auto numbered = bytes.Number16(directory + 14);
  if (!named || !numbered) {
    return std::nullopt;
  }
  const std::uint32_t count = std::uint32_t{*named} + *numbered;
  for (std::uint32_t index = 0; index < count && index < kMostEntries; ++index) {
    const std::uint64_t entry = directory + 16 + std::uint64_t{index} * 8;
    const auto entryIdentifier = bytes.Number32(entry);
    if (!entryIdentifier) {
      return std::nullopt;
    }
    if (!identifier || *entryIdentifier == *identifier) {
      return bytes.Number32(entry + 4);
    }
  }
  return std::nullopt;
}

/// The place in the file of the version resource: the tree has the levels kind, name and language.
std::optional<std::uint64_t> FindVersionResource(Bytes& bytes, const Image& image) {
  const auto root = FileOffsetOf(image, image.mResourceAddress);
  if (!root) {
    return std::nullopt;
  }
  std::uint64_t directory = *root;
  std::optional<std::uint32_t> wanted = kVersionResource;
  for (int level = 0; level < 3; ++level) {
    const auto entry = FindEntry(bytes, directory, wanted);
    wanted.reset();
    const bool isLast = level == 2;
    if (!entry || ((*entry & kSubdirectoryFlag) == 0) != isLast) {
      return std::nullopt;
    }
    directory = *root + (*entry & ~kSubdirectoryFlag);
  }
  const auto address = bytes.Number32(directory);
  return address ? FileOffsetOf(image, *address) : std::nullopt;
}

/// The dotted text of the fixed part of the version resource at `resource`.
std::string ReadFixedVersion(Bytes& bytes, std::uint64_t resource) {
  // The fixed part follows the header of three numbers and the key "VS_VERSION_INFO", at the next multiple
  // of 4.
  const auto fixedSize = bytes.Number16(resource + 2);
  constexpr std::uint64_t kFixedOffset = 40;
  constexpr std::uint16_t kFixedSize = 52;
  const auto mark = bytes.Number32(resource + kFixedOffset);
  const auto high = bytes.Number32(resource + kFixedOffset + 8);
  const auto low = bytes.Number32(resource + kFixedOffset + 12);
  if (!fixedSize || *fixedSize < kFixedSize || mark != kFixedInfoMark || !high || !low) {
    return {};
  }
  return std::to_string(*high >> 16) + '.' + std::to_string(*high & 0xFFFF) + '.' +
         std::to_string(*low >> 16) + '.' + std::to_string(*low & 0xFFFF);
}

}  // namespace

std::string ReadPEFileVersion(std::istream& stream) {
  Bytes bytes(stream);
  const std::optional<Image> image = ReadImage(bytes);
  if (!image) {
    return {};
  }
  const std::optional<std::uint64_t> resource = FindVersionResource(bytes, *image);
  return resource ? ReadFixedVersion(bytes, *resource) : std::string();
}

}  // namespace qelcore::host
