// See peers.h. One parser is used again and again; it checks namespaces and validates nothing.
#include "peers.h"

#include <stdexcept>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/sax/HandlerBase.hpp>
#include <xercesc/util/PlatformUtils.hpp>

namespace kx::bench {

namespace {

class Library {
 public:
  Library() { xercesc::XMLPlatformUtils::Initialize(); }
  ~Library() { xercesc::XMLPlatformUtils::Terminate(); }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;
};

class Parse : public Task {
 public:
  explicit Parse(const Workload& workload)
      : texts_(workload.texts), parser_(std::make_unique<xercesc::XercesDOMParser>()) {
    parser_->setValidationScheme(xercesc::XercesDOMParser::Val_Never);
    parser_->setDoNamespaces(true);
    parser_->setLoadExternalDTD(false);
    parser_->setErrorHandler(&errors_);  // HandlerBase throws what is fatal
  }
  std::uint64_t Run(std::size_t text) override {
    const std::string& source = texts_[text];
    const xercesc::MemBufInputSource input(reinterpret_cast<const XMLByte*>(source.data()),
                                           source.size(), "order.xml");
    parser_->parse(input);
    if (parser_->getDocument()->getDocumentElement() == nullptr) {
      throw std::runtime_error("Xerces-C refuses the text");
    }
    parser_->resetDocumentPool();
    return parser_->getErrorCount();
  }

 private:
  Library library_;
  xercesc::HandlerBase errors_;
  const std::vector<std::string>& texts_;
  std::unique_ptr<xercesc::XercesDOMParser> parser_;
};

}  // namespace

std::unique_ptr<Task> XercesParse(const Workload& workload) {
  return std::make_unique<Parse>(workload);
}

}  // namespace kx::bench
