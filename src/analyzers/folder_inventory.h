// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include "core/accumulators.h"
#include "lumenscribe/inspection_control.h"
#include "platform/opened_item.h"

namespace lumenscribe {

/// The inventory of a dropped folder or package: walks everything beneath it (packages inside
/// count as one folder and are not entered; symbolic links are entries, never followed) and
/// publishes the counts as "Folder Contents" or "Package Contents", "Contents Preview" and
/// "Safe Inspection", with the "Container ..." raw entries and the container findings. No
/// file is opened. A folder that cannot be listed at all adds nothing. A stop requested
/// through `control` ends the walk; what was counted until then is published.
void inventoryFolder(const platform::OpenedItem& item, Accumulators& accumulators,
                     const InspectionControl& control = {});

}  // namespace lumenscribe
