#include "graphs/graphs.h"

#include "graphs/empirical_interval.h"
#include "graphs/graph_series.h"
#include "graphs/user_unit.h"
#include "model/category_measures.h"

namespace tessaly {

Graphs::Graphs(const Analysis& analysis, ResponseKernel& kernel, const EmpiricalData* data)
    : kernel_(kernel),
      data_(data),
      unit_(UserUnit(analysis.Settings.Uscale)),
      scales_(PrepareGraphs(analysis)),
      range_(data == nullptr ? EmpiricalRange() : data->Range()) {
  const CurveRange curves = FindCurveRange(analysis.Settings.Uscale, analysis.Models, analysis.Scales, kernel);
  grid_ = FitXAxis(curves, range_, unit_);
}

CurvePlot Graphs::Plot(const CurveRequest& request) {
  CurvePlot plot;
  plot.Kind = request.Kind;
  plot.X = grid_.Axis;
  const EmpiricalInterval interval = request.Interval ? IntervalOfWidth(*request.Interval, range_)
                                                      : IntervalAtPosition(request.IntervalPosition, range_);
  plot.EmpiricalInterval = interval.Width;
  plot.IntervalPosition = interval.Position;
  if (scales_.empty()) {
    plot.Y = FitYAxis(plot.Kind, {}, 1);
    return plot;
  }
  plot.Scale = request.Scale < 1 ? ScaleCount() : request.Scale > ScaleCount() ? 1 : request.Scale;
  const GraphScale& scale = scales_[static_cast<std::size_t>(plot.Scale) - 1];
  plot.Title = scale.Title;
  const CurveTable& table = ComputeCurves(plot.Scale);
  plot.Y = FitYAxis(
      plot.Kind, scale,
      plot.Kind == GraphKind::ItemInformation ? table.LargestInformation() : table.LargestCategoryInformation());
  plot.Curves = BuildSeries({scale, plot.Scale, plot.X, plot.Y, table, data_, interval.Width, unit_}, request);
  return plot;
}

const CurveTable& Graphs::ComputeCurves(std::int32_t place) {
  if (place_ != place) {
    table_.emplace(scales_[static_cast<std::size_t>(place) - 1], grid_, unit_, kernel_);
    place_ = place;
  }
  return *table_;
}

}  // namespace tessaly
