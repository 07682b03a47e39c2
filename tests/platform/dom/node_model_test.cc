// Random edits on two documents, beside a model that is as simple as a tree can be: after each one
// the documents must look like the models, every handle must still name its node, and what the
// model refuses must be refused and change nothing.
#include "dom_test.h"
#include "platform/dom/attribute_map.h"
#include "platform/dom/node_list.h"

#include <algorithm>
#include <cstddef>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace kx::dom {
namespace {

struct ModelNode {
  NodeType type = NodeType::kElement;
  std::string name;
  std::string value;
  ModelNode* parent = nullptr;
  bool attribute = false;
  std::vector<ModelNode*> children;
  std::vector<ModelNode*> attributes;
  Node node;  // the real one
};

std::string Escaped(const std::string& text) {
  std::string out;
  for (const char c : text) out += c == '<' ? "&lt;" : std::string(1, c);
  return out;
}

std::string XmlOf(const ModelNode& node) {
  if (node.type == NodeType::kText) return Escaped(node.value);
  if (node.type == NodeType::kCData) return "<![CDATA[" + node.value + "]]>";
  if (node.type == NodeType::kComment) return "<!--" + node.value + "-->";
  std::string content;
  for (const ModelNode* child : node.children) content += XmlOf(*child);
  if (node.type == NodeType::kDocumentFragment) return content;
  if (node.attribute) return node.name + "=\"" + content + "\"";
  std::string out = "<" + node.name;
  for (const ModelNode* attribute : node.attributes) out += " " + XmlOf(*attribute);
  // The long form would say the same; the comparison takes both.
  return content.empty() ? out + "/>" : out + ">" + content + "</" + node.name + ">";
}

std::string TextOf(const ModelNode& node) {
  if (node.type == NodeType::kComment) return {};
  std::string text = node.value;
  for (const ModelNode* child : node.children) text += TextOf(*child);
  return text;
}

bool IsBelow(const ModelNode* node, const ModelNode* above) {
  for (; node != nullptr; node = node->parent) {
    if (node == above) return true;
  }
  return false;
}

class Model {
 public:
  explicit Model(unsigned seed) : random_(seed) {
    for (const char* xml : {"<r><a x=\"1\">one</a><b>two<c/></b></r>", "<s/>"}) {
      documents_.push_back(Parsed(xml));
      Adopt(documents_.back().DocumentElement(), nullptr);
    }
  }

  void Step() {
    switch (Pick(13)) {
      case 0:
      case 1:
        return Create();
      case 2:
      case 3:
      case 4:
        return Insert();
      case 5:
        return Remove();
      case 6:
        return Replace();
      case 7:
        return SetText();
      case 8:
        return SetAttribute();
      case 9:
        return RemoveAttribute();
      case 10:
        return Clone();
      case 11:
        return MoveAttribute();
      default:
        return Forget();
    }
  }

  // Every node that the model knows, not only those in the documents.
  void Check() {
    for (const auto& entry : nodes_) {
      const ModelNode& model = *entry;
      if (!model.node) continue;
      ASSERT_EQ(model.node.Type(), model.attribute ? NodeType::kAttribute : model.type);
      const Node parent = model.parent == nullptr || model.attribute ? Node() : model.parent->node;
      const bool top =
          model.node.ParentNode() && model.node.ParentNode().Type() == NodeType::kDocument;
      if (!top && (model.parent == nullptr || model.parent->node)) {
        ASSERT_EQ(model.node.ParentNode(), parent);
      }
      if (model.parent == nullptr) {
        ASSERT_EQ(Shortened(model.node.Xml()), XmlOf(model));
        if (model.type != NodeType::kComment) {
          ASSERT_EQ(model.node.Text(), TextOf(model));
        }
      }
      CheckChildren(model);
    }
  }

