// Any --faults text: refused with a reason, or a plan of finite rates from 0 to 1 whose
// description reads back as the same plan.

#include "frontends/link_faults.h"
#include "fuzz_text.h"

#include <cmath>
#include <cstdlib>

namespace {

bool sane(double rate)
{
    return std::isfinite(rate) && rate >= 0.0 && rate <= 1.0;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto parsed = zvsim::parseFaultList(zv::fuzz::text(data, size));
    if (!parsed.error.empty())
        return 0;
    const auto& link = parsed.plan.link;
    const auto& device = parsed.plan.device;
    for (const double rate : { link.pecRate, link.lostRate, link.cutRate, link.stuckRate, link.alarmRate,
             device.noAckRate, device.restartRate })
        if (!sane(rate))
            std::abort();
    if (link.pullAfterMs && (*link.pullAfterMs < 0 || *link.pullAfterMs > zvsim::kMaxFaultSeconds * 1000))
        std::abort();
    const std::string described = zvsim::describeFaults(parsed.plan);
    if (described != "none" && !zvsim::parseFaultList(described).error.empty())
        std::abort();
    return 0;
}
