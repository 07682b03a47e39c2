// See namespace_scan.h.
#include "core/namespace_scan.h"

#include "platform/text/unicode.h"

#include <algorithm>

namespace kx::core {

namespace {

bool IsSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// The next quote or end of a tag. Names are short: a loop is faster than a search for each.
std::size_t FindStop(std::string_view text, std::size_t at) {
  while (at < text.size() && text[at] != '>' && text[at] != '"' && text[at] != '\'') ++at;
  return at < text.size() ? at : NamespaceScan::kEnd;
}

}  // namespace

// Between two texts that look like declarations nothing need be understood beyond where the tags
// are, and behind the last one nothing at all.
std::size_t NamespaceScan::Next() noexcept {
  for (;;) {
    if (!searched_ || candidate_ < at_) {
      candidate_ = text_.find(kDeclaration, at_);
      searched_ = true;
    }
    if (candidate_ == kEnd) return kEnd;
    if (!inStartTag_) {
      const std::size_t open = text_.find('<', at_);
      if (open == kEnd) return kEnd;
      at_ = open;
      SkipMarkup();
      continue;
    }
    const std::size_t stop = FindStop(text_, at_);
    // A name in front that goes on into this one makes it another attribute's.
    if (candidate_ < stop && candidate_ >= at_) {
      const char before = text_[candidate_ - 1];
      const std::size_t found = candidate_;
      at_ = candidate_ + kDeclaration.size() - 1;
      if (IsSpace(before) || before == '"' || before == '\'') {
        SkipQuoted();
        return found;
      }
      SkipQuoted();
      continue;
    }
    if (stop == kEnd) return kEnd;
    at_ = stop;
    if (text_[stop] == '>') {
      ++at_;
      inStartTag_ = false;
    } else {
      SkipQuoted();
    }
  }
}

// From the quote at the current place to behind its partner.
void NamespaceScan::SkipQuoted() noexcept {
  const std::size_t close = text_.find(text_[at_], at_ + 1);
  at_ = close == kEnd ? text_.size() : close + 1;
}

void NamespaceScan::SkipBehind(std::string_view end) noexcept {
  const std::size_t found = text_.find(end, at_);
  at_ = found == kEnd ? text_.size() : found + end.size();
}

// From a "<" to behind what it opens, or to behind the name of a start tag.
void NamespaceScan::SkipMarkup() noexcept {
  const std::string_view rest = text_.substr(at_);
  if (rest.starts_with("<!--")) {
    at_ += 4;
    SkipBehind("-->");
  } else if (rest.starts_with("<![CDATA[")) {
    SkipBehind("]]>");
  } else if (rest.starts_with("<?")) {
    SkipBehind("?>");
  } else if (rest.starts_with("<!")) {
    SkipDocumentType();
  } else if (rest.starts_with("</")) {
    SkipBehind(">");
  } else {
    ++at_;
    while (at_ < text_.size() && !IsSpace(text_[at_]) && text_[at_] != '>' && text_[at_] != '<') {
      ++at_;
    }
    inStartTag_ = true;
  }
}

// Its declarations hold quoted texts, comments and instructions, in which ">" and "]" mean nothing.
void NamespaceScan::SkipDocumentType() noexcept {
  bool inSubset = false;
  while (at_ < text_.size()) {
    at_ = std::min(text_.find_first_of("[]>\"'<", at_), text_.size());
    if (at_ == text_.size()) return;
    const std::string_view rest = text_.substr(at_);
    if (rest.front() == '"' || rest.front() == '\'') {
      SkipQuoted();
    } else if (rest.starts_with("<!--")) {
      at_ += 4;
      SkipBehind("-->");
    } else if (rest.starts_with("<?")) {
      SkipBehind("?>");
    } else {
      if (rest.front() == '[') inSubset = true;
      if (rest.front() == ']') inSubset = false;
      ++at_;
      if (rest.front() == '>' && !inSubset) return;
    }
  }
}

}  // namespace kx::core
