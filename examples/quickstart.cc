// The program of the README: a new order, filled, printed and saved.
//
//   kx_quickstart [FOLDER]     FOLDER holds order.xdr; the current folder unless given
#include <filesystem>
#include <iostream>
#include <kxmessage/kxmessage.h>

int main(int argc, char** argv) {
  try {
    kx::Options options = kx::Options::OfProcess();
    options.schemaBase = std::filesystem::absolute(argc > 1 ? argv[1] : ".").string();

    kx::KXMessage message(options);
    message.InitMessage("order.xdr");
    const kx::KXMsgElement order = message.RootElement();
    order["Header"]["Customer"].Value("Harbour Lights & Sons");
    order["Header"]["Rush"].Value(true);  // optional: reading it creates it
    const kx::KXMsgElement item = order["Items"]["Item"];
    item["Quantity"].Value(4);
    std::cout << item.XML() << "\n" << order.FindElements("//Item[Quantity > 3]").Count() << "\n";
  } catch (const kx::Error& error) {
    std::cerr << error.Number() << ": " << error.Description() << "\n";
    return 1;
  }
}
