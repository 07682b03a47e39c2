// Messages of the model: made of a schema, or as loading a text makes them.
#pragma once

#include "model/chance.h"
#include "model/element.h"
#include "model/tree.h"

#include <string>

namespace kx::model {

class Message {
 public:
  /// A new message of element type `rootName`, whose schema lies at `location`.
  Message(Store& store, const Declaration& schema, const std::string& rootName,
          const std::string& location);
  Message(const Message&) = delete;
  Message& operator=(const Message&) = delete;

  /// Where the declaration of the namespace stands among the attributes of the content root.
  enum class Declared : unsigned char { kFirst, kLast };
  /// Changes the new message into what loading TextToLoad() gives: text, comments and white space
  /// put where the schema allows them, defaults left out, the namespace as `location` is written.
  void BecomeLoaded(Chance& chance, const std::string& location, Declared declared);
  /// A bare content root. With Declared::kLast it names no schema.
  [[nodiscard]] std::string TextToLoad(Declared declared) const;

  [[nodiscard]] const ElementPtr& RootElement() const { return root_; }
  [[nodiscard]] std::string Xml() const { return root_->Xml(); }

 private:
  Context context_;
  ElementPtr root_;
};

}  // namespace kx::model
