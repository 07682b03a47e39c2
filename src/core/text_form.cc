// See text_form.h.
#include "core/text_form.h"

#include "core/envelope.h"
#include "core/load_error.h"
#include "core/msg_error.h"
#include "core/namespace_scan.h"
#include "platform/dom/document.h"
#include "platform/text/compare.h"

#include <optional>

namespace kx::core {

namespace {

constexpr std::string_view kReference = "ref-schema:";
constexpr std::string_view kSchema = "x-schema:";
constexpr std::string_view kFormerEnvelope = "<ZDKMessage";
constexpr std::string_view kFormerEnvelopeEnd = "ZDKMessage>";
constexpr std::size_t kNone = std::string_view::npos;

// One declaration of a text, by offsets.
struct Declaration {
  std::size_t name = 0;      // of "xmlns"
  std::size_t location = 0;  // behind the prefix
  std::size_t close = 0;     // the closing quote
};

// The blank in front of a declaration belongs to it; where there is none, nothing does.
std::size_t WithBlank(std::string_view text, std::size_t name) {
  const char before = text[name - 1];
  return before == '"' || before == '\'' ? name : name - 1;
}

std::optional<std::size_t> LocationOffset(std::string_view text, std::size_t value) {
  const std::string_view rest = text.substr(value);
  if (rest.starts_with(kReference)) return value + kReference.size();
  if (rest.starts_with(kSchema)) return value + kSchema.size();
  return std::nullopt;
}

std::size_t ClosingQuote(std::string_view text, std::size_t from) {
  const std::size_t close = text.find('"', from);
  if (close == kNone) RaiseMsgError(kxMsgErrorNoSchema);
  return close;
}

// A location taken apart, to be compared with others of the same text.
struct Place {
  std::string folder;
  std::string fileName;

  Place(std::string_view location, const Locations& locations)
      : folder(locations.GetLocationFolder(location)),
        fileName(locations.GetLocationFileName(location)) {}
};

// Writes the canonical form of one declaration after the other.
class Canonicalizer {
 public:
  Canonicalizer(std::string_view text, std::string_view defaultSchema, const Locations& locations)
      : text_(text), defaultSchema_(defaultSchema), locations_(locations) {}

  CanonicalText Run(std::size_t firstDeclaration, NamespaceScan& scan) {
    result_.text.reserve(text_.size() + 32);
    for (std::size_t name = firstDeclaration; name != NamespaceScan::kEnd; name = scan.Next()) {
      Rewrite(name);
      isFirst_ = false;
    }
    result_.text += text_.substr(written_);
    if (result_.mainSchemaFile.empty()) result_.mainSchemaFile = defaultSchema_;
    return std::move(result_);
  }

 private:
  void Rewrite(std::size_t name) {
    const std::size_t value = name + NamespaceScan::kDeclaration.size();
    if (text_.substr(value).starts_with('"')) {
      CopyTo(value);
      result_.text += kReference;
      SetMainSchema(defaultSchema_);
      return;
    }
    const std::optional<std::size_t> location = LocationOffset(text_, value);
    if (!location) RaiseMsgError(kxMsgErrorNoSchema);
    const Declaration at{name, *location, ClosingQuote(text_, *location)};
    const std::string_view named = text_.substr(at.location, at.close - at.location);
    if (named.empty()) return;
    if (isFirst_) {
      SetMainSchema(named);
      Replace(at, "");
    } else {
      RewriteLater(at, named);
    }
  }

  void RewriteLater(const Declaration& at, std::string_view location) {
    if (!mainPlace_) mainPlace_.emplace(result_.mainSchemaFile, locations_);
    const Place place(location, locations_);
    if (!text::EqualsCaseless(place.folder, mainPlace_->folder)) {
      Replace(at, location);
    } else if (text::EqualsCaseless(place.fileName, mainPlace_->fileName)) {
      CopyTo(WithBlank(text_, at.name));
      written_ = at.close + 1;
    } else {
      Replace(at, place.fileName);
    }
  }

  void Replace(const Declaration& at, std::string_view location) {
    CopyTo(WithBlank(text_, at.name));
    result_.text += ' ';
    result_.text += NamespaceScan::kDeclaration;
    result_.text += kReference;
    result_.text += location;
    result_.text += '"';
    written_ = at.close + 1;
  }

  void CopyTo(std::size_t end) {
    result_.text += text_.substr(written_, end - written_);
    written_ = end;
  }

  void SetMainSchema(std::string_view location) {
    result_.mainSchemaFile = location;
    mainPlace_.reset();
  }

