// See peers.h. One parser is used again and again, which is Expat's fastest way.
#include "peers.h"

#include <expat.h>
#include <stdexcept>

namespace kx::bench {

namespace {

void XMLCALL OnStart(void* count, const XML_Char* /*name*/, const XML_Char** /*attributes*/) {
  ++*static_cast<std::uint64_t*>(count);
}
void XMLCALL OnEnd(void* /*count*/, const XML_Char* /*name*/) {}
void XMLCALL OnText(void* /*count*/, const XML_Char* /*text*/, int /*length*/) {}

struct FreeParser {
  void operator()(XML_Parser parser) const noexcept { XML_ParserFree(parser); }
};

class Parse : public Task {
 public:
  explicit Parse(const Workload& workload)
      : texts_(workload.texts), parser_(XML_ParserCreate(nullptr)) {}
  std::uint64_t Run(std::size_t text) override {
    std::uint64_t elements = 0;
    XML_ParserReset(parser_.get(), nullptr);
    XML_SetUserData(parser_.get(), &elements);
    XML_SetElementHandler(parser_.get(), OnStart, OnEnd);
    XML_SetCharacterDataHandler(parser_.get(), OnText);
    const std::string& source = texts_[text];
    if (XML_Parse(parser_.get(), source.data(), static_cast<int>(source.size()), XML_TRUE) !=
        XML_STATUS_OK) {
      throw std::runtime_error("Expat refuses the text");
    }
    return elements;
  }

 private:
  const std::vector<std::string>& texts_;
  std::unique_ptr<XML_ParserStruct, FreeParser> parser_;
};

}  // namespace

std::unique_ptr<Task> ExpatParse(const Workload& workload) {
  return std::make_unique<Parse>(workload);
}

}  // namespace kx::bench
