// The option panels of report forms (PrintOption) and active forms
// (ActiveFormOption): the tool bar a host shows above such a form. A report
// panel asks its form for the report file, the selection and the captions,
// and hands them to the host's report engine; an active form's panel raises
// ToolClick with the tool's key.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "corvina20/Controls.h"

namespace corvina20 {

// What a report form asks the report engine to print.
struct ReportRequest {
  std::string reportName;       // file under data/reports
  std::string selection;        // selection formula ("{STDAnagrafiche.Cliente} = 1 AND …")
  std::map<std::string, std::string> values;    // named values (captions, titles)
  std::vector<std::string> captions;            // selection captions shown in the header
};

class PrintOption : public Control {
 public:
  explicit PrintOption(std::string name) : Control(std::move(name), ControlKind::PrintPanel, "") {}

  // Runs the tool `tool` ("ID_Print", "ID_Preview"): ActionBefore (which may
  // cancel), FetchReportName, SetReportFeatures. Returns the request, or
  // nullopt-like empty reportName when cancelled.
  ReportRequest Run(const std::string& tool);

  std::function<void(const std::string& tool, bool& cancel)> ActionBefore;
  std::function<void(std::string& reportName)> FetchReportName;
  std::function<void(ReportRequest& request)> SetReportFeatures;
};

class ActiveFormOption : public Control {
 public:
  struct Tool {
    std::string key;
    std::string caption;  // "-" for a separator
    bool enabled = true;
  };
  explicit ActiveFormOption(std::string name) : Control(std::move(name), ControlKind::ActiveFormPanel, "") {}
  void AddTool(std::string key, std::string caption) { tools_.push_back({std::move(key), std::move(caption)}); }
  void AddSeparator() { tools_.push_back({"", "-"}); }
  void SetToolEnabled(const std::string& key, bool enabled);
  const std::vector<Tool>& Tools() const { return tools_; }
  // Raises ToolClick for `key`: a listed enabled tool, or one of the host's
  // own commands ("ID_Refresh"). kErrHost for anything else.
  void Click(const std::string& key);

  std::function<void(const std::string& key)> ToolClick;

 private:
  std::vector<Tool> tools_;
};

}  // namespace corvina20
