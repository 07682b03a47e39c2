// The binder of one parse: loads the schemas that namespaces name, and has the validator judge.
#pragma once

#include "platform/dom/schema_binder.h"
#include "platform/xdr/schema_provider.h"
#include "platform/xdr/validator.h"

#include <optional>
#include <string>
#include <string_view>

namespace kx::xdr {

class ParseBinder final : public dom::SchemaBinder {
 public:
  /// `served` may be null. `provider` and `served` must outlive the parse.
  ParseBinder(const SchemaProvider& provider, const ServedNamespaces* served, Task task,
              std::string_view base)
      : provider_(provider), served_(served), base_(base), validator_(set_, served, task) {}

  bool Begin(dom::DocumentData& data) override;
  dom::BindWish DeclareNamespace(std::string_view uri) override;
  bool StartElement(dom::NodeId element) override { return validator_.StartElement(element); }
  bool Text(std::string_view text, dom::TextForm form) override {
    return validator_.Text(text, form);
  }
  bool EndElement(dom::NodeId element) override {
    return mayHoldSchemas_ ? EndOfSchema(element) : validator_.EndElement(element);
  }
  bool Leaf(dom::NodeId element, dom::LeafPlace& place) override {
    return mayHoldSchemas_ ? LeafOfSchema(element, place) : validator_.Leaf(element, place);
  }
  bool EndDocument() override { return validator_.EndDocument(); }
  dom::BindPlace Describe(dom::ParseError& error) override;
  [[nodiscard]] runtime::Counted<const dom::SchemaKnowledge> Knowledge() override;

 private:
  bool LoadNamespace(std::string_view uri);
  bool FailUnknown(std::string_view uri);
  // The same where schemas may stand in the document itself.
  bool EndOfSchema(dom::NodeId element);
  bool LeafOfSchema(dom::NodeId element, dom::LeafPlace& place);
  bool TakeInlineSchema(dom::NodeId element);

  const SchemaProvider& provider_;
  const ServedNamespaces* served_;
  std::string base_;
  GrowingSet set_;
  Validator validator_;
  dom::DocumentData* data_ = nullptr;
  bool mayHoldSchemas_ = false;  // the schema namespace has been declared
  bool failedToLoad_ = false;
  bool failedInline_ = false;
  dom::ParseError error_;
};

/// Makes binders for documents.
class BindingService final : public dom::SchemaService {
 public:
  /// `provider` must outlive this.
  explicit BindingService(const SchemaProvider& provider) noexcept : provider_(provider) {}
  [[nodiscard]] std::unique_ptr<dom::SchemaBinder> NewBinder(
      const dom::BindRequest& request) const override;
  [[nodiscard]] std::optional<std::string> FindDefault(const dom::DocumentData& data,
                                                       dom::NodeId element,
                                                       dom::NameId attribute) const override;

 private:
  const SchemaProvider& provider_;
};

}  // namespace kx::xdr
