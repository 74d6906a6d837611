// Which bias runs a specification asks for.
#pragma once

#include <vector>

#include "state/facets.h"
#include "state/models.h"

namespace tessaly {

/// One bias run.
struct BiasRequest {
  /// The model statement whose `B` marks ask for it.
  StatementNumber Statement{0};
  /// Ascending, at least two.
  std::vector<FacetNumber> BiasFacets;
};

/// The runs of the statements that mark positions of at least two facets, without those that mark the same positions as
/// an earlier statement.
std::vector<BiasRequest> BiasRequests(const ModelTables& models, const FieldMap& fields);

}  // namespace tessaly
