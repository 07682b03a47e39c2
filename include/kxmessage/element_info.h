// What the schema says of one element.
#pragma once

#include "kxmessage/export.h"
#include "kxmessage/handle.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace kx {

/// What the schema says of one element: its name, what it may hold, how often it may occur. Every
/// property reads the schema when it is asked. From KXMsgElement::Info and KXMsgValidElements; for
/// one thread at a time.
class KX_EXPORT KXMsgElementInfo : public Handle {
 public:
  KXMsgElementInfo() noexcept = default;        ///< Nothing.
  KXMsgElementInfo(std::nullptr_t) noexcept {}  // NOLINT(google-explicit-constructor)

  /// The name of this element, without prefix.
  [[nodiscard]] std::string Name() const;
  /// True unless the content is "empty" or "textOnly".
  /// Note: an element type without `content` can have neither children nor a value.
  [[nodiscard]] bool CanHaveChildren() const;
  /// True unless the content is "eltOnly" or "empty".
  [[nodiscard]] bool CanHaveValue() const;
  /// True unless `model` is absent or "closed": then an element that can have children may hold
  /// elements of other schemas too. Note: an absent `model` counts as closed here.
  [[nodiscard]] bool IsOpenModel() const;
  /// The least and greatest length of the text (dt:minLength, dt:maxLength); -1 when there is none.
  /// Raises: 13 when the attribute is no number.
  [[nodiscard]] double MinLength() const;
  [[nodiscard]] double MaxLength() const;
  /// The text of the first `description`; "" when there is none.
  [[nodiscard]] std::string Description() const;
  /// The data type (dt:type), "none" when there is none.
  [[nodiscard]] std::string DataType() const;
  /// How often the element may, and must, occur in its parent, by the parent's own declaration of
  /// it; 1 for the content root, and for an element that the parent declares in a group or not at
  /// all. Note: MaxOccurrences is -1, not 0, when there is no limit ("*").
  [[nodiscard]] std::int32_t MaxOccurrences() const;
  [[nodiscard]] std::int32_t MinOccurrences() const;

 private:
  friend class HandleAccess;
  template <typename T>
  friend class EnumerationIterator;
  explicit KXMsgElementInfo(ObjectRef object) noexcept : Handle(std::move(object)) {}
};

}  // namespace kx
