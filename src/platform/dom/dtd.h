// What the internal subset of a document type declaration says: entities, attribute types and
// defaults, notations. External subsets and external entities are named here and never fetched.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace kx::dom {

struct EntityDeclaration {
  std::string name;
  std::string replacement;  ///< of an internal entity: its replacement text (XML 1.0, 4.5)
  std::string publicId;
  std::string systemId;
  std::string notation;  ///< of an unparsed entity
  bool external = false;
  bool open = false;  ///< being expanded at the moment: a reference to it would be a loop
};

enum class AttributeType : unsigned char {
  kCData,
  kId,
  kIdRef,
  kIdRefs,
  kEntity,
  kEntities,
  kNmToken,
  kNmTokens,
  kNotation,
  kEnumeration,
};
enum class DefaultKind : unsigned char { kRequired, kImplied, kFixed, kValue };

struct AttributeDeclaration {
  std::string name;
  AttributeType type = AttributeType::kCData;
  DefaultKind defaultKind = DefaultKind::kImplied;
  std::string defaultLiteral;  ///< as written between the quotes, references included
};

/// The attributes declared for one element type, in order; the first declaration of one counts.
struct AttributeList {
  std::vector<AttributeDeclaration> declarations;
  std::unordered_map<std::string, std::size_t> byName;
  [[nodiscard]] const AttributeDeclaration* Find(const std::string& name) const {
    const auto found = byName.find(name);
    return found == byName.end() ? nullptr : &declarations[found->second];
  }
};

struct NotationDeclaration {
  std::string name;
  std::string publicId;
  std::string systemId;
  bool hasPublicId = false;
  bool hasSystemId = false;
};

/// A processing instruction of the internal subset; the DOM has no node for it.
struct DtdInstruction {
  std::string target;
  std::string data;
};

struct Dtd {
  std::string name;
  std::string publicId;
  std::string systemId;
  bool hasExternalSubset = false;
  bool hasPublicId = false;
  /// Parameter entity references whose entity was not read: declarations may be missing.
  bool hasUnreadParts = false;
  bool hasParameterReferences = false;
  std::unordered_map<std::string, EntityDeclaration> entities;
  std::unordered_map<std::string, EntityDeclaration> parameterEntities;
  std::unordered_map<std::string, AttributeList> attributes;  ///< by element type
  std::vector<std::string> entityOrder;                       ///< names in order of declaration
  std::vector<NotationDeclaration> notations;
  std::vector<DtdInstruction> instructions;

  [[nodiscard]] EntityDeclaration* FindEntity(const std::string& entityName) {
    const auto found = entities.find(entityName);
    return found == entities.end() ? nullptr : &found->second;
  }
};

}  // namespace kx::dom
