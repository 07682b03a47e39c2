// Verdicts and trees of our parser beside Expat's and libxml2's: over the W3C suite, the corpus and
// thousands of generated documents, sound and damaged. Every difference must be explained by the
// one table in explained.cc.
#include "conformance/suite_list.h"
#include "differential/document_generator.h"
#include "differential/explained.h"
#include "platform/dom/parse_error.h"
#include "support/documents.h"

#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <string>

namespace kx::test {
namespace {

constexpr std::uint64_t kSoundDocuments = 2000;
constexpr std::uint64_t kDamagedDocuments = 6000;

// How much is generated: KX_LARGE=1 asks for ten times as much.
std::uint64_t Scale() {
  const char* large = std::getenv("KX_LARGE");
  return large != nullptr && std::string(large) == "1" ? 10 : 1;
}

struct Tally {
  int documents = 0;
  int accepted = 0;
  std::map<std::string, int> explained;

  void Print(const char* what) const {
    std::printf("differential: %s: %d documents, %d accepted by ours\n", what, documents, accepted);
    for (const auto& [kind, count] : explained) {
      std::printf("differential: %s: %d explained: %s\n", what, count, kind.c_str());
    }
  }
};

// A tree whose attribute values have no white space but single blanks between.
std::string WithoutSpaceInValues(const std::string& tree) {
  std::string out;
  std::istringstream lines(tree);
  for (std::string line; std::getline(lines, line); out += '\n') {
    if (line.front() != 'A') {
      out += line;
      continue;
    }
    for (std::size_t at = line.find("\\n"); at != std::string::npos; at = line.find("\\n")) {
      line.replace(at, 2, " ");
    }
    for (const char c : line) {
      const bool blank = c == ' ' || c == '\t' || c == '\r';
      const bool needless = blank && (out.back() == ' ' || out.back() == '=');
      if (!needless) out += blank ? ' ' : c;
    }
    while (out.back() == ' ') out.pop_back();
  }
  return out;
}

// A namespace name that holds white space is another one once it is normalised.
bool HasSpaceInNamespaces(const std::string& tree) {
  std::istringstream lines(tree);
  for (std::string line; std::getline(lines, line);) {
    const bool space = line.find_first_of(" \t\r\\", 2) != std::string::npos;
    if (line.front() == 'N' && space) return true;
  }
  return false;
}

// What callers of the DOM get is the same, but for white space in attribute values.
void CompareModes(const std::string& name, const std::string& bytes, const Reading& strict) {
  const Reading plain = ReadAsWritten(bytes);
  const bool refusesSpace = plain.code == static_cast<long>(dom::ParseCode::kBadXmlSpace);
  if ((refusesSpace && strict.accepted) || HasSpaceInNamespaces(plain.tree)) return;
  EXPECT_EQ(plain.accepted, strict.accepted)
      << name << ": as written: " << plain.message << ", normalised: " << strict.message << "\n"
      << bytes;
  EXPECT_EQ(WithoutSpaceInValues(plain.tree), WithoutSpaceInValues(strict.tree)) << name;
}

void Compare(const std::string& name, const std::string& bytes, Tally& tally) {
  const Reading ours = ReadWithOurs(bytes);
  CompareModes(name, bytes, ours);
  ++tally.documents;
  tally.accepted += ours.accepted ? 1 : 0;
  for (const Peer peer : {Peer::kExpat, Peer::kLibxml}) {
    const Reading theirs = peer == Peer::kExpat ? ReadWithExpat(bytes) : ReadWithLibxml(bytes);
    const Comparison comparison{bytes, &ours, peer, &theirs};
    if (!Differs(comparison)) continue;
    if (const Explanation* explanation = Explain(comparison)) {
      ++tally.explained[explanation->kind];
    } else {
      ADD_FAILURE() << name << ": " << DescribeDifference(comparison) << "\n"
                    << testing::PrintToString(bytes.substr(0, 2000));
    }
  }
}

TEST(Differential, TheSuiteReadsAsExpatAndLibxmlReadIt) {
  KX_NEED_FOLDER(SuiteFolder());
  Tally tally;
  for (const std::filesystem::path& file : FilesBelow(SuiteFolder())) {
    if (file.extension() == ".xml") Compare(file.string(), ReadFile(file), tally);
  }
  tally.Print("suite");
  EXPECT_GT(tally.documents, 3000);
}

TEST(Differential, TheCorpusReadsAsExpatAndLibxmlReadIt) {
  const std::filesystem::path folder = SharedFolder() / "corpus";
  KX_NEED_FOLDER(folder);
  Tally tally;
  for (const std::filesystem::path& file : FilesBelow(folder)) {
    if (file.extension() != ".md") Compare(file.string(), ReadFile(file), tally);
  }
  tally.Print("corpus");
  EXPECT_GT(tally.documents, 100);
}

TEST(Differential, GeneratedDocumentsAreAcceptedAndReadAlike) {
  Tally tally;
  for (std::uint64_t seed = 1; seed <= kSoundDocuments * Scale(); ++seed) {
    const std::string bytes = GenerateDocument(seed, Damage::kNone);
    const std::string name = "sound document " + std::to_string(seed);
    Compare(name, bytes, tally);
    const Reading ours = ReadWithOurs(bytes);
    EXPECT_TRUE(ours.accepted) << name << ": " << ours.message << "\n" << bytes;
  }
  tally.Print("sound");
}

TEST(Differential, DamagedDocumentsReadAlike) {
  Tally tally;
  for (std::uint64_t seed = 1; seed <= kDamagedDocuments * Scale(); ++seed) {
    const std::string bytes = GenerateDocument(seed, Damage::kSome);
    Compare("damaged document " + std::to_string(seed), bytes, tally);
  }
  tally.Print("damaged");
  EXPECT_GT(tally.accepted, tally.documents / 20) << "damage that is always found proves little";
  EXPECT_LT(tally.accepted, tally.documents / 2) << "damage that is seldom found proves little";
}

}  // namespace
}  // namespace kx::test
