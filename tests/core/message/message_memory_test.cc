// Memory stays flat however many messages come and go.
#include "kxmessage/element.h"
#include "kxmessage/message.h"

#include "support/message_world.h"

#include <cstddef>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#include <malloc.h>
#define KX_COUNTS_MEMORY 1
#endif

namespace kx {
namespace {

std::size_t UsedBytes() {
#if defined(KX_COUNTS_MEMORY)
  return mallinfo2().uordblks;
#else
  return 0;
#endif
}

int Rounds() {
  const char* large = std::getenv("KX_LARGE");
  return large != nullptr && std::string(large) == "1" ? 1'000'000 : 2'000;
}

class MessageMemory : public testing::Test {
 protected:
  MessageMemory() {
    world_.AddSchema("s.xml",
                     "<ElementType name='Qty' content='textOnly' dt:type='int'/>"
                     "<ElementType name='Note' content='textOnly'/>"
                     "<ElementType name='Order' content='eltOnly'><element type='Qty'/>"
                     "<element type='Note' minOccurs='0' maxOccurs='*'/></ElementType>");
  }
  void SetUp() override {
#if !defined(KX_COUNTS_MEMORY)
    GTEST_SKIP() << "this build cannot count its memory; the sanitizers find what leaks";
#endif
  }

  // What one more round of `work` leaves behind after many of them.
  template <class Work>
  void ExpectFlat(const Work& work) {
    for (int i = 0; i < 20; ++i) work();
    const std::size_t before = UsedBytes();
    for (int i = 0; i < Rounds(); ++i) work();
    EXPECT_LE(UsedBytes(), before + 512);
  }

  test::MessageWorld world_;
};

TEST_F(MessageMemory, StaysFlatWhenMessagesAreMadeLoadedAndDropped) {
  const auto environment = world_.Environment();
  ExpectFlat([&] {
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
  ExpectFlat([&] {
    order["Qty"].Value(++turn);
    order[2].Value(turn % 2 == 0 ? "short" : "a text that is longer than the other one");
    static_cast<void>(order["Note"].Info().DataType());
    static_cast<void>(message.XML());
  });
}

}  // namespace
}  // namespace kx
