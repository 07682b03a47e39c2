// The keyed collection: places, keys, every kind of look-up argument, and enumeration while it
// changes.
#include "platform/runtime/collection.h"

#include "platform/runtime/expect_error.h"
#include "platform/runtime/test_objects.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kx::runtime {
namespace {

using Collection = KeyedCollection<std::string>;

const Variant kNone = Variant::Missing();

Counted<Collection> MakeLetters(std::string_view letters) {
  Counted<Collection> collection = MakeCounted<Collection>();
  for (const char letter : letters) collection->Add(std::string(1, letter));
  return collection;
}

// Items in order of enumeration, joined.
std::string Joined(const Counted<Collection>& collection) {
  std::string all;
  auto enumerator = collection->Enumerate();
  while (const std::optional<std::string> item = enumerator.Next()) all += *item;
  return all;
}

struct IndexCase {
  const char* name;
  Variant index;
  std::string item;  // "" when it raises
  std::int32_t error;
};

std::vector<IndexCase> IndexCases() {
  return {
      {"the first position", 1, "a", 0},
      {"the last position", 4, "d", 0},
      {"position 0", 0, "", 9},
      {"a negative position", -1, "", 9},
      {"above Count", 5, "", 9},
      {"far above Count", 2147483647, "", 9},
      {"beyond 32 bits", 3e9, "", 6},
      {"a key", "key", "b", 0},
      {"a key in other case", "KEY", "b", 0},
      {"an unknown key", "other", "", 5},
      {"the empty text when it is no key", "", "", 5},
      {"digits are a key", "1", "", 5},
      {"digits that are a key", "4", "c", 0},
      {"1.5 is position 2", 1.5, "b", 0},
      {"2.5 is position 2", 2.5, "b", 0},
      {"0.5 is position 0", 0.5, "", 9},
      {"4.5 is position 4", 4.5, "d", 0},
      {"a single", 3.0F, "c", 0},
      {"a 16-bit integer", std::int16_t{2}, "b", 0},
      {"a currency amount", Currency{20000}, "b", 0},
      {"True is -1", true, "", 9},
      {"False is 0", false, "", 9},
      {"a date is its day number", Date{2}, "b", 0},
      {"empty is position 0", Variant(), "", 9},
      {"Null", Variant::Null(), "", 13},
      {"nothing", Variant::Nothing(), "", 13},
      {"an object without value", MakePlainThing(), "", 13},
      {"an object with a number", MakeValuedThing(2), "b", 0},
      {"an object with a key", MakeValuedThing("key"), "b", 0},
      {"a missing argument", Variant::Missing(), "", 5},
      {"another error value", ErrorValue{-1}, "", 13},
      {"bytes", Variant::Bytes{1}, "", 13},
  };
}

Counted<Collection> MakeSample() {
  Counted<Collection> collection = MakeCounted<Collection>();
  collection->Add("a");
  collection->Add("b", "Key");
  collection->Add("c", "4");
  collection->Add("d");
  return collection;
}

TEST(KeyedCollection, LooksUpByPositionAndByKey) {
  for (const IndexCase& row : IndexCases()) {
    SCOPED_TRACE(row.name);
    const Counted<Collection> collection = MakeSample();
    EXPECT_EQ(ErrorOf([&] { return collection->GetAny(row.index); }), row.error);
    if (row.error == 0) {
      EXPECT_EQ(collection->GetAny(row.index), row.item);
    }
  }
}

TEST(KeyedCollection, RemovesByPositionAndByKey) {
  for (const IndexCase& row : IndexCases()) {
    SCOPED_TRACE(row.name);
    const Counted<Collection> collection = MakeSample();
    const std::int32_t error = ErrorOf([&] {
      collection->RemoveAny(row.index);
      return 0;
    });
    EXPECT_EQ(error, row.error);
    EXPECT_EQ(collection->Count(), row.error == 0 ? 3 : 4);
    EXPECT_EQ(Joined(collection).find(row.item) == std::string::npos, row.error == 0);
  }
}

TEST(KeyedCollection, RaisesErrorsOfItsOwnType) {
  const Counted<Collection> collection = MakeSample();
  EXPECT_THROW(static_cast<void>(collection->At(9)), CollectionError);
  EXPECT_THROW(static_cast<void>(collection->Get("?")), CollectionError);
  EXPECT_THROW(static_cast<void>(collection->GetAny(Variant(3e9))), CollectionError);
  EXPECT_THROW(static_cast<void>(collection->GetAny(Variant::Null())), CollectionError);
  EXPECT_THROW(collection->Add("x", "KEY"), CollectionError);
}

TEST(KeyedCollection, RefusesAKeyThatIsPresentWhateverItsCase) {
  struct Case {
    const char* key;
    std::int32_t error;
    const char* why;
  };
  constexpr Case kCases[] = {
      {"Key", 457, "the same key"},
      {"kEY", 457, "in other case"},
      {"K\xC3\xA9y", 0, "an accent makes another key"},
      {"Key ", 0, "a blank as well"},
      {"", 0, "the empty key is a key"},
  };
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.why);
    const Counted<Collection> collection = MakeSample();
    const auto add = [&] {
      collection->Add("x", row.key);
      return 0;
    };
    EXPECT_EQ(ErrorOf(add), row.error);
    EXPECT_EQ(collection->Count(), row.error == 0 ? 5 : 4) << "nothing is added by a failure";
    EXPECT_EQ(ErrorOf(add), 457) << "every key is unique, the empty one too";
    EXPECT_EQ(collection->Get(row.key), row.error == 0 ? "x" : "b");
  }
}

