#include "interaction/bias_facets.h"

#include <set>

namespace tessaly {

std::vector<BiasRequest> BiasRequests(const ModelTables& models, const FieldMap& fields) {
  std::vector<BiasRequest> requests;
  std::set<std::vector<PositionNumber>> met;
  for (const StatementNumber number : models.Statements.all()) {
    std::vector<PositionNumber> marked;
    std::set<FacetNumber> facets;
    for (const PositionNumber position : fields.Positions.all()) {
      if (!models.Statements[number].AsksForBias(position)) continue;
      marked.push_back(position);
      facets.insert(fields.Positions[position].PositionFacet);
    }
    if (!met.insert(std::move(marked)).second || facets.size() < 2) continue;
    requests.push_back({number, {facets.begin(), facets.end()}});
  }
  return requests;
}

}  // namespace tessaly
