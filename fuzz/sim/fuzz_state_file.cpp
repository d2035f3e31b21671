// Any state file: the pack takes what it recognises, and the state it then writes is a state
// file it takes again.

#include "device/pack.h"
#include "device/state_file.h"
#include "fuzz_text.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    auto pack = zvsim::makePack({});
    if (!zvsim::applyStateText(pack->model(), zv::fuzz::text(data, size)))
        return 0;
    const std::string written = zvsim::stateText(pack->model());
    auto again = zvsim::makePack({});
    if (!zvsim::applyStateText(again->model(), written))
        std::abort();
    return 0;
}
