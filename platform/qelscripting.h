// What the library asks of the host's scripting library: objects that scripts can call.
//
// A class of such objects is made known by a static object:
//
//   class Greeting final : public ScriptObjectDefinitionInitiatorBase {
//     void Define() override {
//       ScriptDefinitions::AddObjectDefinition(
//           std::make_shared<ScriptObjectDefinition>("Greeter", "Says hello", MakeGreeter, DefineGreeter));
//     }
//   };
//   const ScriptObjectDefinitionRegistrar gRegistrar(std::make_unique<Greeting>());
//
// The scripting library asks every initiator once, before the first script runs. While it calls
// `DefineGreeter`, the definition is the current one, to which `DefineGreeter` adds the methods.
//
// Everything here is the main thread's.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/qelcore/ClassRef.h"

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
class QELSCRIPTING_EXPORT ScriptObject : public qelcore::RefCountedObjectWithWeakPtr {
 public:
  /// `className` is the name under which scripts know the object's class.
  explicit ScriptObject(std::string className);
  ~ScriptObject() override;

  [[nodiscard]] const std::string& GetScriptClassName() const { return mClassName; }

 private:
  std::string mClassName;
};

// ---- Definitions ------------------------------------------------------------------------------------------

/// What passes between a script and a method: a truth value or a text.
using ScriptValue = std::variant<bool, std::u16string>;

enum class ScriptType : std::uint32_t { kBool, kString };

/// How a method may be called. The numbers are fixed: do not renumber. Flags are joined with |. Scripts see
/// only the methods that are callable.
inline constexpr std::uint32_t kMethodIsCallable = 1;
inline constexpr std::uint32_t kMethodIsPlain = 0x400000;

struct ScriptParameter {
  std::string mName;
  ScriptType mType;
};

/// A method of a class. The scripting library checks a call's arguments: `mCall` gets an object of the class,
/// and one value of the right type for each parameter; it returns a value of the type `mResult`. What it
/// throws becomes an error of the script.
struct ScriptMethod {
  std::string mName;
  std::vector<ScriptParameter> mParameters;
  ScriptType mResult;
  std::uint32_t mFlags;
  std::function<ScriptValue(ScriptObject& object, const std::vector<ScriptValue>& arguments)> mCall;
};

/// A set of components that objects of several classes share. The library only passes it on.
struct ScriptComponentGroup {
  std::string mName;
};
using ScriptComponentGroups = std::vector<ScriptComponentGroup>;

/// What can be defined about a class while it is the current one.
class QELSCRIPTING_EXPORT ScriptObjectDefinitionBase {
 public:
  ScriptObjectDefinitionBase();
  virtual ~ScriptObjectDefinitionBase();
  ScriptObjectDefinitionBase(const ScriptObjectDefinitionBase&) = delete;
  ScriptObjectDefinitionBase& operator=(const ScriptObjectDefinitionBase&) = delete;

  /// The definition that is being filled; null when none is.
  static ScriptObjectDefinitionBase* sCurrent;

  /// Puts the class into a namespace of scripts, in place of the one that it was in. One that is in none is
  /// under its own name.
  void AddOrChangeNamespace(std::string name);

  /// Adds a method; one of the same name replaces the earlier one.
  void AddMethod(ScriptMethod method);

  [[nodiscard]] const std::string& GetNamespace() const { return mNamespace; }
  [[nodiscard]] const std::vector<ScriptMethod>& GetMethods() const { return mMethods; }

 private:
  std::string mNamespace;
  std::vector<ScriptMethod> mMethods;
};

/// The definition of a class.
class QELSCRIPTING_EXPORT ScriptObjectDefinition : public ScriptObjectDefinitionBase {
 public:
  using Make = std::function<std::shared_ptr<ScriptObject>()>;
  using DefineObject = std::function<void()>;

  /// `make` makes an object of the class; `defineObject` fills the definition while it is the current one.
  ScriptObjectDefinition(std::string className, std::string description, Make make,
                         DefineObject defineObject);
  ~ScriptObjectDefinition() override;

  void AttachComponentGroups(ScriptComponentGroups groups);

  [[nodiscard]] const std::string& GetClassName() const { return mClassName; }
  [[nodiscard]] const std::string& GetDescription() const { return mDescription; }
  [[nodiscard]] const ScriptComponentGroups& GetComponentGroups() const { return mComponentGroups; }
  [[nodiscard]] std::shared_ptr<ScriptObject> MakeObject() const { return mMake(); }
  void Fill() { mDefineObject(); }

 private:
  std::string mClassName;
  std::string mDescription;
  Make mMake;
  DefineObject mDefineObject;
  ScriptComponentGroups mComponentGroups;
};

/// All classes of this process.
class QELSCRIPTING_EXPORT ScriptDefinitions {
 public:
  /// The groups that belong to a class; none when there are none of that name.
  [[nodiscard]] static ScriptComponentGroups GetScriptComponentGroupDefinitions(std::string_view className);

  /// Makes a class known: lets it be filled as the current definition, then keeps it. A definition of the
  /// same class name is replaced. What filling throws passes through, and the class stays unknown.
  static void AddObjectDefinition(std::shared_ptr<ScriptObjectDefinition> definition);
};

// ---- Registration -----------------------------------------------------------------------------------------

/// Defines one class when the scripting library asks for it.
class QELSCRIPTING_EXPORT ScriptObjectDefinitionInitiatorBase {
 public:
  virtual ~ScriptObjectDefinitionInitiatorBase();

  /// Makes the definition and adds it. What it throws is logged, and the class stays unknown.
  virtual void Define() = 0;
};

/// A static object that leaves an initiator with the scripting library. With its end, such as when its
/// library is unloaded, the initiator is not asked any more, and the definitions that it added are taken
/// back.
class QELSCRIPTING_EXPORT ScriptObjectDefinitionRegistrar {
 public:
  explicit ScriptObjectDefinitionRegistrar(std::unique_ptr<ScriptObjectDefinitionInitiatorBase> initiator);
  ~ScriptObjectDefinitionRegistrar();
  ScriptObjectDefinitionRegistrar(const ScriptObjectDefinitionRegistrar&) = delete;
  ScriptObjectDefinitionRegistrar& operator=(const ScriptObjectDefinitionRegistrar&) = delete;

 private:
  std::unique_ptr<ScriptObjectDefinitionInitiatorBase> mInitiator;
};

}  // namespace qelscripting
