#include "storage/RequestRecords.h"

namespace tvfirmware {

void AsyncReqNotify::clear()
{
    channel.clear();
    reqId.clear();
    event.clear();
    extra.clear();
}

} // namespace tvfirmware
