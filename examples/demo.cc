// Makes a message of the example schema, fills it, prints it, saves it, loads it again, and shows
// what happens to a message that breaks its schema.
//
//   kx_demo [FOLDER [OUTPUT]]    FOLDER holds order.xdr, OUTPUT is where the message is saved; the
//                                current folder unless given
#include <cstdint>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <kxmessage/kxmessage.h>
#include <string>
#include <string_view>

namespace {

using kx::KXMessage;
using kx::KXMsgElement;

// The whole path of a folder, with its closing slash, as bases are.
std::string Folder(const std::string& name) {
  std::string path = std::filesystem::absolute(name).lexically_normal().string();
  if (path.back() != '/') path += '/';
  return path;
}

void Fill(const KXMsgElement& order) {
  const KXMsgElement header = order["Header"];
  header["Placed"].Value("2024-05-17T09:30:00");
  header["Customer"].Value("Harbour Lights & Sons");
  header["Rush"].Value(true);  // the schema says that it is optional: reading it makes it
  const KXMsgElement courier = order["Delivery"]["Courier"];
  courier["Street"].Value("12 Quay Road");
  courier["City"].Value("Wexford");
  courier["PostCode"].Value("Y35 H2P1");
  const KXMsgElement item = order["Items"]["Item"];
  item["Description"].Value("Deck lamp, brass");
  item["Quantity"].Value(4);
  item["Price"].Value(kx::Currency{1'295'000});
}

void PrintTree(const KXMsgElement& element, int depth) {
  const kx::KXMsgElementInfo info = element.Info();
  std::cout << std::string(static_cast<std::size_t>(depth) * 2, ' ') << info.Name();
  if (info.CanHaveValue()) std::cout << " (" << info.DataType() << "): " << element.TextValue();
  std::cout << "\n";
  for (const KXMsgElement& child : element) PrintTree(child, depth + 1);
}

void PrintAllowed(const KXMsgElement& element) {
  std::cout << "An " << element.Info().Name() << " may hold";
  const char* separator = " ";
  for (const kx::KXMsgElementInfo& child : element.KnownValidChildren()) {
    std::cout << separator << child.Name();
    separator = ", ";
    if (child.MaxOccurrences() == -1) std::cout << " (any number)";
  }
  std::cout << ".\n";
}

// A mistake is answered, not suffered: the failure carries number, text and place.
void ShowRefusals(const KXMessage& message, const kx::Options& options) {
  const auto show = [](const kx::Error& error) {
    std::cout << "  0x" << std::hex << std::setw(8) << std::setfill('0')
              << static_cast<std::uint32_t>(error.Number()) << std::dec << " "
              << error.Description().substr(0, 90) << "\n";
  };
  try {
    message.RootElement()["Items"]["Item"]["Quantity"].Value("a few");
  } catch (const kx::Error& error) {
    show(error);
  }
  try {
    std::string text = message.XML();
    text.replace(text.find("<Quantity>4"), 11, "<Quantity>x");
    KXMessage(options).LoadMessageFromString(text);
  } catch (const kx::ParseError& error) {
    show(error);
    std::cout << "  in line " << error.Line() << "\n";
  }
}

void Run(const std::string& schemas, const std::string& output) {
  kx::Options options = kx::Options::OfProcess();
  options.schemaBase = schemas;
  options.messageBase = output;

  const KXMessage message(options);
  message.InitMessage("order.xdr");
  const KXMsgElement order = message.RootElement();
  Fill(order);
  std::cout << "A new message of type " << message.MsgType() << ", version " << message.Version()
            << "\n";
  PrintTree(order, 1);
  PrintAllowed(order["Items"]["Item"]);
  std::cout << "\nIts text without the header:\n" << order.XML() << "\n";

  message.SaveMessage("demo-order");
  const KXMessage loaded(options);
  loaded.LoadMessage("demo-order");
  std::cout << "\nSaved and loaded again, it is "
            << (loaded.XML() == message.XML() ? "the same" : "another") << ".\n";
  std::cout << "Items of more than 3: "
            << loaded.RootElement().FindElements("Items/Item[Quantity > 3]").Count() << "\n";

  std::cout << "\nRefused:\n";
  ShowRefusals(loaded, options);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const std::string schemas = Folder(argc > 1 ? argv[1] : ".");
    Run(schemas, argc > 2 ? Folder(argv[2]) : schemas);
    return 0;
  } catch (const kx::Error& error) {
    std::cerr << "kx_demo: " << error.Description() << "\n";
  }
  return 1;
}