 private:
  // Full forms of empty elements are shortened, because the model does not know about forms.
  static std::string Shortened(std::string xml) {
    for (std::size_t at = xml.find("></"); at != std::string::npos; at = xml.find("></", at + 1)) {
      const std::size_t open = xml.rfind('<', at);
      if (open == std::string::npos || xml[open + 1] == '/' || xml[open + 1] == '!' ||
          xml[at - 1] == '/') {
        continue;
      }
      xml.replace(at, xml.find('>', at + 1) - at + 1, "/>");
    }
    return xml;
  }

  static void CheckChildren(const ModelNode& model) {
    const NodeList list = model.node.ChildNodes();
    ASSERT_EQ(list.Length(), static_cast<int>(model.children.size()));
    for (std::size_t i = 0; i < model.children.size(); ++i) {
      const Node& child = model.children[i]->node;
      if (child) {
        ASSERT_EQ(list.Item(static_cast<int>(i)), child);
      }
    }
    const AttributeMap map = model.node.Attributes();
    if (!map) return;
    ASSERT_EQ(map.Length(), static_cast<int>(model.attributes.size()));
    for (std::size_t i = 0; i < model.attributes.size(); ++i) {
      const Node& attribute = model.attributes[i]->node;
      if (attribute) {
        ASSERT_EQ(map.Item(static_cast<int>(i)), attribute);
      }
    }
  }

  std::size_t Pick(std::size_t count) {
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(random_);
  }
  ModelNode& New() {
    nodes_.push_back(std::make_unique<ModelNode>());
    return *nodes_.back();
  }
  const Document& AnyDocument() { return documents_[Pick(documents_.size())]; }
  // A node with a handle; null when this try found none.
  ModelNode* Any(bool attribute) {
    for (int tries = 0; tries < 20; ++tries) {
      ModelNode* node = nodes_[Pick(nodes_.size())].get();
      if (node->node && node->attribute == attribute) return node;
    }
    return nullptr;
  }

  // The model of a real subtree, with handles.
  ModelNode* Adopt(const Node& node, ModelNode* parent) {
    ModelNode& model = New();
    model.node = node;
    model.type = node.Type();
    model.parent = parent;
    model.attribute = model.type == NodeType::kAttribute;
    if (model.type == NodeType::kElement || model.attribute) model.name = node.NodeName();
    if (!model.attribute) model.value = node.NodeValue().value_or("");
    const AttributeMap map = node.Attributes();
    for (int i = 0; map && i < map.Length(); ++i) {
      model.attributes.push_back(Adopt(map.Item(i), &model));
    }
    for (Node child = node.FirstChild(); child; child = child.NextSibling()) {
      model.children.push_back(Adopt(child, &model));
    }
    return &model;
  }

  void Create() {
    const Document& document = AnyDocument();
    const std::string data(Pick(30), static_cast<char>('a' + Pick(26)));
    switch (Pick(5)) {
      case 0:
        Adopt(document.CreateTextNode(data + "<"), nullptr);
        break;
      case 1:
        Adopt(document.CreateComment(data), nullptr);
        break;
      case 2:
        Adopt(document.CreateCDataSection(data), nullptr);
        break;
      case 3:
        Adopt(document.CreateDocumentFragment(), nullptr);
        break;
      default:
        Adopt(document.CreateElement(std::string(1, static_cast<char>('a' + Pick(5)))), nullptr);
    }
  }

  static bool HoldsChildren(const ModelNode& model) {
    return !model.attribute &&
           (model.type == NodeType::kElement || model.type == NodeType::kDocumentFragment);
  }
  static void Unlink(ModelNode* node) {
    if (node->parent == nullptr) return;
    auto& list = node->attribute ? node->parent->attributes : node->parent->children;
    list.erase(std::find(list.begin(), list.end(), node));
    node->parent = nullptr;
  }
  static bool IsRoot(const ModelNode& model) {
    return model.node.ParentNode() && model.node.ParentNode().Type() == NodeType::kDocument;
  }

