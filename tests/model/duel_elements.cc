// The operations of a duel on elements. See duel.h.
#include "kxmessage/element_info.h"
#include "kxmessage/valid_elements.h"

#include "model/duel.h"
#include "model/duel_keys.h"

#include <algorithm>
#include <utility>

namespace kx::model {

namespace {

std::string Whole(double number) {
  const std::string text = std::to_string(number);
  return text.substr(0, text.find('.'));
}

// As ElementInfo::Describe writes it.
std::string Describe(const KXMsgElementInfo& info) {
  std::string line = info.Name();
  if (info.CanHaveChildren()) line += " children";
  if (info.CanHaveValue()) line += " value";
  if (info.IsOpenModel()) line += " open";
  line += " length " + Whole(info.MinLength()) + ".." + Whole(info.MaxLength());
  line += " '" + info.Description() + "'";
  line += " " + info.DataType();
  return line + " " + std::to_string(info.MinOccurrences()) + ".." +
         std::to_string(info.MaxOccurrences());
}

template <class Elements>
std::string Names(const Elements& elements) {
  std::string names;
  for (const auto& element : elements) {
    if constexpr (std::is_same_v<std::decay_t<decltype(element)>, ElementPtr>) {
      names += element->GetNode().name + " ";
    } else {
      names += element.Info().Name() + " ";
    }
  }
  return names;
}

std::string Quoted(const std::string& text) { return "(\"" + text + "\")"; }

}  // namespace

std::string Duel::PickName(const Element& element, std::uint32_t number) const {
  std::vector<std::string> names;
  const auto addTypes = [&](const Declaration& declarations) {
    for (const Declaration* child : ChildrenOf(declarations, "element")) {
      names.push_back(Property(child, "type"));
    }
  };
  const std::uint32_t among = number / 16;
  switch (number % 16) {
    case 0:
    case 1:
      for (const Declaration* type : ElementTypesOf(*element.GetContext().schema)) {
        names.push_back(Property(type, "name"));
      }
      break;
    case 2:
    case 3:
    case 4:
      for (const Declaration* group : ChildrenOf(element.Type(), "group")) addTypes(*group);
      break;
    case 5:
    case 6:
    case 7:
      for (const Node* child : ElementsOf(element.GetNode())) names.push_back(child->name);
      break;
    case 8:
      names = {"Nobody", "*", "..", ".", "*/*", "Nobody/Nothing", "../*"};
      break;
    default:
      addTypes(element.Type());
  }
  return names.empty() ? "Nobody" : names[among % names.size()];
}

void Duel::Root() {
  const std::size_t message = now_.b % libraryMessages_.size();
  BothGive(
      "root of message " + std::to_string(message),
      [&] { return libraryMessages_[message].RootElement(); },
      [&] { return modelMessages_[message]->RootElement(); });
}

void Duel::ChildByName() {
  const Pair target = Target();
  const std::string name = PickName(*target.model, now_.b);
  if (!HasRoomFor(*target.model, *target.model)) return;
  BothGive(
      TargetName() + ".ChildElements" + Quoted(name),
      [&] { return target.library.ChildElements(name); },
      [&] {
        return target.model->ChildElements({false, 0, name});
      });
}

void Duel::ChildByPosition() {
  const Pair target = Target();
  const auto [variant, key] = PickPosition(target.model->GetNode().children.size(), now_.b,
                                           now_.c % 16 == 0 ? Parts::kHalves : Parts::kWhole);
  BothGive(
      TargetName() + ".ChildElements" + Quoted(key.text),
      [&, &position = variant] { return target.library[position]; },
      [&, &position = key] { return target.model->ChildElements(position); });
}

void Duel::Parent() {
  const Pair target = Target();
  BothGive(
      TargetName() + ".Parent", [&] { return target.library.Parent(); },
      [&] { return target.model->Parent(); });
}

void Duel::ExistsAndCount() {
  const Pair target = Target();
  const std::string name = PickName(*target.model, now_.b);
  const auto line = [](bool exists, std::int32_t count) {
    return (exists ? "there" : "not there") + std::string(" of ") + std::to_string(count);
  };
  Both(
      TargetName() + ".Exists" + Quoted(name) + " and Count",
      [&] { return line(target.library.Exists(name), target.library.Count()); },
      [&] { return line(target.model->Exists(name), target.model->Count()); });
}

void Duel::Enumerate() {
  const Pair target = Target();
  std::vector<KXMsgElement> ours;
  std::vector<ElementPtr> theirs;
  const bool done = Both(
      TargetName() + " enumerated",
      [&] {
        for (const KXMsgElement& child : target.library) ours.push_back(child);
        return Names(ours);
      },
      [&] {
        theirs = target.model->Enumerate();
        return Names(theirs);
      });
  if (!done || theirs.empty()) return;
  const std::size_t kept = now_.b % theirs.size();
  pairs_[next_++ % pairs_.size()] = {ours[kept], theirs[kept]};
}

void Duel::Watch(const Pair& watched) {
  Both(
      NameOf(watched) + " watched",
      [&] {
        std::string names = Names(watched.library) + "with ";
        for (const KXMsgAttribute& attribute : watched.library.Attributes()) {
          names += Outcome([&] { return attribute.Name(); }) + " ";
        }
        return names;
      },
      [&] {
        std::string names = Names(watched.model->Enumerate()) + "with ";
        for (const AttributePtr& attribute : watched.model->GetAttributes().Enumerate()) {
          names += Outcome([&] { return attribute->Name(); }) + " ";
        }
        return names;
      });
}

void Duel::StartWalk() {
  const Pair target = Target();
  Walk& walk = walks_[now_.b % walks_.size()];
  walk = {};
  Both(
      TargetName() + " walk " + std::to_string(now_.b % walks_.size()) + " started",
      [&] {
        walk.library = target.library.begin();
        return std::string();
      },
      [&] {
        walk.model = target.model->Enumerate();
        return std::string();
      });
}

void Duel::Walks() {
  Walk& walk = walks_[now_.b % walks_.size()];
  BothGive(
      "walk " + std::to_string(now_.b % walks_.size()) + " continued",
      [&] {
        if (walk.library == KXMsgElement::Iterator()) return KXMsgElement(nullptr);
        KXMsgElement element = *walk.library;
        ++walk.library;
        return element;
      },
      [&] {
        return walk.position < walk.model.size() ? walk.model[walk.position++] : ElementPtr();
      });
}

void Duel::AddChild() {
  const Pair target = Target();
  if (!HasRoomFor(*target.model, *target.model)) return;
  const std::string name = now_.c % 6 == 0 ? "" : PickName(*target.model, now_.b);
  std::string ours = name;
  std::string theirs = name;
  BothGive(
      TargetName() + ".AddChild" + Quoted(name), [&] { return target.library.AddChild(ours); },
      [&] { return target.model->AddChild(theirs); });
  if (ours != theirs) throw Mismatch{"the name after AddChild" + Quoted(name), ours, theirs};
}

void Duel::RemoveChildKey() {
  const Pair target = Target();
  if (!HasRoomFor(*target.model, *target.model)) return;
  std::pair<Variant, Key> picked;
  if (now_.c % 2 == 0) {
    picked = PickPosition(target.model->GetNode().children.size(), now_.b, Parts::kWhole);
  } else {
    const std::string name = PickName(*target.model, now_.b);
    picked = {Variant(name), {false, 0, name}};
  }
  Both(
      TargetName() + ".RemoveChildKey" + Quoted(picked.second.text),
      [&] { return target.library.RemoveChildKey(picked.first), "done"; },
      [&] { return target.model->RemoveChildKey(picked.second), "done"; });
}

void Duel::RemoveChild() {
  const Pair target = Target();
  const auto isChild = [&](const std::string& name) {
    return !ElementsOf(target.model->GetNode(), name).empty();
  };
  Pair child = Other(isChild);
  const std::int32_t count = target.model->Count();
  if (now_.c % 3 != 0 && count > 0) {  // one that it has
    const auto position = static_cast<std::int32_t>(now_.b % static_cast<std::uint32_t>(count)) + 1;
    try {
      child = {target.library.ChildElements(position),
               target.model->ChildElements({true, static_cast<double>(position), ""})};
    } catch (...) {
      return;  // without declaration, or behind other nodes: ChildByPosition compares that
    }
  }
  Both(
      TargetName() + ".RemoveChild(" + NameOf(child) + ")",
      [&] { return target.library.RemoveChild(child.library) ? "a child" : "nothing"; },
      [&] { return target.model->RemoveChild(child.model.get()), "nothing"; });
}

void Duel::InsertChild() {
  const Pair target = Target();
  const Pair child = Other([&](const std::string& name) {
    return FindChild(target.model->Type(), "element", "type", name) != nullptr;
  });
  if (child.model && !HasRoomFor(*target.model, *child.model)) return;
  BothGive(
      TargetName() + ".InsertChild(" + NameOf(child) + ")",
      [&] { return target.library.InsertChild(child.library); },
      [&] { return target.model->InsertChild(child.model.get()); });
}

void Duel::ReplaceChild() {
  const Pair target = Target();
  const Pair child = Other(
      [&](const std::string& name) { return !ElementsOf(target.model->GetNode(), name).empty(); });
  if (child.model && !HasRoomFor(*target.model, *child.model)) return;
  const auto there = static_cast<std::uint32_t>(
      child.model ? ElementsOf(target.model->GetNode(), child.model->GetNode().name).size() : 0);
  const auto occurrence = static_cast<std::int32_t>(
      there > 0 && now_.c / 32 % 4 != 0 ? 1 + now_.c / 128 % there : now_.c / 128 % 4);
  BothGive(
      TargetName() + ".ReplaceChild(" + NameOf(child) + ", " + std::to_string(occurrence) + ")",
      [&] { return target.library.ReplaceChild(child.library, occurrence); },
      [&] { return target.model->ReplaceChild(child.model.get(), occurrence); });
}

void Duel::Describe() {
  const Pair target = Target();
  Both(
      TargetName() + " described",
      [&] { return model::Describe(target.library.Info()) + WithBothTags(target.library.XML()); },
      [&] { return target.model->Info().Describe() + target.model->Xml(); });
}

void Duel::ValidChildren() {
  const Pair target = Target();
  const KXMsgValidElements ours = target.library.KnownValidChildren();
  const ValidElements theirs = target.model->KnownValidChildren();
  const auto count = static_cast<std::size_t>(theirs.Count());
  const auto [variant, key] = PickPosition(count, now_.b, Parts::kWhole);
  const std::string name = PickName(*target.model, now_.c);
  const auto line = [](std::int32_t known, bool exists) {
    return std::to_string(known) + (exists ? " there" : " not there");
  };
  Both(
      TargetName() + ".KnownValidChildren Count and Exists" + Quoted(name),
      [&] { return line(ours.Count(), ours.Exists(name)); },
      [&] { return line(theirs.Count(), theirs.Exists(name)); });
  Both(
      TargetName() + ".KnownValidChildren" + Quoted(key.text),
      [&, &position = variant] { return model::Describe(ours.Element(position)); },
      [&, &position = key] { return theirs.Element(position).Describe(); });
  Both(
      TargetName() + ".KnownValidChildren" + Quoted(name),
      [&] { return model::Describe(ours.Element(name)); },
      [&] {
        return theirs.Element({false, 0, name}).Describe();
      });
}

void Duel::Groups() {
  const Pair target = Target();
  const auto line = [](int belongs, int has, int shows) {
    return "in " + std::to_string(belongs) + ", has " + std::to_string(has) + ", shows " +
           std::to_string(shows);
  };
  Both(
      TargetName() + " groups",
      [&] {
        return line(target.library.GroupNumber(), target.library.NumberOfGroups(),
                    target.library.CurrentGroup());
      },
      [&] {
        return line(target.model->GroupNumber(), target.model->NumberOfGroups(),
                    target.model->CurrentGroup());
      });
}

void Duel::GroupElements() {
  const Pair target = Target();
  const auto groups = static_cast<std::uint32_t>(target.model->NumberOfGroups());
  const auto number = static_cast<std::int16_t>(now_.b % (groups + 2));
  Both(
      TargetName() + ".KnownGroupElements(" + std::to_string(number) + ")",
      [&] {
        std::string all;
        for (const KXMsgElementInfo& info : target.library.KnownGroupElements(number)) {
          all += model::Describe(info) + "; ";
        }
        return all;
      },
      [&] {
        std::string all;
        const ValidElements elements = target.model->KnownGroupElements(number);
        for (std::int32_t i = 1; i <= elements.Count(); ++i) {
          all += elements.Element({true, static_cast<double>(i), ""}).Describe() + "; ";
        }
        return all;
      });
}

void Duel::ReplaceGroup() {
  const Pair target = Target();
  if (!HasRoomFor(*target.model, *target.model)) return;
  const auto groups = static_cast<std::uint32_t>(target.model->NumberOfGroups());
  const auto number =
      static_cast<std::int16_t>(static_cast<int>(now_.b % (groups + 2)) - (now_.c % 8 == 0));
  Both(
      TargetName() + ".ReplaceGroup(" + std::to_string(number) + ")",
      [&] { return target.library.ReplaceGroup(number), "done"; },
      [&] { return target.model->ReplaceGroup(number), "done"; });
}

}  // namespace kx::model
