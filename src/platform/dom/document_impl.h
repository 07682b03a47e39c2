// The document object behind every handle of a document: settings, the current content, and what
// the last load left behind. It outlives its content: a load replaces the content, and nodes of
// the old one still name this object as their document.
//
// Counting: the object lives while there is a handle of the document, or a content (current or
// old) with a handle of one of its nodes. The count is a plain one until the content is frozen,
// because only frozen documents are shared between threads.
#pragma once

#include "platform/dom/document_data.h"
#include "platform/dom/parse_error.h"
#include "platform/dom/parser.h"
#include "platform/dom/resource_reader.h"
#include "platform/dom/schema_binder.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

namespace kx::dom {

/// What a caller may set on a document; every load and every copy keeps it.
struct DocumentSettings {
  bool preserveWhiteSpace = false;
  bool validateOnParse = true;
  bool resolveExternals = true;
  bool async = true;
  std::string selectionLanguage = "XSLPattern";
  std::uint32_t maxElementDepth = 5000;
  std::size_t maxBytes = std::size_t{128} << 20U;
  std::size_t maxEntityBytes = std::size_t{16} << 20U;
  /// What reads locations; without one every location fails as one that does not exist.
  const ResourceReader* reader = nullptr;
  /// Where texts that are parsed come from: what their schemas' locations are relative to.
  std::string base;
  /// What binds and validates while parsing; without one no document is bound.
  const SchemaService* schemaService = nullptr;
  /// The caller's collection of schemas; null when there is none.
  runtime::Counted<SchemaHoldings> schemas;
  /// What knows the encodings beyond our own tables; must outlive the document.
  const text::HostCodec* codec = nullptr;
};

class DocumentImpl {
 public:
  DocumentImpl();
  DocumentImpl(const DocumentImpl&) = delete;
  DocumentImpl& operator=(const DocumentImpl&) = delete;

  void AddRef() noexcept {
    if (current->Frozen()) {
      references_.fetch_add(1, std::memory_order_relaxed);
    } else {
      references_.store(references_.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
    }
  }
  void Release() noexcept;

  /// Makes `data` (made with this as owner) the current content and retires the former one.
  void Replace(std::unique_ptr<DocumentData> data) noexcept;

  DocumentSettings settings;
  ParseError parseError;
  std::string url;
  DocumentData* current;  ///< never null

 private:
  ~DocumentImpl();
  std::atomic<std::uint32_t> references_{0};
};

}  // namespace kx::dom