  // True when the model takes `child` below `parent`; then both are changed.
  void Insert() {
    ModelNode* parent = Any(false);
    ModelNode* child = Any(false);
    if (parent == nullptr || child == nullptr || IsRoot(*child)) return;
    ModelNode* before = nullptr;
    if (!parent->children.empty() && Pick(3) != 0) {
      before = parent->children[Pick(parent->children.size())];
      if (!before->node) before = nullptr;
    }
    const bool accepted = HoldsChildren(*parent) && !IsBelow(parent, child);
    const Node reference = before == nullptr ? Node() : before->node;
    const Raised raised =
        RaisedBy([&] { return parent->node.InsertBefore(child->node, reference); });
    EXPECT_EQ(raised.status == 0, accepted);
    if (accepted) Place(parent, child, before);
  }

  static void Place(ModelNode* parent, ModelNode* child, ModelNode* before) {
    if (child == before) return;
    std::vector<ModelNode*> moved = {child};
    if (child->type == NodeType::kDocumentFragment) moved = child->children;
    for (ModelNode* node : moved) {
      Unlink(node);
      auto& list = parent->children;
      list.insert(before == nullptr ? list.end() : std::find(list.begin(), list.end(), before),
                  node);
      node->parent = parent;
    }
  }

  void Remove() {
    ModelNode* parent = Any(false);
    ModelNode* child = Any(false);
    if (parent == nullptr || child == nullptr) return;
    if (Pick(2) == 0 && child->parent != nullptr && child->parent->node) parent = child->parent;
    const bool accepted = child->parent == parent;
    const Raised raised = RaisedBy([&] { return parent->node.RemoveChild(child->node); });
    EXPECT_EQ(raised.status == 0, accepted);
    if (accepted) Unlink(child);
  }

  void Replace() {
    ModelNode* old = Any(false);
    ModelNode* child = Any(false);
    if (old == nullptr || child == nullptr || IsRoot(*child) || old->parent == nullptr) return;
    ModelNode* parent = old->parent;
    if (!parent->node || !HoldsChildren(*parent)) return;
    const bool accepted = child == old || !IsBelow(parent, child);
    const Raised raised =
        RaisedBy([&] { return parent->node.ReplaceChild(child->node, old->node); });
    EXPECT_EQ(raised.status == 0, accepted);
    if (!accepted || child == old) return;
    Place(parent, child, old);
    Unlink(old);
  }

  void SetText() {
    ModelNode* target = Any(Pick(4) == 0);
    if (target == nullptr) return;
    const std::string text(Pick(40), static_cast<char>('A' + Pick(26)));
    target->node.SetText(text);
    if (!target->attribute && !HoldsChildren(*target)) {
      target->value = text;
      return;
    }
    for (ModelNode* child : target->children) child->parent = nullptr;
    target->children.clear();
    if (text.empty()) return;
    ModelNode& child = New();
    child.type = NodeType::kText;
    child.value = text;
    child.parent = target;
    target->children.push_back(&child);
    if (Pick(2) == 0) child.node = target->node.FirstChild();
  }

  ModelNode* FindAttribute(ModelNode* element, const std::string& name) {
    for (ModelNode* attribute : element->attributes) {
      if (attribute->name == name) return attribute;
    }
    return nullptr;
  }

  void SetAttribute() {
    ModelNode* element = Any(false);
    if (element == nullptr || element->type != NodeType::kElement) return;
    const std::string name(1, static_cast<char>('p' + Pick(4)));
    const std::string value(Pick(20), 'v');
    element->node.SetAttribute(name, value);
    ModelNode* attribute = FindAttribute(element, name);
    if (attribute == nullptr) {
      attribute = &New();
      attribute->attribute = true;
      attribute->type = NodeType::kAttribute;
      attribute->name = name;
      attribute->parent = element;
      element->attributes.push_back(attribute);
    }
    for (ModelNode* child : attribute->children) child->parent = nullptr;
    attribute->children.clear();
    if (!value.empty()) {
      ModelNode& child = New();
      child.type = NodeType::kText;
      child.value = value;
      child.parent = attribute;
      attribute->children.push_back(&child);
    }
    if (!attribute->node && Pick(2) == 0) attribute->node = element->node.GetAttributeNode(name);
  }

