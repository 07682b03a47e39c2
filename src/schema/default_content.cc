// See default_content.h.
#include "schema/default_content.h"

#include "core/msg_error.h"
#include "platform/dom/attribute_map.h"
#include "platform/dom/node_list.h"
#include "platform/host/host.h"
#include "platform/runtime/error.h"
#include "platform/runtime/strings.h"
#include "schema/declarations.h"
#include "schema/node_property.h"

#include <map>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

namespace kx::schema {

namespace {

using dom::Document;
using dom::Node;
using dom::NodeType;

// The namespace of what is created of the schema node `declared`, in lower case.
std::string NamespaceFor(const Node& parent, const Node& declared, std::string_view schemaName) {
  if (parent) return runtime::LCase(parent.NamespaceUri().value_or(std::string()));
  const std::string name = schemaName.empty()
                               ? declared.OwnerDocument().Url().value_or(std::string())
                               : std::string(schemaName);
  return "x-schema:" + runtime::LCase(name);
}

Node CreateNamed(const Document& document, NodeType type, const Node& parent, const Node& declared,
                 std::string_view schemaName) {
  const Node name = declared.Attributes().GetNamedItem("name");
  return document.CreateNode(type, name.Text(), NamespaceFor(parent, declared, schemaName));
}

/// What one element type demands, worked out as far as the first element of it has come, and used
/// by all others.
class Demands {
 public:
  /// One child or attribute that every element of the type gets.
  struct Item {
    Node elementType;  ///< of a child; nothing for an attribute
    Node attributeType;
    Node declaration;
    bool isNewName = true;  ///< no earlier attribute of the type has that name
  };

  Demands(const Node& elementType, const ElementTypeIndex& elementTypes)
      : elementType_(elementType), elementTypes_(elementTypes) {
    // Deliberate: only the first group counts, it comes first wherever it stands, and a choice gets
    // all of its mandatory alternatives.
    Append(ElementDeclarations, FirstGroup());
    firstAttribute_ = declarations_.size();
    Append(AttributeDeclarations, elementType);
    endOfAttributes_ = declarations_.size();
    Append(ElementDeclarations, elementType);
  }

  [[nodiscard]] const Node& ElementType() const { return elementType_; }
  /// The item at a place, or null behind the last one. Raises what reading its declaration raises.
  [[nodiscard]] const Item* At(std::size_t place) {
    while (place >= items_.size()) {
      if (read_ == declarations_.size()) return nullptr;
      const std::size_t next = read_++;
      const bool isAttribute = next >= firstAttribute_ && next < endOfAttributes_;
      if (isAttribute) {
        ReadAttribute(declarations_[next]);
      } else {
        ReadChild(declarations_[next]);
      }
    }
    return &items_[place];
  }

 private:
  [[nodiscard]] Node FirstGroup() const { return Groups(elementType_).Item(0); }

  void Append(dom::NodeList (*select)(const Node&), const Node& node) {
    if (!node) return;
    const dom::NodeList list = select(node);
    for (std::int32_t i = 0; i < list.Length(); ++i) declarations_.push_back(list.Item(i));
  }

  void ReadChild(const Node& declaration) {
    const std::string type = AttributeText(declaration, "type");
    if (type.empty() || AttributeText(declaration, "minOccurs") == "0") return;
    items_.push_back({elementTypes_.RequireElementType(type), {}, declaration});
  }

  void ReadAttribute(const Node& declaration) {
    const std::string type = AttributeText(declaration, "type");
    const Node attributeType = FindAttributeType(type, elementType_.OwnerDocument(), elementType_);
    // Deliberate: also for an attribute that would not be created.
    if (!attributeType) core::RaiseMsgError(kxMsgErrorUnknownAttribute, {type});
    if (!IsAttributeFixed(declaration, attributeType)) return;
    const bool isNewName = attributeNames_.insert(AttributeText(attributeType, "name")).second;
    items_.push_back({{}, attributeType, declaration, isNewName});
  }

  Node elementType_;
  const ElementTypeIndex& elementTypes_;
  std::vector<Node> declarations_;
  std::size_t firstAttribute_ = 0;
  std::size_t endOfAttributes_ = 0;
  std::size_t read_ = 0;  // declarations that have been looked at
  std::vector<Item> items_;
  std::unordered_set<std::string> attributeNames_;
};

/// One construction. The elements that are not complete yet form a stack of frames.
class ContentBuilder {
 public:
  ContentBuilder(const Document& document, const ElementTypeIndex& elementTypes,
                 std::string_view schemaName, const ContentBuild& build)
      : document_(document), elementTypes_(elementTypes), schemaName_(schemaName), build_(build) {}

