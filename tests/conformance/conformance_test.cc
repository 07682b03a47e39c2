// Every document of the W3C suite: the verdict that its list states, an error with code, reason and
// place for each refusal, and the canonical form where one is stated. What differs must stand in
// excuses.txt with a reason that fits, and nothing may stand there that does not differ.
#include "conformance/canonical_form.h"
#include "conformance/excuses.h"
#include "conformance/suite_list.h"
#include "platform/dom/parse_error.h"
#include "platform/dom/parser.h"
#include "platform/host/system_codec.h"
#include "support/documents.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kx::test {
namespace {

// The suite of 2013 has this many tests; a smaller count means that a part of it is missing.
constexpr std::size_t kTests = 2585;
// Of the 394 documents with a stated canonical form, those whose form stands on no external entity.
constexpr int kLeastForms = 328;

struct Outcome {
  bool accepted = false;
  dom::ParseError error;
  std::string form;   // of an accepted document
  std::string first;  // the same without notations
};

Outcome Parse(const std::string& bytes) {
  dom::ParseOptions options;
  options.attributeValues = dom::AttributeValues::kNormalised;
  options.undeclaredEntities = dom::UndeclaredEntities::kSkipWhereXmlAllows;
  options.codec = &host::SystemCodec();
  dom::DocumentData document(nullptr);
  Outcome outcome;
  outcome.accepted = ParseBytes(document, bytes, options, outcome.error);
  if (outcome.accepted) {
    outcome.form = CanonicalForm(document, Notations::kDeclare);
    outcome.first = CanonicalForm(document, Notations::kLeaveOut);
  }
  return outcome;
}

std::uint32_t CodeOf(const Outcome& outcome) {
  return static_cast<std::uint32_t>(outcome.error.code);
}

// How the outcome differs from what the list states; nothing when it does not.
std::optional<Excuse> DifferenceOf(const SuiteTest& test, const Outcome& outcome) {
  const bool shouldAccept = test.type == SuiteType::kValid || test.type == SuiteType::kInvalid;
  if (test.type == SuiteType::kError) return std::nullopt;  // processors may do either
  if (shouldAccept && !outcome.accepted) {
    return Excuse{ExcusedResult::kRefused, CodeOf(outcome), ""};
  }
  if (!shouldAccept) {
    if (!outcome.accepted) return std::nullopt;
    return Excuse{ExcusedResult::kAccepted, 0, ""};
  }
  if (test.output.empty()) return std::nullopt;
  const std::string stated = ReadFile(test.output);
  if (outcome.form == stated || outcome.first == stated) return std::nullopt;
  return Excuse{ExcusedResult::kOutput, 0, ""};
}

std::string Describe(const std::optional<Excuse>& difference) {
  if (!difference) return "as the suite states it";
  switch (difference->result) {
    case ExcusedResult::kAccepted:
      return "accepted -";
    case ExcusedResult::kOutput:
      return "output -";
    case ExcusedResult::kRefused:
      break;
  }
  char text[32];
  std::snprintf(text, sizeof text, "refused %08X", static_cast<unsigned>(difference->code));
  return text;
}

struct Counts {
  int accepted = 0;
  int refused = 0;
  int eitherWay = 0;
  int forms = 0;
  int sameForms = 0;
  std::map<std::string, int> excused;
};

std::vector<SuiteTest> Suite() { return ReadSuiteList(SuiteFolder()); }
std::map<std::string, Excuse> Excuses() {
  return ReadExcuses(std::filesystem::path(KX_SOURCE_DIR) / "tests/conformance/excuses.txt");
}

void Count(const SuiteTest& test, const Outcome& outcome, bool differs, Counts& counts) {
  if (test.type == SuiteType::kError) {
    ++counts.eitherWay;
    return;
  }
  ++(outcome.accepted ? counts.accepted : counts.refused);
  if (outcome.accepted && !test.output.empty()) {
    ++counts.forms;
    if (!differs) ++counts.sameForms;
  }
}

void Print(const Counts& counts, std::size_t tests) {
  std::printf(
      "conformance: %zu tests: %d accepted, %d refused, %d where either is right; "
      "%d canonical forms compared, %d equal\n",
      tests, counts.accepted, counts.refused, counts.eitherWay, counts.forms, counts.sameForms);
  for (const auto& [reason, count] : counts.excused) {
    std::printf("conformance: %d excused: %s\n", count, reason.c_str());
  }
}

TEST(Conformance, EveryDocumentGivesWhatTheSuiteStates) {
  KX_NEED_FOLDER(SuiteFolder());
  const std::vector<SuiteTest> tests = Suite();
  const std::map<std::string, Excuse> excuses = Excuses();
  Counts counts;
  for (const SuiteTest& test : tests) {
    const std::string bytes = ReadFile(test.document);
    const Outcome outcome = Parse(bytes);
    const std::optional<Excuse> difference = DifferenceOf(test, outcome);
    Count(test, outcome, difference.has_value(), counts);
    const auto excuse = excuses.find(test.id);
    std::optional<Excuse> expected;
    if (excuse != excuses.end()) expected = excuse->second;
    EXPECT_EQ(Describe(difference), Describe(expected))
        << test.id << " " << test.document << ": " << outcome.error.reason << outcome.form;
    if (!expected) continue;
    ++counts.excused[expected->reason];
    EXPECT_TRUE(ExcuseFits(*expected, test, bytes))
        << test.id << " is not a case of \"" << expected->reason << '"';
  }
  Print(counts, tests.size());
  EXPECT_GE(tests.size(), kTests) << "a part of the suite is missing";
  EXPECT_GE(counts.sameForms, kLeastForms);
}

TEST(Conformance, EveryRefusalHasCodeReasonAndPlace) {
  KX_NEED_FOLDER(SuiteFolder());
  int refusals = 0;
  for (const SuiteTest& test : Suite()) {
    const Outcome outcome = Parse(ReadFile(test.document));
    if (outcome.accepted) continue;
    SCOPED_TRACE(test.id + " " + test.document.string());
    const dom::ParseError& error = outcome.error;
    ++refusals;
    EXPECT_NE(error.code, 0);
    EXPECT_GT(error.reason.size(), 2U);
    EXPECT_TRUE(error.reason.ends_with("\r\n")) << error.reason;
    EXPECT_EQ(error.reason.find('%'), std::string::npos) << "an argument is not filled in";
    if (CodeOf(outcome) == static_cast<std::uint32_t>(dom::ParseCode::kMissingRoot)) {
      EXPECT_EQ(error.line, 0);
      continue;
    }
    EXPECT_GE(error.line, 1);
    EXPECT_GE(error.linePos, 1);
    EXPECT_GE(error.filePos, error.linePos - 1);
    EXPECT_LE(static_cast<std::size_t>(error.linePos), error.srcText.size() + 2);
  }
  EXPECT_GT(refusals, 1000);
}

TEST(Conformance, EveryExcuseNamesATestOfTheSuite) {
  KX_NEED_FOLDER(SuiteFolder());
  std::map<std::string, Excuse> excuses = Excuses();
  for (const SuiteTest& test : Suite()) excuses.erase(test.id);
  for (const auto& [id, excuse] : excuses) ADD_FAILURE() << id << " is no test of the suite";
}

}  // namespace
}  // namespace kx::test