TEST(KeyedCollection, FreesAKeyWithItsItem) {
  const Counted<Collection> collection = MakeSample();
  collection->RemoveKey("key");
  EXPECT_EQ(collection->Find("key"), nullptr);
  collection->Add("again", "KEY");
  EXPECT_EQ(collection->Get("key"), "again");
  EXPECT_EQ(Joined(collection), "acdagain");
}

TEST(KeyedCollection, ClosesUpPositionsAndLeavesKeysWithTheirItems) {
  const Counted<Collection> collection = MakeSample();
  collection->RemoveAt(1);
  EXPECT_EQ(collection->At(1), "b");
  EXPECT_EQ(collection->At(3), "d");
  EXPECT_EQ(collection->Get("key"), "b");
  EXPECT_EQ(ErrorOf([&] { return collection->At(4); }), 9);
}

TEST(KeyedCollection, FindsWithoutRaising) {
  const Counted<Collection> collection = MakeSample();
  ASSERT_NE(collection->Find("KEY"), nullptr);
  EXPECT_EQ(*collection->Find("KEY"), "b");
  EXPECT_EQ(collection->Find("1"), nullptr);
}

struct AddCase {
  const char* name;
  Variant key;
  Variant before;
  Variant after;
  std::int32_t error;
  const char* order;
};

TEST(KeyedCollection, AddsAtThePlaceThatIsAsked) {
  const AddCase cases[] = {
      {"no place", kNone, kNone, kNone, 0, "abcdx"},
      {"before the first", kNone, 1, kNone, 0, "xabcd"},
      {"before the last", kNone, 4, kNone, 0, "abcxd"},
      {"after the last", kNone, kNone, 4, 0, "abcdx"},
      {"after the first", kNone, kNone, 1, 0, "axbcd"},
      {"before a key", kNone, "key", kNone, 0, "axbcd"},
      {"after a key", kNone, kNone, "KEY", 0, "abxcd"},
      {"both places", kNone, 1, 2, 5, "abcd"},
      {"before 0", kNone, 0, kNone, 9, "abcd"},
      {"before Count + 1", kNone, 5, kNone, 9, "abcd"},
      {"after 0", kNone, kNone, 0, 9, "abcd"},
      {"after Count + 1", kNone, kNone, 5, 9, "abcd"},
      {"before an unknown key", kNone, "?", kNone, 5, "abcd"},
      {"after an unknown key", kNone, kNone, "?", 5, "abcd"},
      {"a number as key", 1, kNone, kNone, 13, "abcd"},
      {"empty as key", Variant(), kNone, kNone, 13, "abcd"},
      {"Null as key", Variant::Null(), kNone, kNone, 13, "abcd"},
      {"a key at a place", "new", 2, kNone, 0, "axbcd"},
      {"a present key at a place", "KEY", 2, kNone, 457, "abcd"},
  };
  for (const AddCase& row : cases) {
    SCOPED_TRACE(row.name);
    const Counted<Collection> collection = MakeSample();
    const std::int32_t error = ErrorOf([&] {
      collection->Add("x", row.key, row.before, row.after);
      return 0;
    });
    EXPECT_EQ(error, row.error);
    EXPECT_EQ(Joined(collection), row.order);
    for (std::int32_t i = 1; i <= collection->Count(); ++i) {
      EXPECT_EQ(collection->At(i), std::string(1, row.order[i - 1]));
    }
  }
}

