#include "spec/load_labels.h"

#include <new>

#include "spec/anchor_step.h"
#include "spec/describe_elements.h"
#include "spec/list_elements.h"
#include "support/number_text.h"

namespace tessaly {

void LoadLabels(const std::vector<StoredLine>& block, Analysis& analysis, Console& console) {
  const InputLine lastRead = analysis.Input;
  const std::int32_t nullElement = analysis.Settings.NullElement;
  try {
    ListElements(block, analysis.Facets, analysis.Elements, nullElement, analysis.Input, console);
    AnchorElements(DescribeElements(block, analysis.Facets, analysis.Elements, nullElement, analysis.Input, console),
                   analysis, console);
  } catch (const std::bad_alloc&) {
    throw Halt{FailureCode::TooManyElements, GeneralText(analysis.Elements.ElementCount())};
  }
  analysis.Input = lastRead;
}

}  // namespace tessaly
