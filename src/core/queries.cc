// See queries.h.
#include "core/queries.h"

#include "platform/patterns/select.h"
#include "platform/xdr/typing.h"

namespace kx::core {

namespace {

class TypingBySchemas final : public patterns::NodeTyping {
 public:
  [[nodiscard]] datatypes::DataType TypeOf(const dom::Cursor& node) const override {
    return xdr::TypeOf(node);
  }
  [[nodiscard]] bool IsId(const dom::Cursor& attribute) const override {
    return xdr::IsIdAttribute(attribute);
  }
};

// One a thread: no lock, and shared schema documents are asked from many threads.
patterns::PatternCache& CacheOfThread() {
  thread_local patterns::PatternCache cache;
  return cache;
}

}  // namespace

const patterns::NodeTyping& SchemaTyping() noexcept {
  static const TypingBySchemas typing;
  return typing;
}

patterns::QueryOptions ObjectQueryOptions() noexcept {
  patterns::QueryOptions options;
  options.typing = &SchemaTyping();
  return options;
}

dom::NodeList SelectNodes(const dom::Node& start, std::string_view text) {
  return patterns::SelectNodes(start, text, CacheOfThread(), ObjectQueryOptions());
}

dom::Node SelectSingleNode(const dom::Node& start, std::string_view text) {
  return patterns::SelectSingleNode(start, text, CacheOfThread(), ObjectQueryOptions());
}

dom::NodeList SelectNodes(const dom::Node& start, const patterns::Pattern& pattern) {
  return patterns::SelectNodes(start, pattern, ObjectQueryOptions());
}

dom::Node SelectSingleNode(const dom::Node& start, const patterns::Pattern& pattern) {
  return patterns::SelectSingleNode(start, pattern, ObjectQueryOptions());
}

}  // namespace kx::core
