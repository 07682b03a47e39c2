// Memory stays flat however long a message is edited, whether objects of what was removed are held
// or not.
#include "kxmessage/attributes.h"
#include "kxmessage/element.h"
#include "kxmessage/message.h"

#include "support/flat_memory.h"
#include "support/message_world.h"

#include <array>
#include <cstddef>
#include <gtest/gtest.h>
#include <string>
#include <utility>

namespace kx {
namespace {

enum class Holding : unsigned char { kNothing, kTheLatest };

class EditingMemory : public testing::TestWithParam<Holding> {
 protected:
  EditingMemory() {
    world_.AddSchema(
        "s.xml",
        "<AttributeType name='size' dt:type='int'/><AttributeType name='no' required='yes'/>"
        "<ElementType name='Leaf' content='textOnly'/>"
        "<ElementType name='Part' content='eltOnly'><attribute type='no'/>"
        "<attribute type='size'/><element type='Leaf'/></ElementType>"
        "<ElementType name='Order' content='eltOnly' order='many' model='open'>"
        "<attribute type='size'/>"
        "<group minOccurs='0'><element type='Leaf'/><element type='Part'/></group>"
        "<group minOccurs='0'><element type='Tail'/><element type='Leaf' minOccurs='0'/></group>"
        "<element type='Part' minOccurs='0' maxOccurs='*'/></ElementType>"
        "<ElementType name='Tail' content='eltOnly'><element type='Part' maxOccurs='*'/>"
        "</ElementType>");
    world_.AddSchema("t.xml", "<ElementType name='Guest' content='textOnly'/>");
    message_ =
        world_.Loaded("s", "<Order><Leaf>one</Leaf><Part no='1'><Leaf>two</Leaf></Part></Order>");
    order_ = message_.RootElement();
  }

  // Holds the last few, where this run holds any.
  void Hold(const KXMsgElement& element) {
    if (GetParam() == Holding::kTheLatest) elements_[next_++ % elements_.size()] = element;
  }
  void Hold(const KXMsgAttribute& attribute) {
    if (GetParam() == Holding::kTheLatest) attributes_[next_++ % attributes_.size()] = attribute;
  }

  template <class Work>
  void ExpectFlat(const Work& work) {
    const std::string before = message_.XML();
    test::ExpectFlat(work, 2000);
    EXPECT_EQ(message_.XML(), before) << "each round leaves the message as it was";
  }

  test::MessageWorld world_;
  KXMessage message_ = nullptr;
  KXMsgElement order_;
  std::array<KXMsgElement, 16> elements_;
  std::array<KXMsgAttribute, 16> attributes_;
  std::size_t next_ = 0;
};

INSTANTIATE_TEST_SUITE_P(, EditingMemory, testing::Values(Holding::kNothing, Holding::kTheLatest),
                         [](const testing::TestParamInfo<Holding>& tested) {
                           return tested.param == Holding::kNothing ? "HoldingNothing"
                                                                    : "HoldingTheLatest";
                         });

TEST_P(EditingMemory, StaysFlatWhenChildrenAreAddedAndRemoved) {
  ExpectFlat([&] {
    const KXMsgElement part = order_.AddChild("Part");
    Hold(part.ChildElements("Leaf"));
    for (const KXMsgElement& child : order_) Hold(child);
    order_.RemoveChild(part);
    Hold(part);
  });
}

TEST_P(EditingMemory, StaysFlatWhenChildrenAreRemovedByPosition) {
  ExpectFlat([&] {
    Hold(order_.AddChild("Part"));
    order_.RemoveChildKey(order_.Count());
  });
}

TEST_P(EditingMemory, StaysFlatWhenCopiesAreInsertedAndRemoved) {
  const KXMsgElement guest = world_.Loaded("t", "<Guest>of another schema</Guest>").RootElement();
  const KXMsgElement part = order_.ChildElements("Part");
  ExpectFlat([&] {
    const KXMsgElement copy = order_.InsertChild(part);
    const KXMsgElement foreign = order_.InsertChild(guest);
    Hold(copy.ChildElements(1));
    order_.RemoveChild(foreign);
    order_.RemoveChild(copy);
    Hold(foreign);
  });
}

TEST_P(EditingMemory, StaysFlatWhenChildrenAreReplaced) {
  ExpectFlat([&] { Hold(order_.ReplaceChild(order_.ChildElements("Part"), 1)); });
}

TEST_P(EditingMemory, StaysFlatWhenAttributesAreAddedSetAndRemoved) {
  int turn = 0;
  ExpectFlat([&] {
    const KXMsgAttributes attributes = order_.Attributes();
    const KXMsgAttribute size = attributes.AddAttribute("size");
    size.Value(std::to_string(++turn % 1000));
    for (const KXMsgAttribute& attribute : attributes) Hold(attribute);
    attributes.RemoveAttribute("size");
    Hold(size);
  });
}

TEST_P(EditingMemory, StaysFlatWhenGroupsAreReplaced) {
  ExpectFlat([&] {
    order_.ReplaceGroup(2);
    Hold(order_.ChildElements("Tail"));
    order_.RemoveChildKey("Leaf");
    order_.ReplaceGroup(1);
    order_.ChildElements("Leaf").Value("one");
    order_.ChildElements("Part").Attributes().Attrib("no").Value("1");
    order_.ChildElements("Part").ChildElements("Leaf").Value("two");
  });
}

}  // namespace
}  // namespace kx
