// Edits of a message: what is done is undone at once, so that the message stays as it is. There is
// no peer whose edits ask a schema; the peer of each row is the library itself on a message of a
// dozen elements, so that the ratio tells what the size of the message costs. See rows.h.
#include "kxmessage/attributes.h"
#include "kxmessage/element.h"
#include "kxmessage/message.h"

#include "rows.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kx::bench {

namespace {

// The shelf of a message; beside it there is the bulk.
class Edit : public Task {
 public:
  explicit Edit(const std::string& text) : message_(NewMessage()) {
    message_.LoadMessageFromString(text);
    shelf_ = message_.RootElement().ChildElements("Shelf");
    page_ = shelf_.ChildElements("Page");
  }

 protected:
  KXMessage message_;
  KXMsgElement shelf_;
  KXMsgElement page_;
};

// A child that may be there any number of times.
class Add : public Edit {
 public:
  using Edit::Edit;
  std::uint64_t Run(std::size_t /*text*/) override {
    const KXMsgElement added = shelf_.AddChild("Page");
    shelf_.RemoveChild(added);
    return added ? 1 : 0;
  }
};

// A child that may be there once, which is looked at.
class AddOnly : public Edit {
 public:
  using Edit::Edit;
  std::uint64_t Run(std::size_t /*text*/) override {
    const KXMsgElement added = shelf_.AddChild("Slip");
    shelf_.RemoveChild(added);
    return added ? 1 : 0;
  }
};

class AddRemoveLast : public Edit {
 public:
  explicit AddRemoveLast(const std::string& text) : Edit(text), last_(shelf_.Count() + 1) {}
  std::uint64_t Run(std::size_t /*text*/) override {
    const KXMsgElement added = shelf_.AddChild("Page");
    shelf_.RemoveChildKey(last_);
    return added ? 1 : 0;
  }

 private:
  std::int32_t last_;
};

class Insert : public Edit {
 public:
  using Edit::Edit;
  std::uint64_t Run(std::size_t /*text*/) override {
    const KXMsgElement inserted = shelf_.InsertChild(page_);
    shelf_.RemoveChild(inserted);
    return inserted ? 1 : 0;
  }
};

class Replace : public Edit {
 public:
  using Edit::Edit;
  std::uint64_t Run(std::size_t /*text*/) override { return shelf_.ReplaceChild(page_, 2) ? 1 : 0; }
};

class AttributeOfShelf : public Edit {
 public:
  explicit AttributeOfShelf(const std::string& text)
      : Edit(text), attributes_(shelf_.Attributes()) {}
  std::uint64_t Run(std::size_t /*text*/) override {
    const KXMsgAttribute added = attributes_.AddAttribute("size");
    attributes_.RemoveAttribute("size");
    return added ? 1 : 0;
  }

 private:
  KXMsgAttributes attributes_;
};

class Groups : public Edit {
 public:
  using Edit::Edit;
  std::uint64_t Run(std::size_t /*text*/) override {
    shelf_.ReplaceGroup(2);
    shelf_.ReplaceGroup(1);
    return 1;
  }
};

template <class Kind>
Row EditRow(std::string name) {
  const auto enter = [](const Workload& workload) {
    std::vector<Entrant> entrants;
    entrants.push_back({"ours", std::make_unique<Kind>(workload.texts[0])});
    entrants.push_back({"small", std::make_unique<Kind>(MakeLibrary(kSmall, kSmall))});
    return entrants;
  };
  return {std::move(name), {"beside", "among"}, enter, Results::kMustAgree};
}

}  // namespace

std::vector<Row> EditRows() {
  return {EditRow<Add>("add"),
          EditRow<AddOnly>("add-only"),
          EditRow<AddRemoveLast>("remove-at"),
          EditRow<Insert>("insert"),
          EditRow<Replace>("replace"),
          EditRow<AttributeOfShelf>("attribute"),
          EditRow<Groups>("group")};
}

}  // namespace kx::bench
