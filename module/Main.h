// Main: the module's one public class, the IAppModule the host loads. It keeps
// the session given by Init and, for each item the user opens, makes a new
// form, configures it where the item name says so, and attaches it to the
// host's item. It keeps no list of the forms it made.
#pragma once

#include "module/Host.h"

namespace vantor20 {

class Main final : public corvina20::IAppModule {
 public:
  void Init(SessionPtr& application) override;
  void CreateCardItem(std::string_view itemName, corvina20::CardItem& item) override;
  void CreateReportItem(std::string_view itemName, corvina20::ReportItem& item) override;
  void CreateActiveFormItem(std::string_view itemName,
                            corvina20::ActiveFormItem& item) override;
  void CreateBatchItem(std::string_view itemName, corvina20::BatchItem& item) override;
};

}  // namespace vantor20
