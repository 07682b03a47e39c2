// Messages through the public classes. See rows.h.
#include "kxmessage/element.h"
#include "kxmessage/message.h"

#include "peers.h"
#include "rows.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kx::bench {

namespace {

KXMessage LoadMessage(const std::string& text) {
  KXMessage message = NewMessage();
  message.LoadMessageFromString(text);
  return message;
}

class Load : public Task {
 public:
  explicit Load(const Workload& workload) : texts_(workload.texts) {}
  std::uint64_t Run(std::size_t text) override {
    return LoadMessage(texts_[text]).RootElement() ? 1U : 0U;
  }

 private:
  const std::vector<std::string>& texts_;
};

class LoadedMessages : public Task {
 public:
  explicit LoadedMessages(const Workload& workload) {
    for (const std::string& text : workload.texts) messages_.push_back(LoadMessage(text));
  }

 protected:
  [[nodiscard]] const KXMessage& Message(std::size_t text) const { return messages_[text]; }
  [[nodiscard]] std::size_t Size() const { return messages_.size(); }

 private:
  std::vector<KXMessage> messages_;
};

class Xml : public LoadedMessages {
 public:
  using LoadedMessages::LoadedMessages;
  std::uint64_t Run(std::size_t text) override { return Message(text).XML().size(); }
};

class Clone : public LoadedMessages {
 public:
  using LoadedMessages::LoadedMessages;
  std::uint64_t Run(std::size_t text) override {
    return Message(text).CloneMessage().RootElement() ? 1U : 0U;
  }
};

class Init : public Task {
 public:
  std::uint64_t Run(std::size_t /*text*/) override {
    const KXMessage message = NewMessage();
    message.InitMessage("order.xdr", "Order");
    return message.RootElement() ? 1U : 0U;
  }
};

// Loads the text of a message as InitMessage makes it, twice.
class LoadInitialTwice : public Task {
 public:
  LoadInitialTwice() {
    const KXMessage message = NewMessage();
    message.InitMessage("order.xdr", "Order");
    text_ = message.XML();
  }
  std::uint64_t Run(std::size_t /*text*/) override {
    return (LoadMessage(text_).RootElement() ? 1U : 0U) +
           (LoadMessage(text_).RootElement() ? 1U : 0U);
  }

 private:
  std::string text_;
};

// The children of the content root by name or by position, from the first on and over again.
class Children : public LoadedMessages {
 public:
  enum class By : unsigned char { kName, kPosition };
  Children(const Workload& workload, By by) : LoadedMessages(workload) {
    for (std::size_t i = 0; i < Size(); ++i) {
      roots_.push_back(Message(i).RootElement());
      std::vector<Variant>& keys = keys_.emplace_back();
      int position = 0;
      for (const KXMsgElement& child : roots_.back()) {
        ++position;
        keys.push_back(by == By::kName ? Variant(child.Info().Name()) : Variant(position));
      }
    }
  }
  std::uint64_t Run(std::size_t text) override {
    std::uint64_t found = 0;
    const std::vector<Variant>& keys = keys_[text];
    for (std::size_t i = 0; i < kLookUps; ++i) {
      found += roots_[text].ChildElements(keys[i % keys.size()]) ? 1U : 0U;
    }
    return found;
  }

 private:
  std::vector<KXMsgElement> roots_;
  std::vector<std::vector<Variant>> keys_;
};

// Children of one parent, by positions all over the list.
class Positions : public LoadedMessages {
 public:
  explicit Positions(const Workload& workload) : LoadedMessages(workload) {
    for (std::size_t i = 0; i < Size(); ++i) {
      items_.push_back(Message(i).RootElement().ChildElements("Items"));
    }
  }
  std::uint64_t Run(std::size_t text) override {
    const KXMsgElement& items = items_[text];
    const auto count = static_cast<std::uint32_t>(items.Count());
    std::uint64_t found = 0;
    for (std::size_t i = 0; i < kLookUps; ++i) {
      seed_ = seed_ * 1664525U + 1013904223U;
      found += items.ChildElements(1 + seed_ % count) ? 1U : 0U;
    }
    return found;
  }

