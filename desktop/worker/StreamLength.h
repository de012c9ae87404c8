#pragma once

#include "desktop/worker/AvInput.h"

namespace desktop {

/// How long @p input lasts, in units of AV_TIME_BASE; 0 when that is not to be found soon. What does not tell it, as what a
/// recorder leaves that was interrupted, is measured by the times in its last part or by its frames. Nothing else can be
/// read afterwards.
std::int64_t lengthOf(AvInput& input);

} // namespace desktop
