// Runs of operations: done, and, when the two sides do not agree, made as short as is cheap.
#pragma once

#include "model/duel.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace kx::model {

/// What to tell of a run that did not end well: the schemas, the operations, both outcomes.
struct Finding {
  std::vector<Operation> operations;
  std::vector<std::string> log;
  Mismatch mismatch;
};

/// Does the operations; nothing when the two sides agree all along. `tallies` may be null.
/// Raises: UnsuitableSchema.
[[nodiscard]] std::optional<Finding> Run(const Start& start,
                                         const std::vector<Operation>& operations,
                                         Duel::Tallies* tallies = nullptr);
/// A shorter run that does not end well either.
[[nodiscard]] Finding Shrunk(const Start& start, Finding finding);
[[nodiscard]] std::string Report(const Start& start, const Finding& finding);

/// A schema of a file that holds `schema`, for messages of `root`.
[[nodiscard]] SchemaOfDuel Named(std::string file, Declaration schema, std::string root);
/// Two schemas made at random of which messages can be made.
[[nodiscard]] Start RandomStart(Chance& chance);
[[nodiscard]] std::vector<Operation> RandomOperations(Chance& chance, std::size_t count);

}  // namespace kx::model
