// See message.h.
#include "model/message.h"

#include <utility>
#include <vector>

namespace kx::model {

namespace {

// What is left out comes back behind what is written, in the order of the schema.
void LeaveOutDefaults(const Store& store, Node& node, Chance& chance) {
  std::vector<Attribute*> written;
  std::vector<Attribute*> supplied;
  for (Attribute* attribute : node.attributes) {
    const std::string value = store.DefaultOf(node, attribute->name);
    if (value.empty() || !chance.OneIn(3)) {
      written.push_back(attribute);
    } else {
      attribute->written = false;
      attribute->value = value;
      supplied.push_back(attribute);
    }
  }
  node.attributes = std::move(written);
  node.attributes.insert(node.attributes.end(), supplied.begin(), supplied.end());
}

Node* Piece(Store& store, Kind kind, std::string text) {
  Node* const node = store.NewNode(kind, "");
  node->text = std::move(text);
  return node;
}

// Puts in, at any place, what the content of `type` allows beside elements.
void AddOtherNodes(Store& store, Node& node, const Declaration& type, Chance& chance) {
  const std::string content = Property(&type, "content", "mixed");
  if (content == "empty") return;
  for (int pieces = chance.Below(3); pieces > 0; --pieces) {
    Node* piece = nullptr;
    if (content == "eltOnly") {
      piece = chance.OneIn(3) ? Piece(store, Kind::kComment, "note")
                              : Piece(store, Kind::kText, chance.Pick({" ", "\n  "}));
    } else if (Property(&type, "dt:type", "string") == "string") {
      piece = Piece(store, Kind::kText, chance.Pick({"text", "a < b & c", "two\nlines"}));
    }
    if (piece == nullptr) return;
    const int place = chance.Below(static_cast<int>(node.children.size()) + 1);
    // Two texts side by side would be one when they are read.
    const auto isText = [&](int at) {
      return at >= 0 && at < static_cast<int>(node.children.size()) &&
             node.children[static_cast<std::size_t>(at)]->kind == Kind::kText;
    };
    if (piece->kind == Kind::kText && (isText(place - 1) || isText(place))) continue;
    piece->parent = &node;
    node.children.insert(node.children.begin() + place, piece);
  }
}

void Decorate(Store& store, Node& node, Chance& chance) {
  LeaveOutDefaults(store, node, chance);
  for (Node* child : ElementsOf(node)) Decorate(store, *child, chance);
  AddOtherNodes(store, node, *store.DefinitionOf(node), chance);
}

void SetSpace(Node& node, const std::string& space) {
  if (node.IsElement()) node.space = space;
  for (Node* child : node.children) SetSpace(*child, space);
}

}  // namespace

Message::Message(Store& store, const Declaration& schema, const std::string& rootName,
                 const std::string& location)
    : context_(store, schema) {
  const std::string space = "x-schema:" + Lower(location);
  store.AddSchema(location, &schema);
  const Declaration& type = context_.TypeOf(rootName);
  Node* const root = BuildContent(context_, nullptr, type, space);
  root->attributes.insert(root->attributes.begin(), store.NewAttribute(root, "xmlns", space));
  Node* const envelope = store.NewNode(Kind::kEnvelope, "KXMessage");
  Append(*store.NewNode(Kind::kDocument, ""), envelope);
  Append(*envelope, root);
  root_ = std::make_shared<Element>(context_, root, &type);
}

void Message::BecomeLoaded(Chance& chance, const std::string& location, Declared declared) {
  Node& root = root_->GetNode();
  SetSpace(root, "x-schema:" + location);
  Attribute* const declaration = root.attributes.front();
  declaration->value = root.space;
  root.attributes.erase(root.attributes.begin());
  Decorate(*context_.store, root, chance);
  auto place = root.attributes.begin();
  while (declared == Declared::kLast && place != root.attributes.end() && (*place)->written) {
    ++place;
  }
  root.attributes.insert(place, declaration);
}

std::string Message::TextToLoad(Declared declared) const {
  static const std::string kMark = "xmlns=\"ref-schema:\"";
  std::string text = Xml();
  const std::size_t at = text.find(kMark);
  if (declared == Declared::kLast) return text.erase(at - 1, kMark.size() + 1);
  return text.replace(at, kMark.size(),
                      "xmlns=\"" + FindAttribute(root_->GetNode(), "xmlns")->value + "\"");
}

}  // namespace kx::model
