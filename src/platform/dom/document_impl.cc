// See document_impl.h.
#include "platform/dom/document_impl.h"

#include <utility>

namespace kx::dom {

DocumentImpl::DocumentImpl() : current(std::make_unique<DocumentData>(this).release()) {}

// Nobody holds a node of any content any more, or this would not go.
DocumentImpl::~DocumentImpl() { current->Retire(); }

void DocumentImpl::Release() noexcept {
  if (current->Frozen()) {
    if (references_.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
    return;
  }
  const std::uint32_t references = references_.load(std::memory_order_relaxed) - 1;
  references_.store(references, std::memory_order_relaxed);
  if (references == 0) delete this;
}

void DocumentImpl::Replace(std::unique_ptr<DocumentData> data) noexcept {
  std::exchange(current, data.release())->Retire();
}

}  // namespace kx::dom