  Node Build(const Node& parent, const Node& elementType) {
    Open(parent, elementType);
    for (;;) {
      Frame& frame = frames_.back();
      const Demands::Item* item = frame.demands->At(frame.next);
      if (item == nullptr) {
        Node complete = std::move(frame.element);
        frames_.pop_back();
        if (frames_.empty()) return complete;
        frames_.back().element.AppendChild(complete);
        Breathe();
      } else if (++frame.next; item->elementType) {
        Open(frame.element, item->elementType);
      } else {
        AddAttribute(frame, *item);
        Breathe();
      }
    }
  }

 private:
  struct Frame {
    Node parent;
    Node element;
    Demands* demands;
    std::size_t next = 0;
  };

  void Open(const Node& parent, const Node& elementType) {
    if (frames_.size() >= build_.limits.maxDepth) {
      runtime::RaiseRuntimeError(runtime::kOutOfStackSpace);
    }
    if (elements_++ >= build_.limits.maxElements) {
      runtime::RaiseRuntimeError(runtime::kOutOfMemory);
    }
    Node element = CreateTypedElement(document_, parent, elementType, SchemaNameHere());
    frames_.push_back({parent, std::move(element), &DemandsOf(elementType)});
  }

  // What is below the root takes its namespace from its parent.
  [[nodiscard]] std::string_view SchemaNameHere() const {
    return frames_.empty() ? schemaName_ : std::string_view();
  }

  Demands& DemandsOf(const Node& elementType) {
    const std::pair key(&elementType.Data(), elementType.At().Id());
    return demands_.try_emplace(key, elementType, elementTypes_).first->second;
  }

  void AddAttribute(const Frame& frame, const Demands::Item& item) {
    const std::string_view schemaName = frames_.size() == 1 ? schemaName_ : std::string_view();
    const Node attribute = CreateDefaultAttribute(document_, frame.parent, item.attributeType,
                                                  item.declaration, schemaName);
    textBytes_ += attribute.At().QualifiedName().size() + attribute.At().OwnText().size();
    if (textBytes_ > build_.limits.maxTextBytes) {
      runtime::RaiseRuntimeError(runtime::kOutOfMemory);
    }
    Attach(frame.element, attribute, item.isNewName);
  }

  // One that the element cannot have yet need not be looked for among the others.
  static void Attach(const Node& element, const Node& attribute, bool isNewName) {
    const std::string_view name = attribute.At().QualifiedName();
    if (isNewName && !name.starts_with("xmlns")) {
      element.Data().AppendAttribute(element.At().Id(), attribute.At().Id());
    } else {
      element.SetAttributeNode(attribute);
    }
  }

  void Breathe() const {
    if (build_.host != nullptr) build_.host->YieldToUserInterface();
  }

  const Document& document_;
  const ElementTypeIndex& elementTypes_;
  std::string_view schemaName_;
  const ContentBuild& build_;
  std::map<std::pair<const dom::DocumentData*, dom::NodeId>, Demands> demands_;
  std::vector<Frame> frames_;
  std::size_t elements_ = 0;
  std::size_t textBytes_ = 0;
};

}  // namespace

Node CreateTypedElement(const Document& document, const Node& parent, const Node& elementType,
                        std::string_view schemaName) {
  return CreateNamed(document, NodeType::kElement, parent, elementType, schemaName);
}

Node CreateDefaultAttribute(const Document& document, const Node& parent, const Node& attributeType,
                            const Node& attributeDeclaration, std::string_view schemaName) {
  Node attribute = CreateNamed(document, NodeType::kAttribute, parent, attributeType, schemaName);
  // Deliberate: the type's default comes first here, the declaration's in the attribute's
  // information.
  std::string text = AttributeText(attributeType, "default");
  if (text.empty()) text = AttributeText(attributeDeclaration, "default");
  if (text.empty() && AttributeText(attributeType, "dt:type") == "enumeration") {
    const std::vector<std::string> values =
        runtime::Split(AttributeText(attributeType, "dt:values"), " ");
    if (!values.empty()) text = values.front();
  }
  attribute.SetText(text);
  return attribute;
}

Node BuildDefaultContent(const Document& document, const Node& parent, const Node& elementType,
                         const ElementTypeIndex& elementTypes, std::string_view schemaName,
                         const ContentBuild& build) {
  return ContentBuilder(document, elementTypes, schemaName, build).Build(parent, elementType);
}

}  // namespace kx::schema
