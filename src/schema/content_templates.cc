// See content_templates.h.
#include "schema/content_templates.h"

namespace kx::schema {

bool operator==(const ContentTemplates::Key& a, const ContentTemplates::Key& b) noexcept {
  return a.elementType == b.elementType && a.schemaName == b.schemaName &&
         a.limits.maxElements == b.limits.maxElements && a.limits.maxDepth == b.limits.maxDepth &&
         a.limits.maxTextBytes == b.limits.maxTextBytes;
}

dom::Document ContentTemplates::Copy(const Key& key) const {
  dom::Document found;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    for (const auto& [known, content] : templates_) {
      if (known == key) found = content;
    }
  }
  return found ? found.Clone(dom::CloneDepth::kDeep) : dom::Document();
}

void ContentTemplates::Keep(const Key& key, const dom::Document& content) {
  if (content.Data().NodeCount() > kMostNodes) return;
  dom::Document kept = content.Clone(dom::CloneDepth::kDeep);
  kept.Freeze();
  const std::lock_guard<std::mutex> lock(mutex_);
  if (templates_.size() < kMostTemplates) templates_.emplace_back(key, std::move(kept));
}

}  // namespace kx::schema
