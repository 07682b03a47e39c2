// What one run of kxmsg edit may do. A short script can ask for very much: a command works on all
// that its pattern finds, also on what the commands before it added.
#pragma once

#include <cstddef>

namespace kxmsg {

inline constexpr std::size_t kMostElements = 1'000'000;  ///< unless --max-elements says otherwise

/// See above. Each member raises the run-time error 7, with a text that names the option, for more
/// than may be; nothing is taken then.
class EditBudget {
 public:
  /// `elements`: how many a command may find, and all commands together may add. `valueBytes`: how
  /// long the values that all commands give may be, each counted for every element that gets it.
  EditBudget(std::size_t elements, std::size_t valueBytes) noexcept
      : elements_(elements), elementsLeft_(elements), bytes_(valueBytes), bytesLeft_(valueBytes) {}

  /// How many elements a command may find.
  [[nodiscard]] std::size_t MostFound() const noexcept { return elements_; }
  /// So many elements are added.
  void TakeElements(std::size_t count);
  /// A value of so many bytes is given to so many elements.
  void TakeValues(std::size_t bytes, std::size_t count);

 private:
  std::size_t elements_;
  std::size_t elementsLeft_;
  std::size_t bytes_;
  std::size_t bytesLeft_;
};

}  // namespace kxmsg
