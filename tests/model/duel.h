// The library and the model side by side: each operation is done on both, and what it gives, the
// error that it ends in and the messages that it leaves must be the same.
#pragma once

#include "kxmessage/attributes.h"
#include "kxmessage/element.h"
#include "kxmessage/message.h"

#include "model/declarations.h"
#include "model/element.h"
#include "model/message.h"
#include "support/message_world.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace kx::model {

/// A schema at C:\s\ and the element type to make messages of.
struct SchemaOfDuel {
  std::string file;
  std::string text;
  Declaration schema;
  std::string root;
};

/// Where a duel starts: two messages of the first schema, one new and one loaded, and one new
/// message of the second.
struct Start {
  SchemaOfDuel first;
  SchemaOfDuel second;
  std::uint32_t seed = 0;  ///< of what the loaded text holds
};

/// One operation. What the numbers mean is settled when it is done: they choose among what is there
/// at that moment, so that any part of a list of operations is a list that can be done.
struct Operation {
  unsigned kind = 0;
  std::uint32_t a = 0;
  std::uint32_t b = 0;
  std::uint32_t c = 0;
};

[[nodiscard]] Operation MakeOperation(Chance& chance);

/// What the two did not agree on.
struct Mismatch {
  std::string operation;
  std::string library;
  std::string model;
};

/// The library cannot make a message of the schema.
struct UnsuitableSchema : std::runtime_error {
  using std::runtime_error::runtime_error;
};

class Duel {
 public:
  /// Raises: UnsuitableSchema; Mismatch when the messages differ from the start.
  explicit Duel(const Start& start);

  /// Raises: Mismatch.
  void Do(const Operation& operation);
  [[nodiscard]] const std::vector<std::string>& Log() const { return log_; }
  /// How often each kind of operation ended with a result and with an error.
  struct Tally {
    int results = 0;
    int errors = 0;
  };
  using Tallies = std::map<std::string, Tally>;
  void AddTo(Tallies& tallies) const;

 private:
  struct Pair {  // two wrappers of one node
    KXMsgElement library = nullptr;
    ElementPtr model;
  };
  struct AttributePair {
    KXMsgAttribute library = nullptr;
    AttributePtr model;
  };
  struct Walk {  // an enumeration that is under way
    KXMsgElement::Iterator library;
    std::vector<ElementPtr> model;
    std::size_t position = 0;
  };
  using Side = std::function<std::string()>;
  friend struct Kinds;

  void AddSchema(const SchemaOfDuel& schema);
  void AddNewMessage(const SchemaOfDuel& schema);
  void AddLoadedMessage(const SchemaOfDuel& schema, std::uint32_t seed);
  void CompareMessages(const std::string& after);
  void CompareIdentities(const std::string& after) const;
  // Both sides of the operation that is under way; true when it ended without error.
  bool Both(const std::string& what, const Side& library, const Side& model);
  // The same for an operation that gives an element, which is kept.
  void BothGive(const std::string& what, const std::function<KXMsgElement()>& library,
                const std::function<ElementPtr()>& model);
  void BothGiveAttribute(const std::string& what, const std::function<KXMsgAttribute()>& library,
                         const std::function<AttributePtr()>& model);
  [[nodiscard]] std::string PickName(const Element& element, std::uint32_t number) const;
  [[nodiscard]] std::string PickAttribute(const Element& element, std::uint32_t number) const;
  [[nodiscard]] bool HasRoomFor(const Element& parent, const Element& child) const;

  // The lists that the element's enumerations go through.
  void Watch(const Pair& watched);

  // What the operations do, by kind.
  void Root();
  void ChildByName();
  void ChildByPosition();
  void Parent();
  void ExistsAndCount();
  void Enumerate();
  void StartWalk();
  void Walks();
  void AddChild();
  void RemoveChildKey();
  void RemoveChild();
  void InsertChild();
  void ReplaceChild();
  void Describe();
  void ValidChildren();
  void Groups();
  void GroupElements();
  void ReplaceGroup();
  void CountAttributes();
  void AttributeByPosition();
  void AttributeByName();
  void AddAttribute();
  void RemoveAttribute();
  void ReadAttribute();
  void SetAttribute();
  void DescribeAttribute();
  void EnumerateAttributes();
  void KnownAttributes();

  // The element that the operation is done on: mostly one that may have children.
  [[nodiscard]] std::size_t TargetNumber() const;
  [[nodiscard]] const Pair& Target() const { return pairs_[TargetNumber()]; }
  [[nodiscard]] std::string TargetName() const { return std::to_string(TargetNumber()); }
  // The element that the operation is done with: mostly one of a name that `suits`; sometimes none.
  [[nodiscard]] Pair Other(const std::function<bool(const std::string&)>& suits) const;
  // What a pair is called in the log.
  [[nodiscard]] std::string NameOf(const Pair& pair) const;

  test::MessageWorld world_;
  Store store_;
  std::vector<KXMessage> libraryMessages_;
  std::vector<std::unique_ptr<Message>> modelMessages_;
  std::array<Pair, 9> pairs_;
  std::array<AttributePair, 4> attributes_;
  std::array<Walk, 2> walks_;
  std::size_t next_ = 0;  // where the next element goes
  Operation now_;
  std::string kind_;
  Tallies tallies_;
  std::vector<std::string> log_;
};

}  // namespace kx::model
