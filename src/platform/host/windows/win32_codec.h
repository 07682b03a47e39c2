// Encodings through the code pages of Windows.
#pragma once

#include "platform/text/host_codec.h"

namespace kx::host {

/// See HostCodec. Knows the code pages that are installed, by their usual names and as "cp" or
/// "ibm" and the number.
class Win32Codec final : public text::HostCodec {
 public:
  [[nodiscard]] bool Knows(std::string_view name) const override;
  [[nodiscard]] text::HostConversion ToUtf8(std::string_view name,
                                            std::string_view bytes) const override;
  [[nodiscard]] text::HostConversion FromUtf8(std::string_view name,
                                              std::string_view text) const override;
};

}  // namespace kx::host