 private:
  std::vector<KXMsgElement> items_;
  std::uint32_t seed_ = 1;
};

// Every child of one parent, by an enumeration of a new object, or one by one by position.
class AllChildren : public LoadedMessages {
 public:
  enum class By : unsigned char { kEnumeration, kPosition };
  AllChildren(const Workload& workload, By by) : LoadedMessages(workload), by_(by) {}
  std::uint64_t Run(std::size_t text) override {
    const KXMsgElement items = Message(text).RootElement().ChildElements("Items");
    std::uint64_t found = 0;
    if (by_ == By::kEnumeration) {
      for (const KXMsgElement& item : items) found += item ? 1U : 0U;
    } else {
      const std::int32_t count = items.Count();
      for (std::int32_t i = 1; i <= count; ++i) found += items.ChildElements(i) ? 1U : 0U;
    }
    return found;
  }

 private:
  By by_;
};

class IntValue : public LoadedMessages {
 public:
  explicit IntValue(const Workload& workload) : LoadedMessages(workload) {
    for (std::size_t i = 0; i < Size(); ++i) {
      quantities_.push_back(
          Message(i).RootElement().ChildElements("Items").ChildElements(1).ChildElements("Qty"));
    }
  }
  std::uint64_t Run(std::size_t text) override {
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i < kLookUps; ++i) {
      sum += static_cast<std::uint64_t>(quantities_[text].Value().ToInteger());
    }
    return sum;
  }

 private:
  std::vector<KXMsgElement> quantities_;
};

template <class Ours>
std::function<std::vector<Entrant>(const Workload&)> Against(
    std::string peer, std::unique_ptr<Task> (*makePeer)(const Workload&), Ours makeOurs) {
  return [=](const Workload& workload) {
    std::vector<Entrant> entrants;
    entrants.push_back({"ours", makeOurs(workload)});
    entrants.push_back({peer, makePeer(workload)});
    return entrants;
  };
}

std::vector<Entrant> EnterInit(const Workload& /*workload*/) {
  std::vector<Entrant> entrants;
  entrants.push_back({"ours", std::make_unique<Init>()});
  entrants.push_back({"2 loads", std::make_unique<LoadInitialTwice>()});
  return entrants;
}

}  // namespace

KXMessage NewMessage() {
  static const bool once = [] {
    Options options = Options::OfProcess();
    options.schemaBase = std::string(KX_BENCH_SCHEMAS) + "/";
    Options::SetOfProcess(std::move(options));
    return true;
  }();
  static_cast<void>(once);
  return {};
}

std::vector<Row> MessageRows() {
  const std::vector<std::string> sizes = {"1k", "10k", "100k", "1m"};
  const auto make = [](auto* kind) {
    using Kind = std::remove_pointer_t<decltype(kind)>;
    return [](const Workload& workload) { return std::make_unique<Kind>(workload); };
  };
  const auto children = [](Children::By by) {
    return [by](const Workload& workload) { return std::make_unique<Children>(workload, by); };
  };
  const auto all = [](AllChildren::By by) {
    return [by](const Workload& workload) { return std::make_unique<AllChildren>(workload, by); };
  };
  const std::vector<std::string> wide = {"wide-1k", "wide"};
  return {
      {"enumerate", wide, Against("pugixml", PugixmlItems, all(AllChildren::By::kEnumeration))},
      {"each-at", wide, Against("pugixml", PugixmlItems, all(AllChildren::By::kPosition))},
      {"load", sizes, Against("pugixml", PugixmlParse, make(static_cast<Load*>(nullptr)))},
      {"xml", sizes, Against("pugixml", PugixmlSerialise, make(static_cast<Xml*>(nullptr)))},
      {"clone", sizes, Against("libxml2", Libxml2Copy, make(static_cast<Clone*>(nullptr)))},
      {"init", {"1k"}, EnterInit},
      {"child", {"10k"}, Against("pugixml", PugixmlChildren, children(Children::By::kName))},
      {"childat", {"10k"}, Against("pugixml", PugixmlChildren, children(Children::By::kPosition))},
      {"position",
       {"10k", "1m", "wide"},
       Against("pugixml", PugixmlChildren, make(static_cast<Positions*>(nullptr)))},
      {"value",
       {"10k"},
       Against("pugixml", PugixmlChildren, make(static_cast<IntValue*>(nullptr)))},
  };
}

}  // namespace kx::bench
