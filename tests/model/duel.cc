// See duel.h.
#include "model/duel.h"

#include "kxmessage/error.h"

#include "model/duel_keys.h"

#include <utility>

namespace kx::model {

namespace {

constexpr std::size_t kMaxNodes = 500;

// The content of a message, without the envelope, whose header is not the model's matter.
std::string ContentOf(const KXMessage& message) {
  const std::string xml = message.XML();
  const std::size_t envelope = xml.find("<KXMessage");
  const std::size_t start = xml.find('>', envelope) + 1;
  return WithBothTags(std::string_view(xml).substr(start, xml.rfind("</KXMessage>") - start));
}

std::string Location(const SchemaOfDuel& schema) { return "C:\\s\\" + schema.file; }

}  // namespace

Duel::Duel(const Start& start) {
  AddSchema(start.first);
  AddSchema(start.second);
  AddNewMessage(start.first);
  AddLoadedMessage(start.first, start.seed);
  AddNewMessage(start.second);
  for (std::size_t i = 0; i < pairs_.size(); ++i) {
    const std::size_t message = i % libraryMessages_.size();
    pairs_[i] = {libraryMessages_[message].RootElement(), modelMessages_[message]->RootElement()};
  }
  CompareMessages("making the messages");
}

void Duel::AddSchema(const SchemaOfDuel& schema) {
  world_.Host().Memory().AddFile("/c/s/" + schema.file, schema.text);
}

void Duel::AddNewMessage(const SchemaOfDuel& schema) {
  const KXMessage message = world_.NewMessage();
  try {
    message.InitMessage(schema.file, schema.root);
  } catch (const Error& error) {
    throw UnsuitableSchema(error.Description());
  }
  libraryMessages_.push_back(message);
  modelMessages_.push_back(
      std::make_unique<Message>(store_, schema.schema, schema.root, Location(schema)));
}

void Duel::AddLoadedMessage(const SchemaOfDuel& schema, std::uint32_t seed) {
  Chance chance(seed);
  const auto declared = chance.OneIn(2) ? Message::Declared::kFirst : Message::Declared::kLast;
  auto loaded = std::make_unique<Message>(store_, schema.schema, schema.root, Location(schema));
  loaded->BecomeLoaded(chance, Location(schema), declared);
  const std::string text = loaded->TextToLoad(declared);
  const KXMessage message = world_.NewMessage();
  message.DefaultSchemaURL(schema.file);
  try {
    message.LoadMessageFromString(text);
  } catch (const Error& error) {
    throw Mismatch{"loading " + text, error.Description(), "loads"};
  }
  libraryMessages_.push_back(message);
  modelMessages_.push_back(std::move(loaded));
}

void Duel::CompareMessages(const std::string& after) {
  for (std::size_t i = 0; i < libraryMessages_.size(); ++i) {
    const std::string library = ContentOf(libraryMessages_[i]);
    const std::string model = modelMessages_[i]->Xml();
    if (library != model)
      throw Mismatch{"message " + std::to_string(i) + " after " + after, library, model};
  }
}

void Duel::CompareIdentities(const std::string& after) const {
  for (std::size_t i = 0; i < pairs_.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      const bool library = pairs_[i].library == pairs_[j].library;
      const bool model = pairs_[i].model == pairs_[j].model;
      if (library == model) continue;
      throw Mismatch{"elements " + std::to_string(j) + " and " + std::to_string(i) +
                         " as one object after " + after,
                     library ? "one" : "two", model ? "one" : "two"};
    }
  }
}

bool Duel::Both(const std::string& what, const Side& library, const Side& model) {
  const std::string ours = Outcome(library);
  const std::string theirs = Outcome(model);
  const bool succeeded = theirs.rfind("error ", 0) != 0;
  ++(succeeded ? tallies_[kind_].results : tallies_[kind_].errors);
  log_.push_back(what + " -> " + theirs);
  if (ours != theirs) throw Mismatch{what, ours, theirs};
  return succeeded;
}

void Duel::BothGive(const std::string& what, const std::function<KXMsgElement()>& library,
                    const std::function<ElementPtr()>& model) {
  Pair given;
  const std::string slot = std::to_string(next_ % pairs_.size());
  const bool done = Both(
      slot + " = " + what,
      [&] {
        given.library = library();
        return given.library ? WithBothTags(given.library.XML()) : std::string("nothing");
      },
      [&] {
        given.model = model();
        return given.model ? given.model->Xml() : std::string("nothing");
      });
  if (done && given.model) pairs_[next_++ % pairs_.size()] = std::move(given);
}

void Duel::BothGiveAttribute(const std::string& what,
                             const std::function<KXMsgAttribute()>& library,
                             const std::function<AttributePtr()>& model) {
  AttributePair given;
  const std::size_t slot = now_.c % attributes_.size();
  const bool done = Both(
      "@" + std::to_string(slot) + " = " + what,
      [&] {
        given.library = library();
        if (!given.library) return std::string("nothing");
        return "attribute " + Outcome([&] { return given.library.Name(); });
      },
      [&] {
        given.model = model();
        if (!given.model) return std::string("nothing");
        return "attribute " + Outcome([&] { return given.model->Name(); });
      });
  if (done && given.model) attributes_[slot] = std::move(given);
}

std::size_t Duel::TargetNumber() const {
  std::size_t number = now_.a % pairs_.size();
  if (now_.a / 16 % 4 == 0) return number;
  for (std::size_t tries = 0; tries < pairs_.size(); ++tries) {
    const Declaration& type = pairs_[number].model->Type();
    if (!ChildrenOf(type, "element").empty() || !ChildrenOf(type, "group").empty()) break;
    number = (number + 1) % pairs_.size();
  }
  return number;
}

Duel::Pair Duel::Other(const std::function<bool(const std::string&)>& suits) const {
  if (now_.c % 32 == 0) return {};
  std::size_t number = now_.b % pairs_.size();
  if (now_.b / 16 % 4 == 0) return pairs_[number];
  for (std::size_t tries = 0; tries < pairs_.size(); ++tries) {
    if (suits(pairs_[number].model->GetNode().name)) break;
    number = (number + 1) % pairs_.size();
  }
  return pairs_[number];
}

std::string Duel::NameOf(const Pair& pair) const {
  if (!pair.model) return "nothing";
  for (std::size_t i = 0; i < pairs_.size(); ++i) {
    if (pairs_[i].model == pair.model) return std::to_string(i);
  }
  return "a " + pair.model->GetNode().name;
}

bool Duel::HasRoomFor(const Element& parent, const Element& child) const {
  const Node* top = &parent.GetNode();
  while (top->parent != nullptr) top = top->parent;
  return CountNodes(*top) + CountNodes(child.GetNode()) <= kMaxNodes;
}

void Duel::AddTo(Tallies& tallies) const {
  for (const auto& [kind, tally] : tallies_) {
    tallies[kind].results += tally.results;
    tallies[kind].errors += tally.errors;
  }
}

}  // namespace kx::model