TEST(Enumerator, EndsAtOnceForAnEmptyCollection) { EXPECT_EQ(Joined(MakeLetters("")), ""); }

struct ChangeCase {
  const char* why;
  int taken;  // items taken before the change
  void (*change)(Collection&);
  const char* rest;
};

constexpr ChangeCase kChanges[] = {
    {"an item added at the end is reached", 2, [](Collection& c) { c.Add("x"); }, "cdx"},
    {"also when the end was current", 4, [](Collection& c) { c.Add("x"); }, "x"},
    {"removing a passed item changes nothing", 3, [](Collection& c) { c.RemoveAt(1); }, "d"},
    {"removing the current item goes on with its successor", 2,
     [](Collection& c) { c.RemoveAt(2); }, "cd"},
    {"removing the current item when it is the first", 1, [](Collection& c) { c.RemoveAt(1); },
     "bcd"},
    {"removing the current item when it is the last", 4, [](Collection& c) { c.RemoveAt(4); }, ""},
    {"then an added item is reached", 4,
     [](Collection& c) {
       c.RemoveAt(4);
       c.Add("x");
     },
     "x"},
    {"removing a later item skips it", 1, [](Collection& c) { c.RemoveAt(3); }, "bd"},
    {"removing the next item skips it", 1, [](Collection& c) { c.RemoveAt(2); }, "cd"},
    {"removing current and next", 2,
     [](Collection& c) {
       c.RemoveAt(2);
       c.RemoveAt(2);
     },
     "d"},
    {"removing current and all passed ones", 3,
     [](Collection& c) {
       for (int i = 0; i < 3; ++i) c.RemoveAt(1);
     },
     "d"},
    {"removing all before the start", 0,
     [](Collection& c) {
       for (int i = 0; i < 4; ++i) c.RemoveAt(1);
     },
     ""},
    {"an item put in front of the current one is passed", 2,
     [](Collection& c) { c.Add("x", kNone, 1, kNone); }, "cd"},
    {"an item put behind the current one is reached", 2,
     [](Collection& c) { c.Add("x", kNone, kNone, 2); }, "xcd"},
    {"clearing ends it", 2, [](Collection& c) { c.Clear(); }, ""},
    {"clearing and filling begins with the new items", 2,
     [](Collection& c) {
       c.Clear();
       c.Add("x");
     },
     "x"},
};

TEST(Enumerator, StaysRightWhileTheCollectionChanges) {
  for (const ChangeCase& row : kChanges) {
    SCOPED_TRACE(row.why);
    const Counted<Collection> collection = MakeLetters("abcd");
    auto enumerator = collection->Enumerate();
    for (int i = 0; i < row.taken; ++i) ASSERT_TRUE(enumerator.Next().has_value());
    row.change(*collection);
    std::string rest;
    while (const std::optional<std::string> item = enumerator.Next()) rest += *item;
    EXPECT_EQ(rest, row.rest);
  }
}

