// See schema.h.
#include "platform/xdr/schema.h"

#include "platform/text/unicode.h"
#include "platform/xdr/schema_names.h"

namespace kx::xdr {

const AttributeUse* ElementType::FindOtherAttribute(Symbol wanted,
                                                    std::size_t& hint) const noexcept {
  constexpr std::size_t kFew = 8;
  if (attributes.size() > kFew) {
    const std::uint32_t index = attributeIndex.Find(wanted);
    if (index == kNoSymbol) return nullptr;
    hint = index + 1;
    return &attributes[index];
  }
  for (std::size_t i = 0; i < attributes.size(); ++i) {
    if (attributes[i].symbol != wanted) continue;
    hint = i + 1;
    return &attributes[i];
  }
  return nullptr;
}

const ElementType* Schema::FindElement(const dom::NameKey& key,
                                       std::string_view name) const noexcept {
  const std::uint32_t index = elementIndex_.Find(key, name);
  return index == kNoSymbol ? nullptr : &elements_[index];
}

const AttributeType* Schema::FindAttributeType(std::string_view name) const noexcept {
  const std::uint32_t index = attributeTypeIndex_.Find(name);
  return index == kNoSymbol ? nullptr : &attributeTypes_[index];
}

// A blank cannot stand in a local name; namespaces that lead to one schema give one key.
std::string Schema::ForeignKey(std::string_view uri, std::string_view name) {
  std::string key(name);
  key += ' ';
  key += NamesSchema(uri) ? text::UpperCase(uri) : std::string(uri);
  return key;
}

Symbol Schema::ForeignAttributeSymbol(std::string_view uri, std::string_view name) const noexcept {
  if (foreignAttributeSymbols_.Size() == 0) return kNoSymbol;
  return foreignAttributeSymbols_.Find(ForeignKey(uri, name));
}

Symbol Schema::ForeignElementSymbol(std::string_view uri, std::string_view name) const noexcept {
  if (foreignElementSymbols_.Size() == 0) return kNoSymbol;
  return foreignElementSymbols_.Find(ForeignKey(uri, name));
}

std::string Schema::ElementName(Symbol symbol, std::string_view uri) const {
  const bool own = symbol < elements_.size();
  const ForeignName* foreign = own ? nullptr : &foreignElements_[symbol - elements_.size()];
  const std::string_view space = own ? uri : std::string_view(foreign->uri);
  const std::string& name = own ? elements_[symbol].name : foreign->name;
  if (space.empty()) return name;
  return "{" + std::string(space) + "}" + name;
}

}  // namespace kx::xdr
