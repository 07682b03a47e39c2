// Memory stays flat however many messages come and go.
#include "kxmessage/element.h"
#include "kxmessage/message.h"

#include "support/flat_memory.h"
#include "support/message_world.h"

#include <gtest/gtest.h>

namespace kx {
namespace {

class MessageMemory : public testing::Test {
 protected:
  MessageMemory() {
    world_.AddSchema("s.xml",
                     "<ElementType name='Qty' content='textOnly' dt:type='int'/>"
                     "<ElementType name='Note' content='textOnly'/>"
                     "<ElementType name='Order' content='eltOnly'><element type='Qty'/>"
                     "<element type='Note' minOccurs='0' maxOccurs='*'/></ElementType>");
  }
  test::MessageWorld world_;
};

TEST_F(MessageMemory, StaysFlatWhenMessagesAreMadeLoadedAndDropped) {
  const auto environment = world_.Environment();
  test::ExpectFlat([&] {
    auto made = runtime::MakeCounted<core::MessageImpl>(environment);
    made->InitMessage("s", "Order");
    auto loaded = runtime::MakeCounted<core::MessageImpl>(environment);
    loaded->LoadMessageFromString(made->Xml());
    static_cast<void>(loaded->CloneMessage()->Xml());
  });
}

TEST_F(MessageMemory, StaysFlatWhenChildrenAreReadAndValuesSet) {
  const KXMessage message = world_.Loaded("s", "<Order><Qty>1</Qty><Note>a</Note></Order>");
  const KXMsgElement order = message.RootElement();
  int turn = 0;
  test::ExpectFlat([&] {
    order["Qty"].Value(++turn);
    order[2].Value(turn % 2 == 0 ? "short" : "a text that is longer than the other one");
    static_cast<void>(order["Note"].Info().DataType());
    static_cast<void>(message.XML());
  });
}

}  // namespace
}  // namespace kx
