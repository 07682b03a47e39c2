// Messages of one schema on many threads at a time, each message by one.
#include "kxmessage/element.h"
#include "kxmessage/found_elements.h"
#include "kxmessage/message.h"

#include "support/message_world.h"

#include <atomic>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

namespace kx {
namespace {

TEST(MessageThreads, MessagesOfOneSchemaAreMadeLoadedAskedAndChangedAtTheSameTime) {
  test::MessageWorld world;
  world.AddSchema("s.xml",
                  "<ElementType name='Qty' content='textOnly' dt:type='int'/>"
                  "<ElementType name='Note' content='textOnly'/>"
                  "<ElementType name='Item' content='eltOnly'><element type='Qty'/>"
                  "<element type='Note' minOccurs='0'/></ElementType>"
                  "<ElementType name='Order' content='eltOnly'><element type='Item' "
                  "maxOccurs='*'/></ElementType>");
  const auto environment = world.Environment();
  const auto newMessage = [&environment] {
    return HandleAccess::Wrap<KXMessage>(runtime::MakeCounted<core::MessageImpl>(environment));
  };
  std::atomic<int> faults{0};
  const auto work = [&](int number) {
    for (int round = 0; round < 50; ++round) {
      const KXMessage made = newMessage();
      made.InitMessage("s", "Order");
      made.RootElement()["Item"]["Qty"].Value(number);
      made.RootElement()["Item"]["Note"].Value("of thread " + std::to_string(number));
      const KXMessage loaded = newMessage();
      loaded.LoadMessageFromString(made.XML());
      const KXMsgFoundElements found = loaded.RootElement().FindElements("//Item[Qty >= 0]/Note");
      const bool good = found.Count() == 1 && loaded.XML() == made.XML() &&
                        loaded.CloneMessage().XML() == made.XML() &&
                        loaded.RootElement()["Item"]["Qty"].Value() == Variant(number) &&
                        loaded.RootElement().KnownValidChildren().Exists("Item");
      if (!good) ++faults;
    }
  };
  std::vector<std::thread> threads;
  threads.reserve(8);
  for (int i = 0; i < 8; ++i) threads.emplace_back(work, i);
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(faults, 0);
}

}  // namespace
}  // namespace kx
