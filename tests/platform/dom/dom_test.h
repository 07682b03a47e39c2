// What the tests of documents and nodes share: documents from text, and what a call raised.
#pragma once

#include "kxmessage/error.h"

#include "platform/dom/document.h"
#include "platform/dom/dom_error.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <string_view>

namespace kx::dom {

/// What a call raised: status 0 for nothing.
struct Raised {
  std::int32_t status = 0;
  std::string text;
  std::string source;

  friend bool operator==(const Raised& a, const Raised& b) {
    return a.status == b.status && a.text == b.text && a.source == b.source;
  }
  friend std::ostream& operator<<(std::ostream& out, const Raised& raised) {
    return out << std::hex << raised.status << " " << raised.text << " from " << raised.source;
  }
};

template <typename Call>
Raised RaisedBy(const Call& call) {
  try {
    static_cast<void>(call());
    return {};
  } catch (const Error& error) {
    return {error.Number(), error.Description(), error.Source()};
  }
}

/// E_FAIL and E_INVALIDARG with a text, which gets its CR LF here.
inline Raised Fail(const std::string& text) { return {kStatusFail, text + "\r\n", "msxml3.dll"}; }
inline Raised BadArgument(const std::string& text = "The parameter is incorrect.") {
  return {kStatusInvalidArgument, text + "\r\n", "msxml3.dll"};
}
inline Raised ObjectNotSet() {
  return {static_cast<std::int32_t>(0x800A005BU), "Object variable or With block variable not set",
          "KXXMLMessageLib"};
}

/// A document as the library makes them, with this content.
inline Document Parsed(std::string_view xml) {
  Document document = NewDomDocument();
  EXPECT_TRUE(document.LoadXml(xml)) << xml << ": " << document.LastError().reason;
  return document;
}

/// The document's text without the CR LF after its root.
inline std::string XmlOf(const Document& document) {
  std::string xml = document.Xml();
  if (xml.size() >= 2) xml.resize(xml.size() - 2);
  return xml;
}

/// The first node that a walk in document order finds to have this qualified name.
inline Node Named(const Document& document, std::string_view name) {
  Cursor at(&document.Data(), kDocumentNode);
  const Cursor top = at;
  for (at = at.NextInTree(top); at; at = at.NextInTree(top)) {
    if (at.IsElement() && at.QualifiedName() == name) return Node(at);
  }
  ADD_FAILURE() << "no element " << name;
  return {};
}

/// "null" stands for nothing in tables.
inline std::string OrNull(const std::optional<std::string>& text) { return text.value_or("null"); }

}  // namespace kx::dom
