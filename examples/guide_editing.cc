// The code of the guide's chapter on editing: attributes, children and groups of new messages.
//
//   kx_guide_editing [FOLDER]     FOLDER holds order.xdr and bill.xdr; the current one unless given
#include <filesystem>
#include <iostream>
#include <kxmessage/kxmessage.h>

namespace {

kx::KXMessage NewMessage(const kx::Options& options, const char* schema) {
  kx::KXMessage message(options);
  message.InitMessage(schema);
  return message;
}

void EditAttributes(const kx::KXMsgElement& order) {
  const kx::KXMsgElement item = order["Items"]["Item"];
  const kx::KXMsgAttributes attributes = item.Attributes();
  attributes["sku"].Value("LMP-100");
  if (!attributes.Exists("gift")) attributes.AddAttribute("gift").Value("1");
  std::cout << attributes["gift"].Value() << "\n";  // True
  attributes.RemoveAttribute("gift");
  for (const kx::KXMsgAttribute& attribute : attributes) {
    std::cout << attribute.Name() << "=" << attribute.Value() << "\n";
  }
  for (const kx::KXMsgAttributeInfo& info : attributes.KnownValidAttributes()) {
    std::cout << info.Name() << (info.Required() ? ", required\n" : "\n");
  }
}

void EditChildren(const kx::KXMsgElement& order) {
  const kx::KXMsgElement items = order["Items"];
  const kx::KXMsgElement second = items.AddChild("Item");
  second["Quantity"].Value(2);
  const kx::KXMsgElement third = items.InsertChild(second);  // a copy
  third["Quantity"].Value(3);
  items.ReplaceChild(second, 1);  // a copy in the place of the first
  items.RemoveChild(second);
  items.RemoveChildKey("Item");
  std::cout << items.Count() << " of " << third["Quantity"].TextValue() << "\n";  // 1 of 3
  try {
    items.RemoveChildKey("Item");
  } catch (const kx::Error& error) {
    std::cout << error.Description() << "\n";  // This child is required.
  }
}

void EditGroups(const kx::KXMsgElement& bill) {
  const kx::KXMsgElement payment = bill.AddChild("Payment");
  std::cout << payment.CurrentGroup() << " of " << payment.NumberOfGroups() << "\n";  // 1 of 2
  for (const kx::KXMsgElementInfo& info : payment.KnownGroupElements(2)) {
    std::cout << info.Name() << "\n";
  }
  payment.ReplaceGroup(2);
  payment["Iban"].Value("IE29AIBK93115212345678");
  std::cout << payment["Iban"].GroupNumber() << "\n";  // 2
}

}  // namespace

int main(int argc, char** argv) {
  try {
    kx::Options options = kx::Options::OfProcess();
    options.schemaBase = std::filesystem::absolute(argc > 1 ? argv[1] : ".").string();
    const kx::KXMessage order = NewMessage(options, "order.xdr");
    EditAttributes(order.RootElement());
    EditChildren(order.RootElement());
    const kx::KXMessage bill = NewMessage(options, "bill.xdr");
    EditGroups(bill.RootElement());
    std::cout << bill.RootElement().XML() << "\n";
  } catch (const kx::Error& error) {
    std::cerr << error.Number() << ": " << error.Description() << "\n";
    return 1;
  }
}
