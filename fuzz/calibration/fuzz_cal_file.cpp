// Any .cal text: the reader gives lines that write back to the same lines, and the decoding for
// any target either fails with a reason or gives exactly half as many bytes as the line has digits.

#include "calibration/cal_file.h"

#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const zv::CalFile file = zv::parseCalFile(text);
    const zv::CalFile again = zv::parseCalFile(zv::formatCalFile(file));
    // A line holding a CR of its own is the one text that cannot come back unchanged.
    const bool plain = file.firstLine.find('\r') == std::string::npos
        && (!file.secondLine || file.secondLine->find('\r') == std::string::npos);
    if (plain && (again.firstLine != file.firstLine || again.secondLine != file.secondLine))
        std::abort();
    for (const bool single : { false, true }) {
        for (const char* target : { "1001", "1003" }) {
            const zv::CalibrationDecode decoded = zv::decodeCalFile(file, single, target);
            if (!decoded.error.empty())
                continue;
            if (decoded.bytes.first.size() * 2 != file.firstLine.size())
                std::abort();
            if (zv::calLineText(decoded.bytes.first).size() != file.firstLine.size())
                std::abort();
            if (single && decoded.bytes.writeSecond)
                std::abort();
        }
    }
    return 0;
}
