// Encodings through iconv.
#pragma once

#include "platform/text/host_codec.h"

namespace kx::host {

/// See HostCodec. Each call opens a converter of its own, so no state is shared between threads.
class IconvCodec final : public text::HostCodec {
 public:
  [[nodiscard]] bool Knows(std::string_view name) const override;
  [[nodiscard]] text::HostConversion ToUtf8(std::string_view name,
                                            std::string_view bytes) const override;
  [[nodiscard]] text::HostConversion FromUtf8(std::string_view name,
                                              std::string_view text) const override;
};

}  // namespace kx::host
