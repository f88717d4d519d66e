#include "tests/host/qelcore/files/ProgramImage.h"

namespace testsupport {

namespace {

/// Puts a little-endian number at an offset, making room for it.
void Put(std::string& bytes, std::size_t offset, std::uint32_t number, std::size_t size) {
  if (bytes.size() < offset + size) {
    bytes.resize(offset + size);
  }
  for (std::size_t index = 0; index < size; ++index) {
    bytes[offset + index] = static_cast<char>(number >> (8 * index) & 0xFF);
  }
}

void Put16(std::string& bytes, std::size_t offset, std::uint32_t number) {
  Put(bytes, offset, number, 2);
}
void Put32(std::string& bytes, std::size_t offset, std::uint32_t number) {
  Put(bytes, offset, number, 4);
}

constexpr std::uint32_t kSubdirectory = 0x80000000U;

/// A resource directory of numbered entries: its header; the caller puts the entries.
void PutDirectory(std::string& bytes, std::size_t offset, std::uint32_t entryCount) {
  Put16(bytes, offset + 12, 0);
  Put16(bytes, offset + 14, entryCount);
}

}  // namespace

ProgramImage MakeProgramImage(const ProgramImageOptions& options) {
  constexpr std::size_t kHeader = 0x80;
  constexpr std::size_t kResourceFile = 0x400;
  constexpr std::uint32_t kResourceAddress = 0x5000;
  std::string bytes = "MZ";
  Put32(bytes, 0x3C, kHeader);
  Put32(bytes, kHeader, 0x00004550);
  Put16(bytes, kHeader + 4, options.mIs64Bit ? 0x8664 : 0x014C);
  Put16(bytes, kHeader + 6, 2);
  const std::size_t optionalHeader = kHeader + 24;
  const std::size_t directories = optionalHeader + (options.mIs64Bit ? 112 : 96);
  const std::size_t sections = directories + std::size_t{16} * 8;
  Put16(bytes, kHeader + 20, static_cast<std::uint32_t>(sections - optionalHeader));
  Put16(bytes, optionalHeader, options.mIs64Bit ? 0x020B : 0x010B);
  Put32(bytes, directories - 4, 16);
  Put32(bytes, directories + 16, kResourceAddress);
  // A section of code first, so that the resources are not simply in the first one.
  const std::uint32_t sectionRows[2][3] = {{0x1000, 0x200, 0x200}, {kResourceAddress, 0x400, kResourceFile}};
  for (std::size_t index = 0; index < 2; ++index) {
    const std::size_t section = sections + index * 40;
    Put32(bytes, section + 12, sectionRows[index][0]);
    Put32(bytes, section + 16, sectionRows[index][1]);
    Put32(bytes, section + 20, sectionRows[index][2]);
    Put32(bytes, section + 36, 0);
  }

  // Three levels: kind, name, language; then the description of the data, then the data.
  const auto kindCount =
      static_cast<std::uint32_t>(options.mOtherResources) + (options.mHasVersion ? 1U : 0U);
  const std::uint32_t names = 16 + kindCount * 8;
  const std::uint32_t languages = names + 24;
  const std::uint32_t description = languages + 24;
  const std::uint32_t data = description + 16;
  PutDirectory(bytes, kResourceFile, kindCount);
  for (std::uint32_t index = 0; index < kindCount; ++index) {
    const bool isVersion = options.mHasVersion && index + 1 == kindCount;
    Put32(bytes, kResourceFile + 16 + std::size_t{index} * 8, isVersion ? 16 : 1 + index);
    Put32(bytes, kResourceFile + 20 + std::size_t{index} * 8, kSubdirectory | names);
  }
  PutDirectory(bytes, kResourceFile + names, 1);
  Put32(bytes, kResourceFile + names + 16, 1);
  Put32(bytes, kResourceFile + names + 20, kSubdirectory | languages);
  PutDirectory(bytes, kResourceFile + languages, 1);
  Put32(bytes, kResourceFile + languages + 16, 1033);
  Put32(bytes, kResourceFile + languages + 20, description);
  Put32(bytes, kResourceFile + description, kResourceAddress + data);
  Put32(bytes, kResourceFile + description + 4, 92);

  const std::size_t resource = kResourceFile + data;
  Put16(bytes, resource, 92);
  Put16(bytes, resource + 2, 52);
  const std::string key = "VS_VERSION_INFO";
  for (std::size_t index = 0; index < key.size(); ++index) {
    Put16(bytes, resource + 6 + index * 2, static_cast<unsigned char>(key[index]));
  }
  Put32(bytes, resource + 40, 0xFEEF04BDU);
  Put32(bytes, resource + 44, 0x00010000);
  Put32(bytes, resource + 48, std::uint32_t{options.mParts[0]} << 16 | options.mParts[1]);
  Put32(bytes, resource + 52, std::uint32_t{options.mParts[2]} << 16 | options.mParts[3]);
  ProgramImage image{.mBytes = bytes, .mVersionEnd = bytes.size()};
  image.mBytes.resize(kResourceFile + 0x400);
  return image;
}

}  // namespace testsupport