  std::string_view text_;
  std::string_view defaultSchema_;
  const Locations& locations_;
  CanonicalText result_;
  std::optional<Place> mainPlace_;
  std::size_t written_ = 0;
  bool isFirst_ = true;
};

// The content root of a document: the first element below the envelope, or the document element.
dom::Node FindContentRoot(const dom::Document& document) {
  const dom::Cursor root = document.Root();
  return dom::Node(root.LocalName() == kEnvelopeName ? root.FirstChildElement() : root);
}

[[noreturn]] void RaiseNoContentRoot(std::string_view text) {
  dom::ParseError error;
  error.code = -1;
  error.reason = "Required root element is missing.";
  error.line = 1;
  error.linePos = 1;
  error.srcText = text;
  RaiseLoadError(kxMsgErrorLoadingXML, error);
}

// `xml` without its declarations of the empty namespace.
std::string WithoutEmptyNamespaces(const std::string& xml) {
  std::string cleaned;
  cleaned.reserve(xml.size());
  std::size_t written = 0;
  NamespaceScan scan(xml);
  for (std::size_t name = scan.Next(); name != NamespaceScan::kEnd; name = scan.Next()) {
    const std::size_t value = name + NamespaceScan::kDeclaration.size();
    if (xml[value] != '"') continue;
    const std::size_t begin = WithBlank(xml, name);
    cleaned.append(xml, written, begin - written);
    written = value + 1;
  }
  return cleaned.append(xml, written);
}

// A text without any declaration: its content root is given the default schema.
CanonicalText DeclareDefaultSchema(std::string_view text, std::string_view defaultSchema,
                                   const Environment& environment) {
  if (defaultSchema.empty()) RaiseMsgError(kxMsgErrorNoSchema);
  const dom::Document document = environment.NewDomDocument();
  document.ValidateOnParse(false);
  if (!document.LoadXml(text)) RaiseLoadError(kxMsgErrorLoadingXML, document.LastError());
  const dom::Node root = FindContentRoot(document);
  if (!root) RaiseNoContentRoot(text);
  const dom::Node declaration = document.CreateAttribute("xmlns");
  declaration.SetText(kReference);
  root.SetAttributeNode(declaration);
  // The children would otherwise be said to have no namespace, and are to have the root's.
  return {WithoutEmptyNamespaces(document.Xml()),
          environment.Locations().ResolveSchemaLocation(defaultSchema)};
}

// A message's first tag and its last closing tag, renamed.
std::string RenameFormerEnvelope(std::string_view text) {
  const std::size_t end = text.rfind(kFormerEnvelopeEnd);
  if (end == kNone || end < kFormerEnvelope.size()) RaiseMsgError(kxMsgErrorInvalidMessage);
  std::string renamed;
  renamed.reserve(text.size());
  renamed += '<';
  renamed += kEnvelopeName;
  renamed += text.substr(kFormerEnvelope.size(), end - kFormerEnvelope.size());
  renamed += kEnvelopeName;
  renamed += text.substr(end + kFormerEnvelopeEnd.size() - 1);
  return renamed;
}

// Completes locations; those of one text are often the same.
class Completer {
 public:
  Completer(std::string_view mainSchemaLocation, const Locations& locations)
      : mainSchemaLocation_(mainSchemaLocation), locations_(locations) {}

  std::string_view Complete(std::string_view location) {
    if (location.empty()) return mainSchemaLocation_;
    if (location != last_) {
      completed_ = locations_.ResolveSchemaLocation(location);
      last_ = location;
    }
    return completed_;
  }

 private:
  std::string_view mainSchemaLocation_;
  const Locations& locations_;
  std::string_view last_;
  std::string completed_;
};

std::string CompleteDeclarations(std::string_view text, std::string_view mainSchemaLocation,
                                 const Locations& locations, std::size_t mostBytes) {
  NamespaceScan scan(text);
  std::size_t name = scan.Next();
  if (name == NamespaceScan::kEnd) RaiseMsgError(kxMsgErrorNoSchema);
  Completer completer(mainSchemaLocation, locations);
  std::string expanded;
  expanded.reserve(text.size() + 2 * mainSchemaLocation.size());
  std::size_t written = 0;
  for (; name != NamespaceScan::kEnd && expanded.size() <= mostBytes; name = scan.Next()) {
    const std::size_t value = name + NamespaceScan::kDeclaration.size();
    const std::optional<std::size_t> at = LocationOffset(text, value);
    if (!at) continue;
    const std::size_t close = ClosingQuote(text, *at);
    expanded += text.substr(written, value - written);
    expanded += kSchema;
    expanded += completer.Complete(text.substr(*at, close - *at));
    written = close;
  }
  expanded += text.substr(written);
  return expanded;
}

// The schema of a message whose envelope names none.
std::string ShortSchemaFile(const std::string& mainSchemaFile, const Locations& locations) {
  const bool inBase = text::EqualsCaseless(locations.GetLocationFolder(mainSchemaFile),
                                           locations.ResolveSchemaLocation(""));
  return inBase ? locations.GetLocationFileName(mainSchemaFile) : mainSchemaFile;
}

}  // namespace

CanonicalText CanonicalizeSchemaRefs(std::string_view text, std::string_view defaultSchema,
                                     const Environment& environment) {
  NamespaceScan scan(text);
  const std::size_t first = scan.Next();
  if (first == NamespaceScan::kEnd) {
    return DeclareDefaultSchema(text, defaultSchema, environment);
  }
  return Canonicalizer(text, defaultSchema, environment.Locations()).Run(first, scan);
}

std::string ExpandSchemaRefs(std::string_view text, std::string_view mainSchemaLocation,
                             const Locations& locations, std::size_t mostBytes) {
  if (!text.starts_with(kFormerEnvelope)) {
    return CompleteDeclarations(text, mainSchemaLocation, locations, mostBytes);
  }
  return CompleteDeclarations(RenameFormerEnvelope(text), mainSchemaLocation, locations, mostBytes);
}

LoadableText LoadMessageText(std::string_view text, std::string_view defaultSchema,
                             const Environment& environment) {
  constexpr std::string_view kSchemaUrl = "schemaURL=\"";
  const Locations& locations = environment.Locations();
  const CanonicalText canonical = CanonicalizeSchemaRefs(text, defaultSchema, environment);
  LoadableText loadable;
  const std::size_t at = canonical.text.find(kSchemaUrl);
  if (at == std::string::npos) {
    loadable.schemaFile = ShortSchemaFile(canonical.mainSchemaFile, locations);
  } else {
    const std::size_t value = at + kSchemaUrl.size();
    loadable.schemaFile = canonical.text.substr(value, ClosingQuote(canonical.text, value) - value);
  }
  loadable.text = ExpandSchemaRefs(canonical.text,
                                   locations.ResolveSchemaLocation(loadable.schemaFile), locations);
  return loadable;
}

}  // namespace kx::core
