// Edits a message under its schema: children, attributes, groups, and what is refused.
//
//   kx_editing [FOLDER]    FOLDER holds order.xdr; the current folder unless given
#include <cstdint>
#include <filesystem>
#include <functional>
#include <iostream>
#include <kxmessage/kxmessage.h>
#include <string>

namespace {

using kx::KXMessage;
using kx::KXMsgElement;

constexpr const char* kPaymentSchema =
    "<Schema xmlns='urn:schemas-microsoft-com:xml-data'>"
    "<ElementType name='Card' content='textOnly'/><ElementType name='Expires' content='textOnly'/>"
    "<ElementType name='Invoice' content='textOnly'/>"
    "<ElementType name='Payment' content='eltOnly' order='one'>"
    "<group order='seq'><element type='Card'/><element type='Expires'/></group>"
    "<group order='seq'><element type='Invoice'/></group>"
    "</ElementType></Schema>";

void Show(const char* what, const std::function<void()>& edit) {
  std::cout << what << ": ";
  try {
    edit();
    std::cout << "done\n";
  } catch (const kx::Error& error) {
    std::cout << error.Description() << "\n";
  }
}

void EditChildren(const KXMsgElement& items) {
  const KXMsgElement lamp = items["Item"];
  lamp["Description"].Value("Deck lamp, brass");
  const KXMsgElement rope = items.AddChild("Item");  // with all that an item must have
  rope["Description"].Value("Rope, 20 m");
  const KXMsgElement copy = items.InsertChild(lamp);  // behind the others; the lamp stays
  copy["Description"].Value("Deck lamp, chrome");
  Show("a fourth item without a name", [&] { items.AddChild(); });
  Show("a customer among the items", [&] { items.AddChild("Customer"); });
  Show("a second description", [&] { lamp.AddChild("Description"); });
  Show("an item without a description", [&] { lamp.RemoveChildKey("Description"); });
  items.ReplaceChild(copy, 1);  // the copy's copy in the place of the first item
  items.RemoveChild(copy);
  items.RemoveChildKey(3);
  for (const KXMsgElement& item : items) std::cout << "  " << item[1].TextValue() << "\n";
}

void EditAttributes(const KXMsgElement& item) {
  const kx::KXMsgAttributes attributes = item.Attributes();
  attributes["sku"].Value("LAMP-7");
  attributes["gift"].Value("1");  // was not there: reading it adds it
  Show("another unit", [&] { attributes["unit"].Value("dozen"); });
  Show("no sku", [&] { attributes.RemoveAttribute("sku"); });
  Show("no gift", [&] { attributes.RemoveAttribute("gift"); });
  Show("a colour", [&] { attributes.AddAttribute("colour"); });
  for (const kx::KXMsgAttribute& attribute : attributes) {
    std::cout << "  " << attribute.Name() << " = " << attribute.Value() << "\n";
  }
}

void EditGroups() {
  KXMessage message;
  message.InitMessageFromString(kPaymentSchema);
  const KXMsgElement payment = message.RootElement();
  for (const std::int16_t group : {payment.CurrentGroup(), std::int16_t{2}}) {
    payment.ReplaceGroup(group);
    std::cout << "group " << payment.CurrentGroup() << " of " << payment.NumberOfGroups() << ":";
    for (std::int32_t i = 1; i <= payment.Count(); ++i)
      std::cout << " " << payment[i].Info().Name();
    std::cout << "\n";
  }
  Show("group 3", [&] { payment.ReplaceGroup(3); });
}

}  // namespace

int main(int argc, char** argv) {
  try {
    kx::Options options = kx::Options::OfProcess();
    options.schemaBase = std::filesystem::absolute(argc > 1 ? argv[1] : ".").string();
    KXMessage message(options);
    message.InitMessage("order.xdr");
    const KXMsgElement items = message.RootElement()["Items"];
    EditChildren(items);
    EditAttributes(items["Item"]);
    EditGroups();
  } catch (const kx::Error& error) {
    std::cerr << "editing: " << error.Description() << "\n";
    return 1;
  }
  return 0;
}
