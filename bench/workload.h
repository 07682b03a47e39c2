// The texts that are measured: orders inside their envelope, of one schema (schema/order.xdr, and
// order.xsd with envelope.xsd for the peers). The same call always gives the same text.
//
// An order below 4,000 bytes has short items; a longer one has parties, terms and totals too, and
// items with optional parts, some of them large. Of the items exactly one, in the middle, has the
// number X42.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kx::bench {

/// An order whose text is about `bytes` long. `seed`: orders of different seeds differ.
std::string MakeOrder(std::size_t bytes, std::uint64_t seed);
/// An order of `items` small items: one element with that many children.
std::string MakeWideOrder(std::size_t items);
/// An order in which elements are nested `levels` deep.
std::string MakeDeepOrder(std::size_t levels);

/// A message for editing (schema/edit.xdr): `pages` children of the element that is edited, and
/// `stored` ones in another branch. Each is an element with one child.
std::string MakeLibrary(std::size_t pages, std::size_t stored);
inline constexpr std::size_t kSmall = 2;  ///< a dozen elements in all
inline constexpr std::size_t kLarge = 10'000;

/// The texts of one input, all of the same kind and size. Programs go through them in turn, so that
/// no branch predictor learns a short text by heart.
struct Workload {
  std::string name;  ///< 1k, 10k, 100k, 1m, 10m, wide, wide-1k, deep, beside or among
  std::vector<std::string> texts;
};

/// Raises: std::invalid_argument for any other name.
Workload MakeWorkload(std::string_view name);

}  // namespace kx::bench
