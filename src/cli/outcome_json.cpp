#include "cli/outcome_json.h"

#include <cstddef>
#include <nlohmann/json.hpp>
#include <optional>
#include <vector>

namespace zento {
namespace {

using Json = nlohmann::ordered_json;

Json OrNull(const std::optional<double>& value) {
  return value ? Json(*value) : Json();
}

Json QuantitiesOf(const AnalysisResult& outcome) {
  Json all = Json::object();
  for (const Quantity& quantity : outcome.quantities) {
    all[quantity.name] = {
        {"value", quantity.value}, {"unit", quantity.unit}, {"error", OrNull(quantity.error)}};
  }
  return all;
}

Json ColumnsOf(const AnalysisResult& outcome) {
  Json columns = Json::array();
  for (const AnalysisResult::Column& column : outcome.columns) {
    columns.push_back({{"name", column.name}, {"unit", column.unit}});
  }
  return columns;
}

Json RowsOf(const AnalysisResult& outcome) {
  Json rows = Json::array();
  if (outcome.columns.empty()) return rows;
  for (std::size_t row = 0; row < outcome.columns.front().values.size(); ++row) {
    Json cells = Json::array();
    for (const AnalysisResult::Column& column : outcome.columns)
      cells.push_back(column.values.at(row));
    rows.push_back(std::move(cells));
  }
  return rows;
}

Json FitOf(const AnalysisResult& outcome) {
  if (!outcome.fit) return {};
  const LineQuality& fit = *outcome.fit;
  return {{"points", fit.points},
          {"r_squared", fit.r_squared},
          {"slope", fit.line.slope},
          {"slope_error", OrNull(fit.slope_error)},
          {"intercept", fit.through_origin ? Json() : Json(fit.line.intercept)},
          {"intercept_error", OrNull(fit.intercept_error)}};
}

}  // namespace

std::string OutcomeJson(std::string_view command, std::string_view file,
                        const AnalysisResult& outcome) {
  Json json;
  json["command"] = command;
  json["file"] = file;
  json["refusal"] = outcome.refusal.empty() ? Json() : Json(outcome.refusal);
  json["quantities"] = QuantitiesOf(outcome);
  json["columns"] = ColumnsOf(outcome);
  json["rows"] = RowsOf(outcome);
  json["fit"] = FitOf(outcome);
  return json.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace zento
