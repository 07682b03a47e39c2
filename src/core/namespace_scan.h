// Finds the default namespace declarations in the text of a document: every `xmlns="` that stands
// as an attribute in a start tag. What looks alike in text, CDATA sections, comments, processing
// instructions, the document type or other attributes' values is none.
//
// The text need not be a document: what is broken is left to the parser that reads it next.
#pragma once

#include <cstddef>
#include <string_view>

namespace kx::core {

/// Walks the declarations of a text from its start. Borrows the text. Linear in its length.
class NamespaceScan {
 public:
  static constexpr std::size_t kEnd = std::string_view::npos;
  /// What every declaration begins with.
  static constexpr std::string_view kDeclaration = "xmlns=\"";

  explicit NamespaceScan(std::string_view text) noexcept : text_(text) {}

  /// The offset of the next declaration's name, or kEnd. Its value begins kDeclaration.size()
  /// behind it and may lack its closing quote.
  [[nodiscard]] std::size_t Next() noexcept;

 private:
  void SkipMarkup() noexcept;
  void SkipBehind(std::string_view end) noexcept;
  void SkipDocumentType() noexcept;
  void SkipQuoted() noexcept;

  std::string_view text_;
  std::size_t at_ = 0;         // the first character not yet understood
  bool inStartTag_ = false;    // whether that lies in a start tag, outside quotes
  std::size_t candidate_ = 0;  // the next text that looks like a declaration, at or behind at_
  bool searched_ = false;      // whether candidate_ is known
};

}  // namespace kx::core
