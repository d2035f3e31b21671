#include "platform/process_priority.h"

#include <sys/resource.h>

namespace zv::platform {

namespace {

// The nice value of each class; lowering it needs a privilege that an ordinary user may lack.
constexpr int kHighNice = -10;
constexpr int kNormalNice = 0;

} // namespace

bool setProcessPriority(ProcessPriority priority)
{
    return setpriority(PRIO_PROCESS, 0, priority == ProcessPriority::High ? kHighNice : kNormalNice) == 0;
}

} // namespace zv::platform
