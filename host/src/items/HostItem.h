// The host's item object: what the module attaches a form to. One class
// serves the four item kinds; it records the name the form came under.
#pragma once

#include <string>

#include "corvina20/Items.h"

namespace corvina20 {

class HostItem final : public CardItem, public ReportItem, public ActiveFormItem, public BatchItem {
 public:
  void AttachItemForm(std::string_view itemName, FormPtr& form) override {
    name_ = std::string(itemName);
    form_ = form;
    ++attachCount_;
  }
  const FormPtr& GetForm() const { return form_; }
  const std::string& AttachedName() const { return name_; }
  // How many times the module called AttachItemForm (0: the item was left alone).
  int AttachCount() const { return attachCount_; }

 private:
  FormPtr form_;
  std::string name_;
  int attachCount_ = 0;
};

}  // namespace corvina20
