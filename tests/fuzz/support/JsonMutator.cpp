#include "tests/fuzz/support/JsonMutator.h"

#include <algorithm>
#include <any>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "platform/qelcore/Json.h"
#include "platform/qelcore/Text.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t mostBytes);

namespace {

namespace json = qelcore::json;

using Random = std::minstd_rand;

std::size_t Below(Random& random, std::size_t bound) {
  return std::uniform_int_distribution<std::size_t>(0, bound - 1)(random);
}

std::string_view AnyWord(Random& random) {
  const auto words = fuzz::JsonVocabulary();
  return words[Below(random, words.size())];
}

/// All values of a tree, the root first.
void Collect(std::any& value, std::vector<std::any*>& nodes) {
  nodes.push_back(&value);
  if (auto* const object = std::any_cast<json::Dictionary>(&value)) {
    for (auto& [key, member] : *object) Collect(*member, nodes);
  } else if (auto* const array = std::any_cast<json::Array>(&value)) {
    for (std::any& element : *array) Collect(element, nodes);
  }
}

std::any& AnyNode(std::any& root, Random& random) {
  std::vector<std::any*> nodes;
  Collect(root, nodes);
  return *nodes[Below(random, nodes.size())];
}

/// A copy that shares nothing: a dictionary's copy shares its members.
std::any DeepCopy(const std::any& value) {
  return json::Parse(json::Serialise(value));
}

std::any AnyAtom(Random& random) {
  switch (Below(random, 6)) {
    case 0:
      return std::string(AnyWord(random));
    case 1:
      return std::int64_t{static_cast<std::int64_t>(Below(random, 4)) - 1};
    case 2: {
      constexpr std::array kIntegers{std::numeric_limits<std::int64_t>::min(),
                                     std::numeric_limits<std::int64_t>::max(), std::int64_t{1} << 32,
                                     std::int64_t{1} << 31};
      return kIntegers.at(Below(random, kIntegers.size()));
    }
    case 3:
      return Below(random, 2) == 0;
    case 4:
      return Below(random, 2) == 0 ? std::any(1.5) : std::any(nullptr);
    default:
      return Below(random, 2) == 0 ? std::any(json::Array()) : std::any(json::Dictionary());
  }
}

void MutateText(std::string& text, Random& random) {
  switch (Below(random, 4)) {
    case 0:
      text = AnyWord(random);
      return;
    case 1:
      text.insert(Below(random, text.size() + 1), AnyWord(random));
      return;
    default:
      std::vector<std::uint8_t> bytes(text.begin(), text.end());
      bytes.resize(text.size() + 64);
      const std::size_t size = LLVMFuzzerMutate(bytes.data(), text.size(), bytes.size());
      const std::string changed(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
      // The writer replaces what is no UTF-8; done here it is seen by the next change, too.
      text = qelcore::string::UTF16to8(qelcore::string::UTF8to16(changed));
  }
}

void MutateArray(json::Array& array, std::any& root, Random& random) {
  const std::size_t place = array.empty() ? 0 : Below(random, array.size());
  switch (Below(random, array.empty() ? 2 : 5)) {
    case 0:
      array.push_back(AnyAtom(random));
      return;
    case 1: {
      std::any copy = DeepCopy(AnyNode(root, random));
      array.push_back(std::move(copy));
      return;
    }
    case 2:
      array.erase(array.begin() + static_cast<std::ptrdiff_t>(place));
      return;
    case 3: {
      std::any copy = DeepCopy(array[place]);
      array.insert(array.begin() + static_cast<std::ptrdiff_t>(place), std::move(copy));
      return;
    }
    default:
      std::swap(array[place], array[Below(random, array.size())]);
  }
}

void MutateObject(json::Dictionary& object, std::any& root, Random& random) {
  const auto any = object.empty()
                       ? object.end()
                       : std::next(object.begin(), static_cast<std::ptrdiff_t>(Below(random, object.size())));
  switch (Below(random, object.empty() ? 2 : 4)) {
    case 0:
      json::Set(object, AnyWord(random), AnyAtom(random));
      return;
    case 1: {
      std::any copy = DeepCopy(AnyNode(root, random));
      json::Set(object, AnyWord(random), std::move(copy));
      return;
    }
    case 2:
      object.erase(any);
      return;
    default:
      json::Set(object, AnyWord(random), DeepCopy(*any->second));
      object.erase(any);
  }
}

/// Changes one value of the tree.
void MutateTree(std::any& root, Random& random) {
  std::any& node = AnyNode(root, random);
  const bool isReplaced = Below(random, 8) == 0;
  if (auto* const text = std::any_cast<std::string>(&node); text != nullptr && !isReplaced) {
    MutateText(*text, random);
  } else if (auto* const array = std::any_cast<json::Array>(&node); array != nullptr && !isReplaced) {
    MutateArray(*array, root, random);
  } else if (auto* const object = std::any_cast<json::Dictionary>(&node); object != nullptr && !isReplaced) {
    MutateObject(*object, root, random);
  } else {
    node = AnyAtom(random);
  }
}

std::any ParseBytes(const std::uint8_t* data, std::size_t size) {
  return json::Parse(std::string(data, data + size));
}

/// Puts the tree's text in place; 0 when there is no room.
std::size_t Write(const std::any& root, std::uint8_t* data, std::size_t mostBytes) {
  const std::string text = json::Serialise(root);
  if (text.size() > mostBytes) return 0;
  std::copy(text.begin(), text.end(), data);
  return text.size();
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t mostBytes,
                                               unsigned int seed) {
  Random random(seed);
  std::any root = Below(random, 10) == 0 ? std::any() : ParseBytes(data, size);
  if (!root.has_value()) return LLVMFuzzerMutate(data, size, mostBytes);
  for (std::size_t changes = 1 + Below(random, 4); changes > 0; --changes) MutateTree(root, random);
  const std::size_t written = Write(root, data, mostBytes);
  return written > 0 ? written : LLVMFuzzerMutate(data, size, mostBytes);
}

/// Puts a part of the second document in the place of a part of the first.
extern "C" std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* first, std::size_t firstSize,
                                                 const std::uint8_t* second, std::size_t secondSize,
                                                 std::uint8_t* data, std::size_t mostBytes,
                                                 unsigned int seed) {
  Random random(seed);
  std::any root = ParseBytes(first, firstSize);
  std::any other = ParseBytes(second, secondSize);
  if (!root.has_value() || !other.has_value()) return 0;
  AnyNode(root, random) = DeepCopy(AnyNode(other, random));
  return Write(root, data, mostBytes);
}
