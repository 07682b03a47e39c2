// The operations of a duel on attributes, and the choice among all operations. See duel.h.
#include "kxmessage/attribute_info.h"
#include "kxmessage/valid_attributes.h"

#include "model/duel.h"
#include "model/duel_keys.h"

#include <iterator>
#include <utility>

namespace kx::model {

namespace {

std::string Yes(bool value) { return value ? "yes" : "no"; }

// Every property, or the number of the error that it ends in.
template <class Info>
std::string Describe(const Info& info) {
  const auto property = [](const auto& read) -> std::string { return Outcome(read) + ";"; };
  return property([&] { return info.Name(); }) + property([&] { return Yes(info.Required()); }) +
         property([&] { return info.DefaultValue(); }) +
         property([&] { return Yes(info.ReadOnly()); }) +
         property([&] { return info.DataType(); }) + property([&] {
           std::string values;
           for (const std::string& value : info.Values()) values += "'" + value + "'";
           return values;
         });
}

std::string Quoted(const std::string& text) { return "(\"" + text + "\")"; }

std::string PickValue(std::uint32_t number) {
  static const char* const kValues[] = {"",  "x",    "red",  "RED", "green",      "5",  "05",
                                        "1", "true", "x y",  "1x",  "0",          "-7", "blue",
                                        "y", "a&<b", "\"q'", " 6 ", "99999999999"};
  return kValues[number % std::size(kValues)];
}

}  // namespace

std::string Duel::PickAttribute(const Element& element, std::uint32_t number) const {
  std::vector<std::string> names;
  for (const Declaration* declaration : ChildrenOf(element.Type(), "attribute")) {
    names.push_back(Property(declaration, "type"));
  }
  if (number % 4 != 0 && !names.empty()) return names[number / 4 % names.size()];
  for (const char* name : {"xmlns", "nobody", "own"}) names.emplace_back(name);
  for (const Declaration* type : ChildrenOf(*element.GetContext().schema, "AttributeType")) {
    names.push_back(Property(type, "name"));
  }
  return names[number / 4 % names.size()];
}

void Duel::CountAttributes() {
  const Pair target = Target();
  const std::string name = PickAttribute(*target.model, now_.b);
  const auto line = [](std::int32_t count, bool exists) {
    return std::to_string(count) + (exists ? " there" : " not there");
  };
  Both(
      TargetName() + ".Attributes Count and Exists" + Quoted(name),
      [&] {
        const KXMsgAttributes all = target.library.Attributes();
        return line(all.Count(), all.Exists(name));
      },
      [&] {
        const Attributes& all = target.model->GetAttributes();
        return line(all.Count(), all.Exists(name));
      });
}

void Duel::AttributeByPosition() {
  const Pair target = Target();
  const auto [variant, key] =
      PickPosition(target.model->GetNode().attributes.size(), now_.b, Parts::kWhole);
  BothGiveAttribute(
      TargetName() + ".Attrib" + Quoted(key.text),
      [&, &position = variant] { return target.library.Attributes()[position]; },
      [&, &position = key] { return target.model->GetAttributes().Attrib(position); });
}

void Duel::AttributeByName() {
  const Pair target = Target();
  const std::string name = PickAttribute(*target.model, now_.b);
  BothGiveAttribute(
      TargetName() + ".Attrib" + Quoted(name),
      [&] { return target.library.Attributes().Attrib(name); },
      [&] {
        return target.model->GetAttributes().Attrib({false, 0, name});
      });
}

void Duel::AddAttribute() {
  const Pair target = Target();
  const std::string name = PickAttribute(*target.model, now_.b);
  const std::string value = PickValue(now_.b / 256);
  std::string ours = value;
  std::string theirs = value;
  BothGiveAttribute(
      TargetName() + ".AddAttribute(\"" + name + "\", \"" + value + "\")",
      [&] { return target.library.Attributes().AddAttribute(name, ours); },
      [&] { return target.model->GetAttributes().AddAttribute(name, theirs); });
  if (ours != theirs) throw Mismatch{"the value after AddAttribute" + Quoted(name), ours, theirs};
}

void Duel::RemoveAttribute() {
  const Pair target = Target();
  std::pair<Variant, Key> picked;
  if (now_.c % 4 == 0) {
    picked = PickPosition(target.model->GetNode().attributes.size(), now_.b, Parts::kWhole);
  } else {
    const std::string name = PickAttribute(*target.model, now_.b);
    picked = {Variant(name), {false, 0, name}};
  }
  Both(
      TargetName() + ".RemoveAttribute" + Quoted(picked.second.text),
      [&] { return target.library.Attributes().RemoveAttribute(picked.first), "done"; },
      [&] { return target.model->GetAttributes().RemoveAttribute(picked.second), "done"; });
}

void Duel::ReadAttribute() {
  const AttributePair& attribute = attributes_[now_.a % attributes_.size()];
  if (!attribute.model || !attribute.model->HasKnownType()) return;
  Both(
      "@" + std::to_string(now_.a % attributes_.size()) + ".Value",
      [&] { return attribute.library.Name() + "=" + attribute.library.Value(); },
      [&] { return attribute.model->Name() + "=" + attribute.model->Value(); });
}

void Duel::SetAttribute() {
  const AttributePair& attribute = attributes_[now_.a % attributes_.size()];
  if (!attribute.model || !attribute.model->HasKnownType()) return;
  const std::string value = PickValue(now_.b);
  Both(
      "@" + std::to_string(now_.a % attributes_.size()) + ".Value" + Quoted(value),
      [&] { return attribute.library.Value(value), "done"; },
      [&] { return attribute.model->Value(value), "done"; });
}

void Duel::DescribeAttribute() {
  const AttributePair& attribute = attributes_[now_.a % attributes_.size()];
  if (!attribute.model) return;
  Both(
      "@" + std::to_string(now_.a % attributes_.size()) + " described",
      [&] { return model::Describe(attribute.library.Info()); },
      [&] { return model::Describe(attribute.model->Info()); });
}

void Duel::EnumerateAttributes() {
  const Pair target = Target();
  std::vector<KXMsgAttribute> ours;
  std::vector<AttributePtr> theirs;
  const auto names = [](const auto& name, const auto& list) {
    std::string all;
    for (const auto& attribute : list) all += Outcome([&] { return name(attribute); }) + " ";
    return all;
  };
  const bool done = Both(
      TargetName() + ".Attributes enumerated",
      [&] {
        for (const KXMsgAttribute& attribute : target.library.Attributes()) {
          ours.push_back(attribute);
        }
        return names([](const KXMsgAttribute& attribute) { return attribute.Name(); }, ours);
      },
      [&] {
        theirs = target.model->GetAttributes().Enumerate();
        return names([](const AttributePtr& attribute) { return attribute->Name(); }, theirs);
      });
  if (!done || theirs.empty()) return;
  const std::size_t kept = now_.b % theirs.size();
  attributes_[now_.c % attributes_.size()] = {ours[kept], theirs[kept]};
}

void Duel::KnownAttributes() {
  const Pair target = Target();
  const Attributes& theirs = target.model->GetAttributes();
  const KXMsgValidAttributes ours = target.library.Attributes().KnownValidAttributes();
  const std::string name = PickAttribute(*target.model, now_.b);
  const auto [variant, key] =
      PickPosition(static_cast<std::size_t>(theirs.CountKnown()), now_.c, Parts::kWhole);
  const auto line = [](std::int32_t count, bool exists) {
    return std::to_string(count) + (exists ? " there" : " not there");
  };
  Both(
      TargetName() + ".KnownValidAttributes Count and Exists" + Quoted(name),
      [&] { return line(ours.Count(), ours.Exists(name)); },
      [&] { return line(theirs.CountKnown(), theirs.IsKnown(name)); });
  Both(
      TargetName() + ".KnownValidAttributes" + Quoted(name),
      [&] { return model::Describe(ours.Attrib(name)); },
      [&] {
        return model::Describe(theirs.Known({false, 0, name}));
      });
  Both(
      TargetName() + ".KnownValidAttributes" + Quoted(key.text),
      [&, &position = variant] { return model::Describe(ours[position]); },
      [&, &position = key] { return model::Describe(theirs.Known(position)); });
  Both(
      TargetName() + ".KnownValidAttributes enumerated",
      [&] {
        std::string all;
        for (const KXMsgAttributeInfo& info : ours) all += model::Describe(info);
        return all;
      },
      [&] {
        std::string all;
        for (std::int32_t i = 1; i <= theirs.CountKnown(); ++i) {
          all += model::Describe(theirs.Known({true, static_cast<double>(i), ""}));
        }
        return all;
      });
}

// ---- The choice --------------------------------------------------------------------------------

struct Kinds {
  const char* name;
  unsigned weight;
  void (Duel::*perform)();

