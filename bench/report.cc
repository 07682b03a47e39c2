// See report.h.
#include "report.h"

#include <array>
#include <cstdio>
#include <ostream>

namespace kx::bench {

namespace {

std::string Format(const char* format, double value) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), format, value);
  return text.data();
}

std::string Figure(double value, Unit unit) {
  if (unit == Unit::kBytes) return Format("%.0f B", value);
  if (value < 1e3) return Format("%.1f ns", value);
  if (value < 1e6) return Format("%.2f us", value / 1e3);
  return Format("%.3f ms", value / 1e6);
}

std::string Padded(const std::string& text, std::size_t width) {
  return text.size() < width ? text + std::string(width - text.size(), ' ') : text + ' ';
}

std::string Aligned(const std::string& text, std::size_t width) {
  return text.size() < width ? std::string(width - text.size(), ' ') + text : text;
}

void PrintLine(std::ostream& out, const std::string& name, const std::string& input,
               const std::string& ours, const std::string& peer, const std::string& peers,
               const std::string& ratio) {
  out << Padded(name, 12) << Padded(input, 7) << Aligned(ours, 14) << "   " << Padded(peer, 10)
      << Aligned(peers, 14) << Aligned(ratio, 9) << std::endl;
}

}  // namespace

void PrintHeading(std::ostream& out) {
  PrintLine(out, "row", "input", "ours", "peer", "peer's", "ratio");
}

void PrintResult(std::ostream& out, const Result& result) {
  PrintLine(out, result.name, result.input, Figure(result.ours, result.unit), result.peer,
            Figure(result.peers, result.unit), Format("%.3f", result.Ratio()));
}

void WriteJson(std::ostream& out, const std::vector<Result>& results) {
  out << "[";
  const char* separator = "\n";
  for (const Result& result : results) {
    out << separator << R"(  {"name": ")" << result.name << R"(", "input": ")" << result.input
        << R"(", "ours_ns": )" << Format("%.1f", result.ours) << R"(, "peer": ")" << result.peer
        << R"(", "peer_ns": )" << Format("%.1f", result.peers) << R"(, "ratio": )"
        << Format("%.4f", result.Ratio()) << "}";
    separator = ",\n";
  }
  out << "\n]\n";
}

}  // namespace kx::bench
