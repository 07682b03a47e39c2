// A schema as the model sees it: the tree of its text, in plain vectors and maps, and nothing
// compiled. Every rule of the model asks this tree afresh. Shares no code with the library.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace kx::model {

/// One element of a schema document.
struct Declaration {
  std::string tag;
  std::map<std::string, std::string> attributes;  ///< by the name as it is written
  std::vector<Declaration> children;
  std::string text;  ///< the character data directly in it

  friend bool operator==(const Declaration&, const Declaration&) = default;
};

/// An attribute of a declaration. Absent and empty both give `fallback`, and so does no
/// declaration.
[[nodiscard]] std::string Property(const Declaration* declaration, const std::string& name,
                                   std::string_view fallback = "");

/// The children of a declaration that have that tag, in order.
[[nodiscard]] std::vector<const Declaration*> ChildrenOf(const Declaration& declaration,
                                                         std::string_view tag);
/// The first child with that tag whose attribute `name` is exactly `value`; null for none.
[[nodiscard]] const Declaration* FindChild(const Declaration& declaration, std::string_view tag,
                                           const std::string& name, std::string_view value);

/// The element types of a schema, wherever they stand, in document order.
[[nodiscard]] std::vector<const Declaration*> ElementTypesOf(const Declaration& schema);
/// The element type of exactly that name; null for none.
[[nodiscard]] const Declaration* FindElementType(const Declaration& schema, std::string_view name);
/// The attribute type of a name: that of the element type, else the global one; null for none.
[[nodiscard]] const Declaration* FindAttributeType(std::string_view name, const Declaration& schema,
                                                   const Declaration& elementType);

/// The text of a schema document.
[[nodiscard]] std::string SchemaText(const Declaration& schema);
/// A schema document read. Knows the XML that schemas are written in: elements, attributes, text,
/// the five entities and decimal references; comments, instructions and a document type are passed
/// over. Raises: std::runtime_error for anything else.
[[nodiscard]] Declaration ReadSchema(std::string_view text);

/// ASCII only, which is all that the names here need.
[[nodiscard]] std::string Lower(std::string_view text);

}  // namespace kx::model
