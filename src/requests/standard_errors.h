// The two forms of the standard errors of a finished analysis.
#pragma once

#include "state/elements.h"

namespace tessaly {

/// Turns the standard errors of all elements from one form into the other: real ones are enlarged by the square root of
/// an infit mean-square above 1 (Wright & Masters 1982). Always works from those of the analysis, so that changes to
/// and fro end where they began.
class StandardErrors {
 public:
  /// `real`: the form that the analysis has computed.
  StandardErrors(const ElementTable& elements, bool real);

  void Show(bool real, ElementTable& elements) const;

 private:
  /// Logit.
  Table<ElementIndex, float> analysed_;
  bool analysedReal_;
};

}  // namespace tessaly