  void RemoveAttribute() {
    ModelNode* element = Any(false);
    if (element == nullptr || element->type != NodeType::kElement) return;
    const std::string name(1, static_cast<char>('p' + Pick(4)));
    ModelNode* attribute = FindAttribute(element, name);
    EXPECT_EQ(element->node.RemoveAttribute(name), attribute != nullptr);
    if (attribute != nullptr) Unlink(attribute);
  }

  void MoveAttribute() {
    ModelNode* element = Any(false);
    ModelNode* attribute = Any(true);
    if (element == nullptr || attribute == nullptr || element->type != NodeType::kElement) return;
    const bool accepted = attribute->parent == nullptr;
    const Raised raised = RaisedBy([&] { return element->node.SetAttributeNode(attribute->node); });
    EXPECT_EQ(raised.status == 0, accepted);
    if (!accepted) return;
    ModelNode* old = FindAttribute(element, attribute->name);
    auto& list = element->attributes;
    list.insert(std::find(list.begin(), list.end(), old), attribute);
    attribute->parent = element;
    if (old != nullptr) Unlink(old);
  }

  void Clone() {
    ModelNode* original = Any(Pick(4) == 0);
    if (original == nullptr) return;
    const std::string xml = XmlOf(*original);
    if (xml.size() > 2000) return;
    const Node copy = original->node.CloneNode(CloneDepth::kDeep);
    EXPECT_EQ(Shortened(copy.Xml()), xml);
    Adopt(copy, nullptr);
  }

  // Gives some handles up, so that storage has something to collect.
  void Forget() {
    for (int i = 0; i < 5; ++i) {
      ModelNode* node = nodes_[Pick(nodes_.size())].get();
      const bool root = node->node && IsRoot(*node);
      if (!root) node->node = Node();
    }
    // What nobody holds and nobody can reach any more leaves the model as well.
    if (nodes_.size() < 400) return;
    std::vector<std::unique_ptr<ModelNode>> kept;
    for (auto& node : nodes_) node->value += IsReachable(*node) ? "" : kGone;
    for (auto& node : nodes_) {
      if (node->value.size() < kGone.size() ||
          node->value.compare(node->value.size() - kGone.size(), kGone.size(), kGone) != 0) {
        kept.push_back(std::move(node));
      }
    }
    nodes_ = std::move(kept);
  }
  static bool AnyHeld(const ModelNode& node) {
    if (node.node) return true;
    const auto held = [](const ModelNode* below) { return AnyHeld(*below); };
    return std::any_of(node.children.begin(), node.children.end(), held) ||
           std::any_of(node.attributes.begin(), node.attributes.end(), held);
  }
  static bool IsReachable(const ModelNode& node) {
    const ModelNode* top = &node;
    while (top->parent != nullptr) top = top->parent;
    return AnyHeld(*top);
  }

  inline static const std::string kGone = "#gone#";
  std::mt19937 random_;
  std::vector<Document> documents_;
  std::vector<std::unique_ptr<ModelNode>> nodes_;
};

TEST(NodeModel, RandomEditsLeaveTheDocumentsAsTheModelSays) {
  for (unsigned seed = 1; seed <= 8; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Model model(seed);
    for (int step = 0; step < 2000; ++step) {
      SCOPED_TRACE("step " + std::to_string(step));
      model.Step();
      if (step % 7 == 0) model.Check();
      if (testing::Test::HasFailure()) return;
    }
    model.Check();
  }
}

}  // namespace
}  // namespace kx::dom
