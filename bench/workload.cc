// See workload.h.
#include "workload.h"

#include <array>
#include <stdexcept>

namespace kx::bench {

namespace {

constexpr std::size_t kLeastFullOrder = 4000;

// SplitMix64: small, and the same everywhere.
class Random {
 public:
  explicit Random(std::uint64_t seed) noexcept : state_(seed * 0xD1B54A32D192ED03U + 1) {}

  std::uint64_t Next() noexcept {
    state_ += 0x9E3779B97F4A7C15U;
    std::uint64_t mixed = state_;
    mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9U;
    mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBU;
    return mixed ^ (mixed >> 31U);
  }
  std::uint64_t Below(std::uint64_t limit) noexcept { return Next() % limit; }
  bool Percent(std::uint64_t chance) noexcept { return Below(100) < chance; }
  template <std::size_t Size>
  std::string_view Pick(const std::array<std::string_view, Size>& from) noexcept {
    return from[Below(Size)];
  }

 private:
  std::uint64_t state_;
};

using namespace std::string_view_literals;

constexpr std::array kThings = {"ladder"sv, "spindle"sv,   "coupling"sv,  "fuse"sv,
                                "pulley"sv, "nozzle"sv,    "rivet"sv,     "manifold"sv,
                                "crank"sv,  "handwheel"sv, "bushing"sv,   "sleeve"sv,
                                "chain"sv,  "lantern"sv,   "thermostat"sv};
constexpr std::array kSorts = {"aluminium"sv, "long"sv,   "size 12"sv,     "plastic"sv,
                               "1/2 in"sv,    "24 V"sv,   "left-handed"sv, "waterproof"sv,
                               "used"sv,      "copper"sv, "Ø 30 mm"sv,     "class A2"sv};
constexpr std::array kPeople = {"Ines Ferreira"sv, "Jan de Vries"sv,   "Zofia Wójcik"sv,
                                "Karl Gruber"sv,   "Lone Jørgensen"sv, "Pablo Ruiz"sv,
                                "Alice Martens"sv, "Beat Kälin"sv};
constexpr std::array kCompanies = {
    "Alpine Tools AG"sv,     "Vries & Zonen"sv, "Ferreira Ferragens Lda"sv, "Nordlys Værktøj"sv,
    "Gruber Handels GmbH"sv, "Talleres Ruiz"sv, "Wisla Supplies"sv};
constexpr std::array kStreets = {"Market Square"sv, "Kanalstraat"sv, "Bahnhofstrasse"sv,
                                 "Rua do Porto"sv,  "Calle Mayor"sv, "Strandvejen"sv};
constexpr std::array kTowns = {"Graz"sv,     "Gent"sv,    "Basel"sv,  "Aarhus"sv,
                               "Zaragoza"sv, "Utrecht"sv, "Gdańsk"sv, "Porto"sv};
constexpr std::array kCountries = {"AT"sv, "BE"sv, "CH"sv, "DK"sv, "ES"sv, "NL"sv, "PL"sv, "PT"sv};
constexpr std::array kUnits = {"each"sv, "pair"sv, "crate"sv, "metre"sv};
constexpr std::array kStates = {"draft"sv, "placed"sv, "packed"sv, "sent"sv};
constexpr std::array kCurrencies = {"CHF"sv, "DKK"sv, "EUR"sv, "USD"sv};
constexpr std::array kLanguages = {"en"sv, "de"sv, "pt"sv};
constexpr std::array kRemarks = {
    "Ring the bell at gate 4 before unloading"sv, "The customer will send a drawing by post"sv,
    "Bitte nicht stürzen, enthält Glas"sv, "Same batch as the last delivery if there is any left"sv,
    "Entregar só de manhã; fechado à tarde"sv};

std::string Digits(std::uint64_t number, std::size_t width) {
  std::string digits = std::to_string(number);
  return digits.size() < width ? std::string(width - digits.size(), '0') + digits : digits;
}

// Text under construction; what is put between tags is escaped.
class Text {
 public:
  void Raw(std::string_view text) { text_ += text; }
  void Begin(std::string_view name) { ((text_ += '<') += name); }
  void Attribute(std::string_view name, std::string_view value) {
    (((text_ += ' ') += name) += "=\"");
    Escape(value);
    text_ += '"';
  }
  void Open() { text_ += '>'; }
  void Open(std::string_view name) {
    Begin(name);
    Open();
  }
  void Close(std::string_view name) { (((text_ += "</") += name) += '>'); }
  void Content(std::string_view value, std::string_view name) {
    Open();
    Escape(value);
    Close(name);
  }
  void Leaf(std::string_view name, std::string_view value) {
    Begin(name);
    Content(value, name);
  }

  [[nodiscard]] std::size_t Size() const noexcept { return text_.size(); }
  std::string Take() { return std::move(text_); }

 private:
  void Escape(std::string_view value) {
    for (const char c : value) {
      if (c == '&') {
        text_ += "&amp;";
      } else {
        text_ += c;
      }
    }
  }

