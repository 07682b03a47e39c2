// What a parser made of a document, in a form that three parsers can be compared in: one line an
// item, names with their namespaces, attributes and declarations in order of their names, adjacent
// text merged, references to entities replaced by what they stand for.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kx::test {

/// A reader's verdict, with its tree or the failure.
struct Reading {
  bool accepted = false;
  std::string tree;       ///< of an accepted document
  long code = 0;          ///< the reader's own number of the failure
  std::string message;    ///< the reader's own words, for failed comparisons
  std::size_t place = 0;  ///< byte offset of the failure where the reader tells it
};

/// Writes the lines. Parsers call it in document order.
class NeutralTree {
 public:
  struct Name {
    std::string uri;
    std::string local;
    std::string prefix;
  };

  void StartElement(const Name& name);
  /// Belong to the element started last; taken until something else is written.
  void Declaration(std::string_view prefix, std::string_view uri);
  void Attribute(const Name& name, std::string_view value);
  void EndElement();
  void Text(std::string_view text);
  void Comment(std::string_view text);
  void Instruction(std::string_view target, std::string_view data);

  [[nodiscard]] std::string Take();

 private:
  void Flush();
  void Line(char kind, std::string_view text);

  std::string lines_;
  std::string text_;
  std::vector<std::string> items_;  // declarations and attributes of the open start tag
};

/// Our parser's reading of `bytes`, with attribute values normalised as XML 1.0 asks.
[[nodiscard]] Reading ReadWithOurs(std::string_view bytes);
/// The same with attribute values as they are written, which is what callers of the DOM get.
[[nodiscard]] Reading ReadAsWritten(std::string_view bytes);
[[nodiscard]] Reading ReadWithExpat(std::string_view bytes);
[[nodiscard]] Reading ReadWithLibxml(std::string_view bytes);

}  // namespace kx::test
