// The envelope: how it is supplied, completed and checked.
#include "core/envelope.h"

#include "core/msg_error.h"
#include "platform/host/memory/memory_host.h"
#include "platform/runtime/error.h"

#include <cctype>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

namespace kx::core {
namespace {

dom::Document Load(std::string_view text) {
  dom::Document document = dom::NewDomDocument();
  EXPECT_TRUE(document.LoadXml(text)) << text;
  return document;
}

std::string Attribute(const dom::Document& document, std::string_view name) {
  return document.DocumentElement().GetAttribute(name).value_or("(none)");
}

constexpr const char* kComplete =
    "<KXMessage version='2' msgType='a' uniqueID='b' subType='c' timeStamp='d' schemaURL='e' "
    "deliveryOptions='1' deliveryResult='2' tag='f' class='g'><Order/></KXMessage>";

std::string Without(std::string_view name) {
  const std::string_view text = kComplete;
  const std::size_t begin = text.find(" " + std::string(name) + "='");
  const std::size_t end = text.find('\'', text.find('\'', begin) + 1);
  return std::string(text.substr(0, begin)).append(text.substr(end + 1));
}

std::string AttributesOfComplete() {
  const std::string text = kComplete;
  const std::size_t begin = std::string("<KXMessage").size();
  return text.substr(begin, text.find('>') - begin);
}

std::string Replaced(std::string text, std::string_view old, std::string_view put) {
  return text.replace(text.find(old), old.size(), put);
}

TEST(Envelope, ABareContentRootIsWrappedWithAllElevenAttributesInOrder) {
  host::MemoryHost host;
  const dom::Document document = Load("<Order xmlns=\"x-schema:o.xml\"><Item/></Order>");
  EXPECT_EQ(EnsureEnvelope(document, "o.xml", host), EnvelopeOrigin::kCreated);
  EXPECT_EQ(document.Xml(),
            "<KXMessage version=\"1.0.0\" msgType=\"Order\" "
            "uniqueID=\"00000000-0000-4000-8000-000000000001\" subType=\"\" "
            "timeStamp=\"2008-03-14 09:05:07\" schemaURL=\"o.xml\" deliveryOptions=\"0\" "
            "deliveryResult=\"0\" tag=\"\" class=\"Order\" encoding=\"iso-8859-1\">"
            "<Order xmlns=\"x-schema:o.xml\"><Item/></Order></KXMessage>\r\n");
  EXPECT_NO_THROW(CheckEnvelope(document));
}

TEST(Envelope, ACreatedEnvelopeHasNoNamespaceAndOwnsTheOldRoot) {
  host::MemoryHost host;
  const dom::Document document = Load("<?p q?><!--c--><p:Order xmlns:p=\"u\"/><!--d-->");
  const dom::Node root = document.DocumentElement();
  EnsureEnvelope(document, "", host);
  EXPECT_EQ(document.DocumentElement().NodeName(), "KXMessage");
  EXPECT_EQ(document.DocumentElement().NamespaceUri(), std::nullopt);
  EXPECT_EQ(root.ParentNode(), document.DocumentElement());
  EXPECT_EQ(Attribute(document, "msgType"), "Order") << "the base name, without prefix";
  EXPECT_EQ(Attribute(document, "class"), "Order");
  EXPECT_EQ(Attribute(document, "schemaURL"), "");
}

TEST(Envelope, AnIncompleteEnvelopeGetsItsOwnNameAsTypeAndClass) {
  host::MemoryHost host;
  const dom::Document document = Load("<KXMessage><Order/></KXMessage>");
  EXPECT_EQ(EnsureEnvelope(document, "s", host), EnvelopeOrigin::kWasThere);
  EXPECT_EQ(Attribute(document, "msgType"), "KXMessage");
  EXPECT_EQ(Attribute(document, "class"), "KXMessage");
  EXPECT_EQ(document.DocumentElement().FirstChild().NodeName(), "Order");
}

TEST(Envelope, ExistingAttributesAreNeverChanged) {
  host::MemoryHost host;
  const dom::Document document = Load(kComplete);
  const std::string before = document.Xml();
  EnsureEnvelope(document, "other", host);
  EXPECT_EQ(Attribute(document, "encoding"), "iso-8859-1");
  document.DocumentElement().RemoveAttribute("encoding");
  EXPECT_EQ(document.Xml(), before);
}

TEST(Envelope, EmptyAttributesCountAsPresent) {
  host::MemoryHost host;
  const dom::Document document = Load("<KXMessage version='' msgType=''><a/></KXMessage>");
  EnsureEnvelope(document, "s", host);
  EXPECT_EQ(Attribute(document, "version"), "");
  EXPECT_EQ(Attribute(document, "msgType"), "");
  EXPECT_NO_THROW(CheckEnvelope(document));
}

TEST(Envelope, EnsuringTwiceChangesNothingTheSecondTime) {
  host::MemoryHost host;
  const dom::Document document = Load("<Order/>");
  EnsureEnvelope(document, "s", host);
  const std::string once = document.Xml();
  EXPECT_EQ(EnsureEnvelope(document, "t", host), EnvelopeOrigin::kWasThere);
  EXPECT_EQ(document.Xml(), once);
}

TEST(Envelope, ADocumentWithoutElementRaisesObjectNotSet) {
  host::MemoryHost host;
  const dom::Document document = dom::NewDomDocument();
  const auto numberOf = [](const auto& call) {
    try {
      call();
    } catch (const Error& error) {
      return static_cast<std::uint32_t>(error.Number());
    }
    return 0U;
  };
  EXPECT_EQ(numberOf([&] { EnsureEnvelope(document, "s", host); }), 0x800A005BU);
  EXPECT_EQ(numberOf([&] { CheckEnvelope(document); }), 0x800A005BU);
}

struct CheckCase {
  const char* why;
  std::string text;
  bool valid;
};

TEST(Envelope, TheCheckWantsTheElementAndTenAttributes) {
  std::vector<CheckCase> rows = {
      {"complete, without encoding", kComplete, true},
      {"another element", "<Order/>", false},
      {"the name in another case", "<kxMessage/>", false},
      {"no attributes", "<KXMessage/>", false},
      {"with a prefix, which the pattern's plain name does not match",
       "<p:KXMessage xmlns:p='u'" + AttributesOfComplete() + "/>", false},
      {"in a default namespace: names compare as written",
       "<KXMessage xmlns='u'" + AttributesOfComplete() + "/>", true},
      {"an attribute with a prefix is another one",
       "<KXMessage xmlns:p='u'" + Replaced(AttributesOfComplete(), " tag=", " p:tag=") + "/>",
       false},
      {"an attribute in another case is another one",
       "<KXMessage" + Replaced(AttributesOfComplete(), " tag=", " Tag=") + "/>", false},
      {"comments and instructions around it do not matter",
       "<?xml version='1.0'?><!--c-->" + std::string(kComplete) + "<?p?>", true},
      {"a complete one inside another element", "<a>" + std::string(kComplete) + "</a>", false},
      {"a complete one inside an incomplete one",
       "<KXMessage>" + std::string(kComplete) + "</KXMessage>", false},
  };
  for (const char* name : {"version", "msgType", "uniqueID", "subType", "timeStamp", "schemaURL",
                           "deliveryOptions", "deliveryResult", "tag", "class"}) {
    rows.push_back({name, Without(name), false});
  }
  for (const CheckCase& row : rows) {
    SCOPED_TRACE(row.why);
    const dom::Document document = Load(row.text);
    try {
      CheckEnvelope(document);
      EXPECT_TRUE(row.valid);
    } catch (const MsgError& error) {
      EXPECT_FALSE(row.valid);
      EXPECT_EQ(error.Number(), kxMsgErrorInvalidMessage);
      EXPECT_EQ(error.Description(),
                "The KXMessage tag is not valid for an KX message.  All required attributes must "
                "exist.");
    }
  }
}

struct CharCase {
  const char* why;
  std::string value;
  bool accepted;
};

TEST(Envelope, CharactersThatNoMessageTypeMayHoldAreRefused) {
  std::vector<CharCase> rows = {
      {"empty", "", true},
      {"a plain name", "Order New-1.2_x", true},
      {"beyond ASCII", "Bestellung \xC3\xA4", true},
      {"DEL is not refused", "a\x7F", true},
      {"other punctuation", "!#$%&'()+,;=@[]^`{}~", true},
      {"a slash inside", "Order/New", false},
      {"a tab", "a\tb", false},
      {"a NUL", std::string("a\0b", 3), false},
      {"31", "a\x1F", false},
  };
  for (const char c : std::string("<>:\"/\\|?*"))
    rows.push_back({"listed", std::string(1, c), false});
  for (const CharCase& row : rows) {
    SCOPED_TRACE(row.why);
    if (row.accepted) {
      EXPECT_NO_THROW(CheckInvalidChars(row.value, "MsgType"));
      continue;
    }
    try {
      CheckInvalidChars(row.value, "SubType");
      FAIL() << "nothing was raised";
    } catch (const MsgError& error) {
      EXPECT_EQ(error.Number(), kxMsgErrorInvalidMsgType);
      EXPECT_EQ(error.Description(), "Invalid characters found in SubType.");
    }
  }
}

TEST(Envelope, UniqueIdentifiersAreLowerCaseGroupsAndDiffer) {
  std::set<std::string> seen;
  for (int i = 0; i < 100; ++i) {
    const std::string id = NewUniqueID(host::ProcessHost());
    ASSERT_EQ(id.size(), 36U);
    for (std::size_t at = 0; at < id.size(); ++at) {
      const bool dash = at == 8 || at == 13 || at == 18 || at == 23;
      const bool digit =
          std::string_view("0123456789abcdef").find(id[at]) != std::string_view::npos;
      EXPECT_TRUE(dash ? id[at] == '-' : digit) << id;
    }
    EXPECT_TRUE(seen.insert(id).second) << id;
  }
}

TEST(Envelope, TheTimeStampHasTwoDigitPartsAndATwentyFourHourClock) {
  host::MemoryHost host;
  host.SetLocalTime({2026, 1, 2, 0, 3, 4, 999});
  EXPECT_EQ(CurrentTimeStamp(host), "2026-01-02 00:03:04");
  host.SetLocalTime({1999, 12, 31, 23, 59, 59, 0});
  EXPECT_EQ(CurrentTimeStamp(host), "1999-12-31 23:59:59");
}

}  // namespace
}  // namespace kx::core
