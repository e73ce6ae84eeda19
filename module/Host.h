// The host contract as the module sees it: every framework header the
// module's procedures and forms use. The module includes the host through
// this header only; nothing here is the host's implementation.
#pragma once

#include "corvina20/Card.h"
#include "corvina20/Connection.h"
#include "corvina20/Controls.h"
#include "corvina20/DataObject.h"
#include "corvina20/Error.h"
#include "corvina20/FiscalChecks.h"
#include "corvina20/FullText.h"
#include "corvina20/Form.h"
#include "corvina20/HostParameters.h"
#include "corvina20/Items.h"
#include "corvina20/MervoStatus.h"
#include "corvina20/Panels.h"
#include "corvina20/QueryBuilder.h"
#include "corvina20/Recordset.h"
#include "corvina20/Session.h"
#include "corvina20/Variant.h"
#include "corvina20/VxBody.h"
#include "corvina20/VxCode.h"

namespace vantor20 {
using corvina20::ConnectionPtr;
using corvina20::Error;
using corvina20::FormPtr;
using corvina20::RecordsetPtr;
using corvina20::SessionPtr;
using corvina20::Variant;
}  // namespace vantor20
