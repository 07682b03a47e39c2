// What an edit of the tree must keep to: which kinds stand where, which names and texts are
// allowed, what a declaration of a namespace may say, and what is not to be changed at all. Every
// rule raises before anything was changed; the edits themselves are elsewhere.
#pragma once

#include "platform/dom/cursor.h"

#include <string>
#include <string_view>

namespace kx {
class Variant;
}

namespace kx::dom {

/// True for the kinds that have a value of their own.
[[nodiscard]] bool HasValue(NodeType type) noexcept;

/// True for the names "xmlns" and "xmlns:p".
[[nodiscard]] bool IsDeclarationName(std::string_view qualifiedName) noexcept;

// Texts ------------------------------------------------------------------------------------------

/// `text` with CR LF and CR made LF; a view of `scratch` when there is anything to change.
[[nodiscard]] std::string_view FoldLineEnds(std::string_view text, std::string& scratch);

/// Raises: E_FAIL for a character that XML does not allow, and for text that is no UTF-8.
void CheckCharacters(std::string_view text);

/// Raises: as CheckCharacters; E_INVALIDARG for a comment with "-->" or an instruction with "?>".
void CheckData(NodeType type, std::string_view text);

/// `value` as the text of a node: converted as the run-time does, a date as month/day/year.
/// Raises: E_INVALIDARG for Null; the run-time's errors for what has no text.
[[nodiscard]] std::string TextOfValue(const Variant& value);

// Names ------------------------------------------------------------------------------------------

/// Raises: E_INVALIDARG for null, E_FAIL for what is no name with at most one colon.
void CheckQualifiedName(std::string_view name);
/// Raises: E_FAIL for what is no name, and for "xml" with a capital.
void CheckTarget(std::string_view name);
/// Raises: E_FAIL for what is no name without colon.
void CheckEntityName(std::string_view name);

/// The name of a new element or attribute in the document. `uri` empty stands for no namespace.
/// Note: "xml:…" and the declarations of namespaces have theirs whatever `uri` says.
[[nodiscard]] NameId BindName(DocumentData& data, NodeType type, std::string_view qualifiedName,
                              std::string_view uri);

/// The namespace that `prefix` (not empty) is bound to at `element`, by a declaration or by a name
/// in use; kNoUri when it is not.
[[nodiscard]] UriId FindNamespace(const Cursor& element, std::string_view prefix);

/// Raises unless `element` may get the declaration `name` (which it does not have) of the
/// namespace `uri`: E_INVALIDARG when the prefix is in use on it for another namespace or a prefix
/// is bound to nothing, E_FAIL for what is reserved.
void CheckDeclaration(const Cursor& element, std::string_view name, std::string_view uri);

// The tree ---------------------------------------------------------------------------------------

/// Raises unless the content of `at` may change. E_FAIL for a declaration of a namespace in use,
/// for what an entity reference stands for, and for the texts of an XML declaration's attributes.
void CheckChangeable(const Cursor& at);

/// Raises unless `child` (of a fragment, its children) may stand below `parent`, `replaced` (if
/// any) being taken out: E_FAIL.
void CheckInsertion(const Cursor& parent, const Cursor& child, const Cursor& replaced);

/// Gives `element`, which has just lost its attribute `name`, the value that a schema declares for
/// it, if one does.
void SupplyDefault(DocumentData& data, NodeId element, NameId name);

}  // namespace kx::dom