  static const Kinds kAll[];
  static unsigned Weights();
  static const Kinds& Of(unsigned number);
};

const Kinds Kinds::kAll[] = {
    {"RootElement", 3, &Duel::Root},
    {"ChildElements by name", 8, &Duel::ChildByName},
    {"ChildElements by position", 8, &Duel::ChildByPosition},
    {"Parent", 3, &Duel::Parent},
    {"Exists and Count", 3, &Duel::ExistsAndCount},
    {"enumeration", 5, &Duel::Enumerate},
    {"enumeration started", 2, &Duel::StartWalk},
    {"enumeration continued", 4, &Duel::Walks},
    {"AddChild", 8, &Duel::AddChild},
    {"RemoveChildKey", 5, &Duel::RemoveChildKey},
    {"RemoveChild", 5, &Duel::RemoveChild},
    {"InsertChild", 6, &Duel::InsertChild},
    {"ReplaceChild", 5, &Duel::ReplaceChild},
    {"Info", 3, &Duel::Describe},
    {"KnownValidChildren", 2, &Duel::ValidChildren},
    {"groups", 4, &Duel::Groups},
    {"KnownGroupElements", 2, &Duel::GroupElements},
    {"ReplaceGroup", 6, &Duel::ReplaceGroup},
    {"Attributes Count and Exists", 3, &Duel::CountAttributes},
    {"Attrib by position", 5, &Duel::AttributeByPosition},
    {"Attrib by name", 5, &Duel::AttributeByName},
    {"AddAttribute", 6, &Duel::AddAttribute},
    {"RemoveAttribute", 5, &Duel::RemoveAttribute},
    {"Value", 4, &Duel::ReadAttribute},
    {"Value put", 5, &Duel::SetAttribute},
    {"attribute Info", 2, &Duel::DescribeAttribute},
    {"Attributes enumeration", 4, &Duel::EnumerateAttributes},
    {"KnownValidAttributes", 2, &Duel::KnownAttributes},
};

unsigned Kinds::Weights() {
  unsigned sum = 0;
  for (const Kinds& kind : kAll) sum += kind.weight;
  return sum;
}

const Kinds& Kinds::Of(unsigned number) {
  unsigned left = number % Weights();
  const Kinds* kind = kAll;
  for (; left >= kind->weight; ++kind) left -= kind->weight;
  return *kind;
}

Operation MakeOperation(Chance& chance) {
  return {chance.Number(), chance.Number(), chance.Number(), chance.Number()};
}

void Duel::Do(const Operation& operation) {
  now_ = operation;
  const Kinds& kind = Kinds::Of(operation.kind);
  kind_ = kind.name;
  const std::size_t before = log_.size();
  const Pair watched = operation.c >> 30U == 0 ? Target() : Pair();
  if (watched.model) Watch(watched);
  (this->*kind.perform)();
  if (watched.model) Watch(watched);
  if (log_.size() == before) return;  // there was nothing to do it on
  CompareIdentities(log_.back());
  CompareMessages(log_.back());
}

}  // namespace kx::model
