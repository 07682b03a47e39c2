// kxmsg schema.
#include "kxmessage/schema.h"

#include "kxmsg/commands.h"
#include "kxmsg/files.h"
#include "kxmsg/schema_text.h"
#include "kxmsg/text_form.h"

namespace kxmsg {

ExitStatus RunSchema(const Arguments& arguments, Console& console) {
  const kx::Schema schema =
      kx::Schema::Load(SchemaLocation(arguments.schema, arguments), arguments.options);
  const std::vector<kx::SchemaElement> elements = schema.Elements();
  const std::string description = schema.Description();
  if (arguments.json) {
    console.Print("{\"location\": " + JsonText(schema.Location()) +
                  ", \"description\": " + JsonText(description) + ", \"elements\": [");
    for (std::size_t i = 0; i < elements.size(); ++i) {
      console.Print((i == 0 ? "\n  " : ",\n  ") + SchemaElementJson(elements[i]));
    }
    console.Print("\n]}\n");
    return ExitStatus::kDone;
  }
  if (!description.empty()) console.Print("\"" + Printable(OneLine(description)) + "\"\n");
  for (const kx::SchemaElement& element : elements) console.Print(SchemaElementText(element));
  return ExitStatus::kDone;
}

}  // namespace kxmsg
