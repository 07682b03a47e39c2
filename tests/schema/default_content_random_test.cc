// The construction of minimum content beside a naive one, over schemas made at random.
#include "naive_content.h"
#include "schema/default_content.h"
#include "schema_texts.h"

#include <gtest/gtest.h>
#include <map>
#include <random>
#include <string>

namespace kx::schema {
namespace {

/// Makes small schemas: few names, so that they meet; types with any mixture of declarations.
class SchemaMaker {
 public:
  explicit SchemaMaker(std::uint32_t seed) : random_(seed) {}

  [[nodiscard]] std::string Make() {
    std::string declarations;
    const int types = 1 + Below(6);
    for (int i = Below(3); i > 0; --i) declarations += AttributeType();
    for (int i = 0; i < types; ++i) {
      declarations += "<ElementType name='" + std::string(1, static_cast<char>('a' + i)) + "'>";
      for (int part = Below(5); part > 0; --part) declarations += Part();
      declarations += "</ElementType>";
    }
    return declarations;
  }

 private:
  int Below(int bound) { return static_cast<int>(random_() % static_cast<std::uint32_t>(bound)); }
  std::string Pick(std::initializer_list<const char*> texts) {
    return texts.begin()[Below(static_cast<int>(texts.size()))];
  }

  std::string Part() {
    switch (Below(6)) {
      case 0:
        return "<attribute type='" + AttributeName() + "'" + Required() + Default() + "/>";
      case 1:
        return AttributeType();
      case 2:
        return "<group>" + Element() + Pick({"", "<group><element type='a'/></group>"}) +
               Element() + "</group>";
      default:
        return Element();
    }
  }
  std::string Element() {
    return "<element" +
           Pick({" type='a'", " type='b'", " type='C'", " type='d'", " type='e'", " type='f'",
                 " type='none'", " type=''", "", " type=\"'\""}) +
           Pick({"", " minOccurs='0'", " minOccurs='0'", " minOccurs='0'", " minOccurs='1'",
                 " minOccurs=''", " minOccurs='2' maxOccurs='*'"}) +
           "/>";
  }
  std::string AttributeType() {
    return "<AttributeType name='" + AttributeName() + "'" + Required() + Default() +
           Pick({"", "", " dt:type='enumeration' dt:values='x y'",
                 " dt:type='enumeration' dt:values=' z'", " dt:type='int'"}) +
           "/>";
  }
  std::string AttributeName() { return Pick({"k", "k", "j", "K"}); }
  std::string Required() { return Pick({"", "", " required='yes'", " required='no'"}); }
  std::string Default() { return Pick({"", "", " default='1'", " default=''", " default='2'"}); }

  std::mt19937 random_;
};

constexpr std::uint32_t kSchemas = 3000;

TEST(BuildDefaultContent, GivesWhatTheNaiveConstructionGives) {
  const ContentBuild build{{14, 12, 100'000}, nullptr};
  std::map<std::int64_t, int> outcomes;
  for (std::uint32_t seed = 0; seed < kSchemas; ++seed) {
    const std::string declarations = SchemaMaker(seed).Make();
    SCOPED_TRACE(declarations);
    const dom::Document schema = SchemaDocument(declarations);
    const ElementTypeIndex index = IndexOf(schema);
    for (std::int32_t i = 1; i <= index.Count(); ++i) {
      const dom::Document document = dom::NewDomDocument();
      const dom::Node parent = document.CreateElement("parent");
      std::string xml;
      const Failure failure = FailureOf([&] {
        xml = BuildDefaultContent(document, parent, index.At(i), index, "", build).Xml();
      });
      const NaiveContent expected = BuildNaively(schema, index.At(i), 12, 14);
      ASSERT_EQ(failure.number, expected.error);
      ASSERT_EQ(xml, expected.xml);
      ++outcomes[failure.number];
    }
  }
  for (const std::int64_t number : {std::int64_t{0}, std::int64_t{5}, std::int64_t{7},
                                    std::int64_t{28}, std::int64_t{0x800409A6}}) {
    EXPECT_GT(outcomes[number], 20) << "schemas that end so must have been made: " << number;
  }
}

}  // namespace
}  // namespace kx::schema