TEST(Enumerator, IsIndependentOfOthers) {
  const Counted<Collection> collection = MakeLetters("abc");
  auto first = collection->Enumerate();
  EXPECT_EQ(first.Next(), "a");
  auto second = collection->Enumerate();
  auto copy = first;
  EXPECT_EQ(second.Next(), "a");
  EXPECT_EQ(copy.Next(), "b");
  EXPECT_EQ(first.Next(), "b");
  collection->RemoveAt(2);
  EXPECT_EQ(copy.Next(), "c");
  EXPECT_EQ(second.Next(), "c");
  second = first;
  EXPECT_EQ(second.Next(), "c");
  first.Reset();
  EXPECT_EQ(first.Next(), "a");
}

TEST(Enumerator, KeepsTheCollectionAlive) {
  Counted<Collection> collection = MakeLetters("ab");
  auto enumerator = collection->Enumerate();
  collection.Reset();
  EXPECT_EQ(enumerator.Next(), "a");
  EXPECT_EQ(enumerator.Next(), "b");
  EXPECT_EQ(enumerator.Next(), std::nullopt);
}

TEST(Enumerator, LeavesTheCollectionWhenItEnds) {
  const Counted<Collection> collection = MakeLetters("abc");
  {
    auto outer = collection->Enumerate();
    auto inner = collection->Enumerate();
    EXPECT_EQ(collection->ReferenceCount(), 3U);
    EXPECT_EQ(inner.Next(), "a");
    EXPECT_EQ(outer.Next(), "a");
  }
  EXPECT_EQ(collection->ReferenceCount(), 1U);
  collection->RemoveAt(1);
  EXPECT_EQ(Joined(collection), "bc");
}

TEST(KeyedCollection, ReleasesItsItems) {
  using References = KeyedCollection<Counted<PlainThing>>;
  Counted<References> collection = MakeCounted<References>();
  collection->Add(MakeCounted<PlainThing>(), "a");
  collection->Add(MakeCounted<PlainThing>());
  const Counted<PlainThing> twice = MakeCounted<PlainThing>();
  collection->Add(twice, "x");
  collection->Add(twice, "y");
  EXPECT_EQ(LiveObject::LiveCount(), 3U);
  collection->RemoveKey("a");
  EXPECT_EQ(LiveObject::LiveCount(), 2U);
  collection->RemoveKey("x");
  EXPECT_EQ(twice->ReferenceCount(), 2U);
  collection.Reset();
  EXPECT_EQ(LiveObject::LiveCount(), 1U);
}

// An item whose end looks at the collection that is letting it go.
class Watcher : public PlainCounted {
 public:
  explicit Watcher(KeyedCollection<Counted<Watcher>>* collection) : collection_(collection) {}
  ~Watcher() override { countAtEnd = collection_->Count(); }
  static inline std::int32_t countAtEnd = -1;

 private:
  KeyedCollection<Counted<Watcher>>* collection_;
};

TEST(KeyedCollection, HasForgottenAnItemBeforeItEnds) {
  using Watched = KeyedCollection<Counted<Watcher>>;
  const Counted<Watched> collection = MakeCounted<Watched>();
  for (int i = 0; i < 3; ++i) collection->Add(MakeCounted<Watcher>(collection.Get()));
  collection->RemoveAt(2);
  EXPECT_EQ(Watcher::countAtEnd, 2);
  collection->Clear();
  EXPECT_EQ(Watcher::countAtEnd, 0);
}

TEST(KeyedCollection, HoldsManyItemsInOrder) {
  const Counted<Collection> collection = MakeCounted<Collection>();
  constexpr std::int32_t kCount = 20000;
  for (std::int32_t i = 1; i <= kCount; ++i) {
    collection->Add(std::to_string(i), "k" + std::to_string(i));
  }
  for (std::int32_t i = 1; i <= kCount; i += 97) {
    ASSERT_EQ(collection->At(i), std::to_string(i));
    ASSERT_EQ(collection->Get("K" + std::to_string(i)), std::to_string(i));
  }
  for (std::int32_t i = 2; i <= kCount; i += 2) collection->RemoveKey("K" + std::to_string(i));
  EXPECT_EQ(collection->Count(), kCount / 2);
  EXPECT_EQ(collection->At(5000), "9999");
}

}  // namespace
}  // namespace kx::runtime
