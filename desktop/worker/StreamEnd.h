#pragma once

#include "desktop/worker/AvInput.h"

namespace desktop {

/// How long @p input lasts by the times in its last part, for what does not tell its length, as a recorder leaves it that
/// was interrupted; in units of AV_TIME_BASE, 0 when that is not to be found soon. Nothing else can be read afterwards.
std::int64_t lengthByItsEnd(AvInput& input);

} // namespace desktop
