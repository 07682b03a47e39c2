// See schema_group.h.
//
// A schema with a mistake is parsed once more, up to the element that is to blame, so that the
// error has its line and position; schemas without mistakes, nearly all, do not pay for it.
#include "platform/xdr/schema_group.h"

#include "platform/xdr/schema_compiler.h"
#include "platform/xdr/schema_names.h"

#include <deque>
#include <unordered_map>
#include <utility>

namespace kx::xdr {

namespace {

// Fails at the start tag of one element, so that the parser tells where that is.
class PlaceFinder final : public dom::SchemaBinder {
 public:
  PlaceFinder(dom::NodeId wanted, dom::ParseError error)
      : wanted_(wanted), error_(std::move(error)) {}
  bool Begin(dom::DocumentData& /*data*/) override { return true; }
  dom::BindWish DeclareNamespace(std::string_view /*uri*/) override {
    return dom::BindWish::kNothing;
  }
  bool StartElement(dom::NodeId element) override { return element != wanted_; }
  bool Text(std::string_view /*text*/, dom::TextForm /*form*/) override { return true; }
  bool EndElement(dom::NodeId /*element*/) override { return true; }
  bool Leaf(dom::NodeId element, dom::LeafPlace& /*place*/) override { return element != wanted_; }
  bool EndDocument() override { return true; }
  dom::BindPlace Describe(dom::ParseError& error) override {
    error = error_;
    return dom::BindPlace::kHere;
  }
  runtime::Counted<const dom::SchemaKnowledge> Knowledge() override { return {}; }

 private:
  dom::NodeId wanted_;
  dom::ParseError error_;
};

/// A schema of the group while it is made.
struct Draft {
  std::string uri;
  std::string url;
  std::string bytes;  // empty for one that came as a tree
  std::string stamp;
  bool showText = true;
  std::string location = {};
  std::string base = {};
  dom::Document document = {};
  std::unique_ptr<SchemaCompiler> compiler = {};
};

Draft FromText(std::string_view uri, SchemaText text) {
  Draft draft;
  draft.uri = uri;
  draft.url = std::move(text.url);
  draft.bytes = std::move(text.bytes);
  draft.stamp = std::move(text.stamp);
  draft.showText = text.showText;
  return draft;
}

class GroupBuilder {
 public:
  GroupBuilder(const SchemaSource& source, const SchemaLimits& limits)
      : source_(source), limits_(limits) {}

  LoadedGroup Build(Draft first) {
    if (!Add(std::move(first))) return Failed();
    for (std::size_t i = 0; i < drafts_.size(); ++i) {
      if (!LoadReferences(i)) return Failed();
    }
    const auto find = [this](std::string_view uri) -> const Schema* {
      const auto found = index_.find(uri);
      return found == index_.end() ? nullptr : drafts_[found->second].compiler->Result().Get();
    };
    for (Draft& draft : drafts_) {
      draft.compiler->Resolve(find);
      if (draft.compiler->Mistake()) return Failed(draft);
    }
    return {Finish(), {}};
  }

  bool Parse(Draft& draft) {
    dom::Document document = dom::NewDomDocument();
    dom::DocumentSettings& settings = document.EditSettings();
    settings.validateOnParse = false;
    settings.resolveExternals = false;
    settings.maxBytes = limits_.maxBytes;
    settings.codec = limits_.codec;
    if (!document.LoadBytes(draft.bytes)) {
      error_ = document.LastError();
      error_.url = draft.url;
      if (!draft.showText) error_.srcText.clear();
      return false;
    }
    draft.document = std::move(document);
    return true;
  }

