// Report and active-form option panels.
#include "corvina20/Panels.h"

#include "corvina20/Error.h"

namespace corvina20 {

ReportRequest PrintOption::Run(const std::string& tool) {
  ReportRequest request;
  bool cancel = false;
  if (ActionBefore) ActionBefore(tool, cancel);
  if (cancel) return request;
  if (FetchReportName) FetchReportName(request.reportName);
  if (SetReportFeatures) SetReportFeatures(request);
  return request;
}

void ActiveFormOption::SetToolEnabled(const std::string& key, bool enabled) {
  for (auto& tool : tools_)
    if (tool.key == key) tool.enabled = enabled;
}

void ActiveFormOption::Click(const std::string& key) {
  bool known = key == "ID_Refresh";
  for (const auto& tool : tools_)
    if (!tool.key.empty() && tool.key == key) {
      if (!tool.enabled)
        throw Error(kErrHost, "Corvina20.Panels", "Comando non disponibile: " + key);
      known = true;
    }
  if (!known) throw Error(kErrHost, "Corvina20.Panels", "Comando sconosciuto: " + key);
  if (ToolClick) ToolClick(key);
}

}  // namespace corvina20
