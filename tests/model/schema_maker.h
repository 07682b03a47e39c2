// Schemas made at random: few short names, so that they meet, and all that editing looks at.
#pragma once

#include "model/chance.h"
#include "model/declarations.h"

#include <string>
#include <vector>

namespace kx::model {

/// Whose names are written in capitals here and there, so that another schema has them otherwise.
enum class Letters : unsigned char { kSmall, kSomeCapitals };

class SchemaMaker {
 public:
  SchemaMaker(Chance& chance, Letters letters) : chance_(chance), letters_(letters) {}

  /// The last element type is the one to make messages of. A required child is always of a type
  /// further above, so that no type must contain itself. Whether the minimum content is valid is
  /// not looked at.
  [[nodiscard]] Declaration Make();

 private:
  Declaration ElementType(int number);
  Declaration AttributeType(const std::string& name);
  void AddChildren(Declaration& type, int number);
  Declaration Group(int number);
  Declaration Element(int number);
  void AddAttributes(Declaration& type);

  Chance& chance_;
  Letters letters_;
  std::vector<std::string> names_;
  std::vector<Declaration> attributeTypes_;
};

}  // namespace kx::model