 private:
  // Takes a schema in and reads its declarations.
  bool Add(Draft draft) {
    if (!draft.document && !Parse(draft)) return false;
    const dom::Cursor root = draft.document.Root();
    drafts_.push_back(std::move(draft));
    Draft& kept = drafts_.back();
    index_.emplace(kept.uri, drafts_.size() - 1);
    if (!root || !IsSchemaNamespace(root.NamespaceUri()) || root.LocalName() != "Schema") {
      Fail(kept, {root.Id(), XdrCode::kBadRoot, {}});
      return false;
    }
    kept.document.SetUrl(kept.url);
    kept.document.Freeze();
    kept.compiler = std::make_unique<SchemaCompiler>(root, kept.document, kept.url);
    if (!kept.compiler->Mistake()) return true;
    Fail(kept, *kept.compiler->Mistake());
    return false;
  }

  bool LoadReferences(std::size_t index) {
    for (const std::string& uri : SchemasDeclaredIn(drafts_[index].document.Root())) {
      if (index_.find(uri) != index_.end()) continue;
      if (drafts_.size() >= limits_.maxSchemas) {
        SetXdrError(error_, XdrCode::kSchemaMistake, {"The schema leads to too many others."});
        error_.url = drafts_[index].url;
        return false;
      }
      SchemaText text =
          source_.Read(std::string_view(uri).substr(kXSchema.size()), drafts_[index].url);
      if (text.failure) {
        error_ = std::move(text.failure);
        return false;
      }
      Draft draft = FromText(uri, std::move(text));
      draft.location = uri.substr(kXSchema.size());
      draft.base = drafts_[index].url;
      if (!Add(std::move(draft))) {
        return false;
      }
    }
    return true;
  }

  void Fail(const Draft& draft, const SchemaMistake& mistake) {
    SetXdrError(error_, mistake.code, {mistake.argument});
    error_.url = draft.url;
    if (draft.bytes.empty()) return;
    PlaceFinder finder(mistake.node, error_);
    dom::ParseOptions options;
    options.binder = &finder;
    options.maxBytes = limits_.maxBytes;
    options.codec = limits_.codec;
    dom::DocumentData scratch(nullptr);
    dom::ParseError placed;
    if (!dom::ParseBytes(scratch, draft.bytes, options, placed)) error_ = std::move(placed);
    error_.url = draft.url;
    if (!draft.showText) error_.srcText.clear();
  }

  LoadedGroup Failed() { return {{}, std::move(error_)}; }
  LoadedGroup Failed(const Draft& draft) {
    Fail(draft, *draft.compiler->Mistake());
    return Failed();
  }

  SharedGroup Finish() {
    std::vector<SchemaGroup::Member> members;
    for (Draft& draft : drafts_) {
      members.push_back({std::move(draft.uri), draft.compiler->Result(), std::move(draft.stamp),
                         std::move(draft.location), std::move(draft.base)});
    }
    return runtime::MakeCounted<SchemaGroup>(std::move(members));
  }

  const SchemaSource& source_;
  const SchemaLimits& limits_;
  std::deque<Draft> drafts_;
  std::unordered_map<std::string, std::size_t, NamespaceHash, NamespaceEqual> index_;
  dom::ParseError error_;
};

runtime::Counted<const SchemaSet> SetOf(const std::vector<SchemaGroup::Member>& members) {
  const auto set = runtime::MakeCounted<SchemaSet>();
  for (const SchemaGroup::Member& member : members) set->Add({member.uri, member.schema, false});
  return set;
}

}  // namespace

SchemaGroup::SchemaGroup(std::vector<Member> all)
    : members(std::move(all)), known(SetOf(members)) {}

LoadedGroup CompileGroup(std::string_view uri, SchemaText text, const SchemaSource& source,
                         const SchemaLimits& limits) {
  GroupBuilder builder(source, limits);
  return builder.Build(FromText(uri, std::move(text)));
}

LoadedGroup CompileTree(std::string_view uri, const dom::Document& document,
                        const SchemaSource& source, const SchemaLimits& limits) {
  GroupBuilder builder(source, limits);
  Draft draft;
  draft.uri = uri;
  draft.url = document.Url().value_or(std::string());
  draft.document = document.Clone(dom::CloneDepth::kDeep);
  return builder.Build(std::move(draft));
}

}  // namespace kx::xdr
