// Any Zentavia.ini as the target table: as many records as it declares (none for a count it
// cannot read), each found again by its id.

#include "core/target_table.h"
#include "fuzz_text.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string path = zv::fuzz::scratchFile("Zentavia.ini", zv::fuzz::text(data, size));
    const auto table = zv::readTargetTable(path);
    for (const auto& record : table)
        if (!zv::findTargetById(table, record.ID))
            std::abort();
    std::remove(path.c_str());
    return 0;
}
