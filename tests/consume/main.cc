// What somebody else's program does with the library: makes objects, reads what they tell, and
// catches what they raise, by the exact type, across the border of the library.
#include <cstdio>
#include <kxmessage/kxmessage.h>
#include <string>

namespace {

int failures = 0;

void Expect(bool holds, const char* what) {
  if (holds) return;
  ++failures;
  std::fprintf(stderr, "consumer: %s\n", what);
}

void LoadsNothingWithoutASchema() {
  const kx::KXMessage message;
  Expect(static_cast<bool>(message), "a new message is an object");
  try {
    message.LoadMessageFromString("<a/>");
    Expect(false, "a text without a schema was loaded");
  } catch (const kx::Error& error) {
    Expect(error.Number() == kx::kxMsgErrorNoSchema, "the number of a missing schema");
  }
}

void TellsWhereATextIsBad() {
  kx::Options options;
  options.codePage = 65001;
  const kx::KXMessage message(options);
  message.DefaultSchemaURL("order");
  try {
    message.LoadMessageFromString("<a>\n<b></a>");
    Expect(false, "a text that is no document was loaded");
  } catch (const kx::ParseError& error) {
    Expect(error.Line() == 2, "the line of the failure");
  }
}

void UsesValues() {
  Expect(kx::Variant("12").ToInteger() == 12, "a text becomes a number");
  Expect(kx::DecodeXmlBytes("\xEF\xBB\xBF<a/>") == "<a/>", "a mark is no text");
  Expect(kx::DecodeCodePage("\x80", 1252) == "\xE2\x82\xAC", "bytes become text");
  Expect(!kx::KXMsgElement(), "an element that is nothing");
}

}  // namespace

int main() {
  LoadsNothingWithoutASchema();
  TellsWhereATextIsBad();
  UsesValues();
  if (failures == 0) std::puts("consumer: works");
  return failures == 0 ? 0 : 1;
}
