#include "requests/standard_errors.h"

#include <cmath>

namespace tessaly {

StandardErrors::StandardErrors(const ElementTable& elements, bool real) : analysedReal_(real) {
  analysed_.assign(elements.ElementCount(), 0);
  for (const ElementIndex element : elements.Fit.all()) analysed_[element] = elements.Fit[element].StandardError;
}

void StandardErrors::Show(bool real, ElementTable& elements) const {
  for (const ElementIndex element : elements.Fit.all()) {
    ElementFit& fit = elements.Fit[element];
    fit.StandardError = analysed_[element];
    if (real == analysedReal_ || !(fit.InfitMeanSquare > 1)) continue;
    const float enlargement = std::sqrt(fit.InfitMeanSquare);
    fit.StandardError = real ? fit.StandardError * enlargement : fit.StandardError / enlargement;
  }
}

}  // namespace tessaly
