// Reads the example order, asks it a few questions, changes it and prints what became of it.
//
//   kx_demo [FOLDER]     FOLDER holds order.xml; the current folder unless given
//
// A document that cannot be read ends the program with 1 and a line that says where it is wrong.
#include "kxmessage/error.h"

#include "platform/dom/attribute_map.h"
#include "platform/dom/document.h"
#include "platform/dom/node_list.h"

#include <cstdio>
#include <exception>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

using kx::dom::Document;
using kx::dom::Node;
using kx::dom::NodeList;

std::string ReadBytes(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  if (!stream) throw std::runtime_error("cannot open " + path);
  return {std::istreambuf_iterator<char>(stream), {}};
}

// The reasons of parse errors and of the DOM end with a line end of their own.
std::string WithoutLineEnd(std::string text) {
  text.erase(text.find_last_not_of("\r\n") + 1);
  return text;
}

Document LoadOrder(const std::string& path) {
  Document document = Document::Create();
  document.PreserveWhiteSpace(true);
  if (document.LoadBytes(ReadBytes(path))) return document;
  const kx::dom::ParseError& error = document.LastError();
  throw std::runtime_error(path + ":" + std::to_string(error.line) + ":" +
                           std::to_string(error.linePos) + ": " + WithoutLineEnd(error.reason));
}

std::string TextOf(const Node& parent, std::string_view name) {
  const Node found = parent.GetElementsByTagName(name).Item(0);
  return found ? found.Text() : std::string("-");
}

std::string AttributeOf(const Node& element, std::string_view name) {
  return element.GetAttribute(name).value_or("-");
}

void PrintHeader(const Node& envelope, const Node& order) {
  std::printf("A message of type %s, made %s\n", AttributeOf(envelope, "msgType").c_str(),
              AttributeOf(envelope, "timeStamp").c_str());
  std::printf("  its content: %s in %s\n", order.NodeName().c_str(),
              order.NamespaceUri().value_or("no namespace").c_str());
  std::printf("  order %s for %s, status %s\n\n", AttributeOf(order, "number").c_str(),
              TextOf(order, "Customer").c_str(), AttributeOf(order, "status").c_str());
}

void PrintItems(const Node& order) {
  const NodeList items = order.GetElementsByTagName("Item");
  std::printf("%d items\n", static_cast<int>(items.Length()));
  for (std::int32_t i = 0; i < items.Length(); ++i) {
    const Node item = items.Item(i);
    std::printf("  %-8s %4s %-6s %9s  %s\n", AttributeOf(item, "sku").c_str(),
                TextOf(item, "Quantity").c_str(), AttributeOf(item, "unit").c_str(),
                TextOf(item, "Price").c_str(), TextOf(item, "Description").c_str());
  }
}

Node FindItem(const Node& order, std::string_view sku) {
  NodeList items = order.GetElementsByTagName("Item");
  while (Node item = items.NextNode()) {
    if (AttributeOf(item, "sku") == sku) return item;
  }
  return {};
}

void Confirm(const Document& document, const Node& order) {
  order.SetAttribute("status", "confirmed");
  const Node item = FindItem(order, "BLB-007");
  if (!item) throw std::runtime_error("the order has no item BLB-007");
  const std::string space = item.NamespaceUri().value_or("");
  const Node note = document.CreateNode(kx::dom::NodeType::kElement, "Note", space);
  note.SetText("Packed < 2 kg & labelled");
  item.AppendChild(note);
  std::printf("\nConfirmed; the item of the new note is now\n\n%s\n", item.Xml().c_str());
}

// A mistake is answered, not suffered: the failure carries number, source and text.
void ShowRefusals(const Document& document, const Node& order) {
  std::printf("\nRefused, with nothing changed:\n");
  try {
    order.AppendChild(document.AsNode());
  } catch (const kx::Error& error) {
    std::printf("  a document as a child: 0x%08X %s\n", static_cast<unsigned>(error.Number()),
                WithoutLineEnd(error.Description()).c_str());
  }
  const Document broken = Document::Create();
  if (!broken.LoadXml("<Order>\n  <Item></item>\n</Order>")) {
    const kx::dom::ParseError& error = broken.LastError();
    std::printf("  a text with a wrong end tag: line %d, position %d: %s\n", error.line,
                error.linePos, WithoutLineEnd(error.reason).c_str());
  }
}

void Run(const std::string& folder) {
  const Document document = LoadOrder(folder + "/order.xml");
  const Node envelope = document.DocumentElement();
  const Node order = envelope.GetElementsByTagName("Order").Item(0);
  if (!order) throw std::runtime_error("the message holds no Order");
  PrintHeader(envelope, order);
  PrintItems(order);
  Confirm(document, order);
  ShowRefusals(document, order);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    Run(argc > 1 ? argv[1] : ".");
    return 0;
  } catch (const kx::Error& error) {
    std::fprintf(stderr, "kx_demo: %s\n", error.Description().c_str());
  } catch (const std::exception& error) {
    std::fprintf(stderr, "kx_demo: %s\n", error.what());
  }
  return 1;
}
