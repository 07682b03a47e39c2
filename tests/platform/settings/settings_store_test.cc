// The contract of a settings store, for each kind of store: in memory, in a file of the real
// system, in a file in memory, and with defaults kept in memory in front of one.
#include "platform/settings/settings_store.h"

#include "platform/host/host_site.h"
#include "platform/settings/file_settings_store.h"
#include "platform/settings/kept_defaults.h"
#include "platform/settings/memory_settings_store.h"

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

namespace kx::settings {
namespace {

using namespace std::string_literals;
using host::RuntimeErrorOfCall;

// A storage, and stores over it.
class Storage {
 public:
  virtual ~Storage() = default;
  /// A new store over the same storage; null when the storage ends with its store.
  [[nodiscard]] virtual std::unique_ptr<SettingsStore> Open() = 0;
};

class FileStorage final : public Storage {
 public:
  explicit FileStorage(const host::SiteFactory& site) : site_(site.make()) {}
  [[nodiscard]] std::unique_ptr<SettingsStore> Open() override {
    return std::make_unique<FileSettingsStore>(site_->TheHost(), site_->At("config/settings.ini"));
  }

 private:
  std::unique_ptr<host::HostSite> site_;
};

class KeptStorage final : public Storage {
 public:
  [[nodiscard]] std::unique_ptr<SettingsStore> Open() override {
    return std::make_unique<KeptDefaults>(file_.Open());
  }

 private:
  FileStorage file_{host::MemorySite()};
};

class MemoryStorage final : public Storage {
 public:
  [[nodiscard]] std::unique_ptr<SettingsStore> Open() override {
    return std::exchange(store_, nullptr);
  }

 private:
  std::unique_ptr<SettingsStore> store_ = std::make_unique<MemorySettingsStore>();
};

struct StorageFactory {
  const char* name;
  std::function<std::unique_ptr<Storage>()> make;
};
void PrintTo(const StorageFactory& factory, std::ostream* out) { *out << factory.name; }

class AnyStore : public testing::TestWithParam<StorageFactory> {
 protected:
  [[nodiscard]] std::unique_ptr<SettingsStore> OpenAs(std::string_view application) {
    std::unique_ptr<SettingsStore> store = storage_->Open();
    if (store) store->SetApplicationName(application);
    return store;
  }

  std::unique_ptr<Storage> storage_ = GetParam().make();
  std::unique_ptr<SettingsStore> store_ = OpenAs("App");
};

INSTANTIATE_TEST_SUITE_P(
    Stores, AnyStore,
    testing::Values(
        StorageFactory{"Memory", [] { return std::make_unique<MemoryStorage>(); }},
        StorageFactory{"RealFile", [] { return std::make_unique<FileStorage>(host::RealSite()); }},
        StorageFactory{"FileInMemory",
                       [] { return std::make_unique<FileStorage>(host::MemorySite()); }},
        StorageFactory{"KeptDefaults", [] { return std::make_unique<KeptStorage>(); }}),
    [](const auto& storage) { return storage.param.name; });

TEST_P(AnyStore, GivesTheDefaultForWhatIsNotStored) {
  EXPECT_EQ(store_->Find("SchemaPath"), std::nullopt);
  EXPECT_EQ(store_->Read("SchemaPath", "the default"), "the default");
  EXPECT_EQ(store_->Find("SchemaPath"), std::nullopt) << "reading stores nothing";
}

TEST_P(AnyStore, GivesBackWhatWasWritten) {
  const std::string texts[] = {
      "C:\\Program Files\\Halcyra\\KXMessageSchemas\\",
      "http://server/a%20b/?c=d#e",
      "",
      " blanks at both ends ",
      "\ttab\t",
      "several\r\nlines\n",
      "\"quoted\"",
      "\"",
      "back\\slash\\",
      "\\n is no line end",
      "# ; [ ] = ",
      "\x01\x7F",
      "\xC3\x84\xE6\x97\xA5\xF0\x9F\x98\x80",
      std::string(10000, 'x'),
  };
  for (const std::string& text : texts) {
    SCOPED_TRACE(text.substr(0, 40));
    store_->Write("name", text);
    EXPECT_EQ(store_->Find("name"), text);
    EXPECT_EQ(store_->Read("name", "default"), text);
  }
}

TEST_P(AnyStore, TakesAnyName) {
  const std::string names[] = {"SchemaPath", "a=b",   " blank ", "[x]",     "#x",
                               ";x",         "\"x\"", "x\"y",    "line\nx", "tab\tx",
                               "\\x41",      "=",     "\xC3\x84"};
  for (const std::string& name : names) store_->Write(name, "value of " + name);
  for (const std::string& name : names) EXPECT_EQ(store_->Find(name), "value of " + name);
}

TEST_P(AnyStore, ComparesNamesWithoutRegardToCase) {
  store_->Write("SchemaPath", "1");
  EXPECT_EQ(store_->Find("SCHEMAPATH"), "1");
  store_->Write("schemapath", "2");
  EXPECT_EQ(store_->Find("SchemaPath"), "2");
}

TEST_P(AnyStore, KeepsOtherNamesWhenOneChanges) {
  store_->Write("a", "1");
  store_->Write("b", "2");
  store_->Write("a", "3");
  EXPECT_EQ(store_->Find("a"), "3");
  EXPECT_EQ(store_->Find("b"), "2");
}

TEST_P(AnyStore, KeepsASetForEachApplication) {
  store_->Write("a", "of App");
  store_->SetApplicationName("Other");
  EXPECT_EQ(store_->Find("a"), std::nullopt);
  store_->Write("a", "of Other");
  store_->SetApplicationName("App");
  EXPECT_EQ(store_->Find("a"), "of App");
  store_->SetApplicationName(" odd ]= \"name\"\n");
  store_->Write("a", "of the odd one");
  EXPECT_EQ(store_->Find("a"), "of the odd one");
}

TEST_P(AnyStore, RefusesAnEmptyNameAndNul) {
  EXPECT_EQ(RuntimeErrorOfCall([&] { store_->Write("", "x"); }), 5);
  EXPECT_EQ(RuntimeErrorOfCall([&] { store_->Write("a\0b"s, "x"); }), 5);
  EXPECT_EQ(RuntimeErrorOfCall([&] { store_->Write("a", "x\0y"s); }), 5);
  EXPECT_EQ(store_->Find("a"), std::nullopt);
}

TEST_P(AnyStore, KeepsWhatWasWrittenForTheNextStore) {
  std::unique_ptr<SettingsStore> other = OpenAs("App");
  if (!other) GTEST_SKIP() << "this storage ends with its store";
  store_->Write("a", "1");
  EXPECT_EQ(other->Find("a"), "1");
  other->Write("a", "2");
  EXPECT_EQ(store_->Find("a"), "2") << "another store's value is seen at once";
}

TEST_P(AnyStore, ServesSeveralThreads) {
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&, thread] {
      for (int i = 0; i < 10; ++i) {
        const std::string name = std::to_string(thread) + "-" + std::to_string(i);
        store_->Write(name, name);
        EXPECT_EQ(store_->Find(name), name);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (int thread = 0; thread < 4; ++thread) {
    for (int i = 0; i < 10; ++i) {
      const std::string name = std::to_string(thread) + "-" + std::to_string(i);
      EXPECT_EQ(store_->Find(name), name);
    }
  }
}

}  // namespace
}  // namespace kx::settings
