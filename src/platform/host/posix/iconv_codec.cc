// See iconv_codec.h.
#include "platform/host/posix/iconv_codec.h"

#include "platform/host/system_codec.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <cstdint>
#include <iconv.h>
#include <string>

namespace kx::host {
namespace {

// Owns a converter.
class Converter {
 public:
  Converter(const std::string& to, const std::string& from)
      : handle_(iconv_open(to.c_str(), from.c_str())) {}
  ~Converter() {
    if (IsOpen()) iconv_close(handle_);
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  [[nodiscard]] bool IsOpen() const {
    return handle_ != std::bit_cast<iconv_t>(std::intptr_t{-1});  // iconv_open()'s failure
  }

  [[nodiscard]] text::HostConversion Convert(std::string_view input) {
    text::HostConversion result;
    // iconv takes its input by pointer to non-const, but does not write to it.
    char* next = const_cast<char*>(input.data());
    std::size_t left = input.size();
    while (left > 0) {
      const Outcome outcome = Step(&next, &left, result.output);
      if (outcome == Outcome::kGoOn) continue;
      result.badOffset = input.size() - left;
      return result;
    }
    static_cast<void>(Step(nullptr, nullptr, result.output));  // back to the initial state
    return result;
  }

 private:
  enum class Outcome : std::uint8_t { kGoOn, kStopped };

  // Converts until the buffer is full, the input ends, or a sequence cannot be converted.
  Outcome Step(char** next, std::size_t* left, std::string& output) {
    std::array<char, 4096> buffer{};
    char* out = buffer.data();
    std::size_t room = buffer.size();
    const std::size_t result = iconv(handle_, next, left, &out, &room);
    const int error = errno;
    output.append(buffer.data(), buffer.size() - room);
    const bool failed = result == static_cast<std::size_t>(-1);
    return failed && error != E2BIG ? Outcome::kStopped : Outcome::kGoOn;
  }

  iconv_t handle_;
};

// Names reach iconv only in the characters that names have; "//" would switch on its options.
bool IsPlainName(std::string_view name) {
  constexpr std::string_view kOthers = "._:-";
  return !name.empty() && std::all_of(name.begin(), name.end(), [&](char c) {
    const bool letterOrDigit =
        (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    return letterOrDigit || kOthers.find(c) != std::string_view::npos;
  });
}

text::HostConversion ConvertBetween(const std::string& to, const std::string& from,
                                    std::string_view input) {
  Converter converter(to, from);
  if (!converter.IsOpen()) return {{}, 0};
  return converter.Convert(input);
}

}  // namespace

bool IconvCodec::Knows(std::string_view name) const {
  return IsPlainName(name) && Converter("UTF-8", std::string(name)).IsOpen() &&
         Converter(std::string(name), "UTF-8").IsOpen();
}

text::HostConversion IconvCodec::ToUtf8(std::string_view name, std::string_view bytes) const {
  if (!IsPlainName(name)) return {{}, 0};
  return ConvertBetween("UTF-8", std::string(name), bytes);
}

text::HostConversion IconvCodec::FromUtf8(std::string_view name, std::string_view text) const {
  if (!IsPlainName(name)) return {{}, 0};
  return ConvertBetween(std::string(name), "UTF-8", text);
}

const text::HostCodec& SystemCodec() {
  static const IconvCodec codec;
  return codec;
}

}  // namespace kx::host
