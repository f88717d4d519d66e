// What the library asks of the host's scripting library: a place for the object through which a script writes
// the report. Nothing is scripted yet, and the reference host has no library for it yet.
#pragma once

#include <string>

#if defined(_WIN32)
#if defined(QELSCRIPTING_BUILDING)
#define QELSCRIPTING_EXPORT __declspec(dllexport)
#else
#define QELSCRIPTING_EXPORT __declspec(dllimport)
#endif
#else
#define QELSCRIPTING_EXPORT __attribute__((visibility("default")))
#endif

namespace qelscripting {

/// The base of every object that scripts can hold.
class QELSCRIPTING_EXPORT ScriptObject {
 public:
  /// `className` is the name under which scripts know the object's class.
  explicit ScriptObject(std::string className);
  virtual ~ScriptObject();
  ScriptObject(const ScriptObject&) = delete;
  ScriptObject& operator=(const ScriptObject&) = delete;

 private:
  std::string mClassName;
};

}  // namespace qelscripting