  std::string text_;
};

std::string Fraction(std::uint64_t thousandths) {
  return std::string("0.").append(Digits(thousandths, 3));
}

std::string Day(Random& random) {
  return Digits(2004 + random.Below(5), 4) + '-' + Digits(1 + random.Below(12), 2) + '-' +
         Digits(1 + random.Below(28), 2);
}

std::string Moment(Random& random) {
  return Day(random) + 'T' + Digits(random.Below(24), 2) + ':' + Digits(random.Below(60), 2) + ':' +
         Digits(random.Below(60), 2);
}

std::string Amount(Random& random, std::uint64_t limit) {
  return std::to_string(random.Below(limit)) + '.' + Digits(random.Below(100), 2) + "00";
}

std::string Identifier(Random& random) {
  constexpr std::string_view kShape = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
  std::string text(kShape);
  for (char& c : text) {
    if (c == 'x') c = "0123456789abcdef"[random.Below(16)];
  }
  return text;
}

std::string Base64(Random& random, std::size_t groups) {
  constexpr std::string_view kAlphabet =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text(groups * 4, 'A');
  for (char& c : text) c = kAlphabet[random.Below(64)];
  return text;
}

void PutPartner(Text& text, Random& random, std::string_view name) {
  text.Begin(name);
  text.Attribute("id", 'K' + Digits(random.Below(100000), 5));
  text.Open();
  text.Leaf("Name", random.Pick(kCompanies));
  text.Leaf("VatNumber",
            std::string(random.Pick(kCountries)) + Digits(random.Below(1000000000), 9));
  text.Begin("Place");
  text.Attribute("country", random.Pick(kCountries));
  text.Open();
  text.Leaf("Street",
            std::string(random.Pick(kStreets)) + ' ' + std::to_string(1 + random.Below(150)));
  text.Leaf("Postcode", Digits(random.Below(100000), 5));
  text.Leaf("Town", random.Pick(kTowns));
  text.Close("Place");
  text.Open("Contact");
  text.Leaf("Person", random.Pick(kPeople));
  text.Leaf("Telephone",
            '+' + std::to_string(30 + random.Below(20)) + ' ' + Digits(random.Below(100000000), 8));
  text.Leaf("Mail", "desk" + std::to_string(random.Below(900)) + "@example.org");
  text.Close("Contact");
  text.Close(name);
}

void PutOptionalParts(Text& text, Random& random, std::size_t line) {
  if (random.Percent(60)) text.Leaf("Discount", Fraction(random.Below(350)));
  text.Leaf("ShipsOn", Moment(random));
  if (random.Percent(30)) text.Leaf("Serial", Identifier(random));
  if (random.Percent(25)) {
    text.Begin("Remark");
    text.Attribute("lang", random.Pick(kLanguages));
    text.Content(random.Pick(kRemarks), "Remark");
  }
  if (random.Percent(4)) {
    text.Begin("Picture");
    text.Attribute("mime", "image/jpeg");
    text.Attribute("name", "view" + std::to_string(line) + ".jpg");
    text.Content(Base64(random, 50 + random.Below(150)), "Picture");
  }
}

void BeginItem(Text& text, Random& random, std::string_view sku, std::size_t line) {
  text.Begin("Item");
  text.Attribute("sku", sku);
  text.Attribute("line", std::to_string(line));
  text.Attribute("unit", random.Pick(kUnits));
  text.Attribute("taxed", random.Percent(50) ? "1" : "0");
  text.Open();
}

std::string Sku(Random& random) {
  return static_cast<char>('K' + random.Below(8)) + Digits(random.Below(100000), 5);
}

std::string MakeItem(Random& random, std::string_view sku, std::size_t line, bool full) {
  Text text;
  BeginItem(text, random, sku, line);
  std::string description(random.Pick(kSorts));
  ((description += ' ') += random.Pick(kThings)) += ", ";
  description += random.Pick(kSorts);
  if (random.Percent(8)) (description += " & ") += random.Pick(kThings);
  text.Leaf("Description", description);
  text.Leaf("Qty", std::to_string(1 + random.Below(400)));
  text.Leaf("UnitPrice", Amount(random, 3000));
  if (full) PutOptionalParts(text, random, line);
  text.Close("Item");
  return text.Take();
}

void PutBeginning(Text& text, Random& random, bool full) {
  text.Raw("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
  text.Begin("KXMessage");
  text.Attribute("version", "1.0.0");
  text.Attribute("msgType", "Order");
  text.Attribute("uniqueID", Identifier(random));
  text.Attribute("subType", "");
  text.Attribute("timeStamp", "2007-11-02 16:40:21");
  text.Attribute("schemaURL", "order.xdr");
  text.Attribute("deliveryOptions", "0");
  text.Attribute("deliveryResult", "0");
  text.Attribute("tag", "");
  text.Attribute("class", "Order");
  text.Attribute("encoding", "UTF-8");
  text.Open();
  text.Begin("Order");
  text.Attribute("xmlns", "x-schema:order.xdr");
  text.Attribute("number", "A/" + Digits(random.Below(1000000), 6));
  text.Attribute("state", random.Pick(kStates));
  text.Attribute("currency", random.Pick(kCurrencies));
  text.Open();
  text.Open("Header");
  text.Leaf("OrderedOn", Moment(random));
  if (full) text.Leaf("NeededBy", Day(random));
  if (full) text.Leaf("Reference", "our sign " + Digits(random.Below(10000), 4));
  text.Leaf("Rush", random.Percent(50) ? "1" : "0");
  text.Close("Header");
}

void PutEnd(Text& text, Random& random, std::size_t items, bool full) {
  if (full) {
    text.Open("Totals");
    text.Leaf("Net", Amount(random, 1000000));
    text.Leaf("Tax", Amount(random, 100000));
    text.Leaf("Gross", Amount(random, 1000000));
    text.Leaf("Lines", std::to_string(items));
    text.Close("Totals");
  }
  text.Close("Order");
  text.Close("KXMessage");
  text.Raw("\n");
}

}  // namespace

std::string MakeOrder(std::size_t bytes, std::uint64_t seed) {
  const bool full = bytes >= kLeastFullOrder;
  Random random(seed);
  Text text;
  PutBeginning(text, random, full);
  if (full) {
    PutPartner(text, random, "Customer");
    PutPartner(text, random, "Supplier");
    text.Open("Payment");
    text.Leaf("Days", std::to_string(10 * (1 + random.Below(6))));
    text.Leaf("Discount", Fraction(random.Below(100)));
    text.Close("Payment");
  }
  Text end;
  PutEnd(end, random, 0, full);
  constexpr std::size_t kItemsTags = 15;
  std::size_t size = text.Size() + end.Size() + kItemsTags;
  std::vector<std::string> items;
  while (items.empty() || size + items.back().size() / 2 < bytes) {
    items.push_back(MakeItem(random, Sku(random), items.size() + 1, full));
    size += items.back().size();
  }
  const std::size_t middle = (items.size() - 1) / 2;
  items[middle] = MakeItem(random, "X42", middle + 1, full);
  text.Open("Items");
  for (const std::string& item : items) text.Raw(item);
  text.Close("Items");
  PutEnd(text, random, items.size(), full);
  return text.Take();
}

std::string MakeWideOrder(std::size_t items) {
  Random random(1);
  Text text;
  PutBeginning(text, random, false);
  text.Open("Items");
  for (std::size_t line = 1; line <= items; ++line) {
    BeginItem(text, random, line == (items + 1) / 2 ? "X42" : Sku(random), line);
    text.Leaf("Qty", std::to_string(1 + random.Below(400)));
    text.Close("Item");
  }
  text.Close("Items");
  PutEnd(text, random, items, false);
  return text.Take();
}

std::string MakeDeepOrder(std::size_t levels) {
  constexpr std::size_t kOtherLevels = 3;  // the envelope, the order, and the innermost element
  Random random(1);
  Text text;
  PutBeginning(text, random, false);
  text.Open("Items");
  text.Raw(MakeItem(random, "X42", 1, false));
  text.Close("Items");
  for (std::size_t level = 1; level + kOtherLevels <= levels; ++level) {
    text.Begin("Parcel");
    text.Attribute("level", std::to_string(level));
    text.Open();
  }
  text.Leaf("Qty", "1");
  for (std::size_t level = 1; level + kOtherLevels <= levels; ++level) text.Close("Parcel");
  PutEnd(text, random, 1, false);
  return text.Take();
}

std::string MakeLibrary(std::size_t pages, std::size_t stored) {
  const auto append = [](std::string& text, std::size_t count) {
    for (std::size_t i = 1; i <= count; ++i) {
      text += "<Page no=\"" + std::to_string(i) + "\"><Title>page</Title></Page>";
    }
  };
  std::string text = "<Library xmlns=\"ref-schema:edit.xdr\"><Store>";
  append(text, stored);
  text += "</Store><Shelf><Left>here</Left>";
  append(text, pages);
  return text + "</Shelf></Library>";
}

Workload MakeWorkload(std::string_view name) {
  struct Size {
    std::string_view name;
    std::size_t bytes;
    std::size_t count;
  };
  constexpr Size kSizes[] = {{"1k", 1U << 10U, 128},
                             {"10k", 10U << 10U, 24},
                             {"100k", 100U << 10U, 1},
                             {"1m", 1U << 20U, 1},
                             {"10m", 10U << 20U, 1}};
  Workload workload{std::string(name), {}};
  for (const Size& size : kSizes) {
    if (size.name != name) continue;
    for (std::size_t i = 1; i <= size.count; ++i) {
      workload.texts.push_back(MakeOrder(size.bytes, i));
    }
  }
  if (name == "wide-1k") workload.texts.push_back(MakeWideOrder(1000));
  if (name == "wide") workload.texts.push_back(MakeWideOrder(30000));
  if (name == "beside") workload.texts.push_back(MakeLibrary(kSmall, kLarge));
  if (name == "among") workload.texts.push_back(MakeLibrary(kLarge, kSmall));
  if (name == "deep") workload.texts.push_back(MakeDeepOrder(1000));
  if (workload.texts.empty()) throw std::invalid_argument("no input is called " + workload.name);
  return workload;
}

}  // namespace kx::bench
