#include "device_files/file_status.h"

#include <cstdio>

namespace zv {

namespace {

std::string hex4(int status)
{
    char text[8];
    std::snprintf(text, sizeof text, "0x%04X", status & 0xFFFF);
    return text;
}

const char* fixedMessage(int status)
{
    switch (status) {
    case 1:
        return "level 1 access is needed to approve the request";
    case 2:
        return "Level 2 access is needed to approve the request";
    case 3:
        return "Level 3 access is needed to approve the request";
    case 4:
        return "This file number doesn't exist";
    case 5:
        return "The request can't be done";
    case 6:
        return "The size of the request is too large";
    case 7:
        return "CRC check failed";
    case 9:
        return "Bad address";
    case 10:
        return "Rebuild timed out";
    case 15:
        return "This file is read-only";
    case 16:
        return "Request timed out";
    case 254:
        return "Unknown error";
    default:
        return nullptr;
    }
}

} // namespace

FileStatusVerdict CheckFileStatus(int status)
{
    if (status == 0)
        return { true, false, std::nullopt };
    if (status == kFileStatusBusy)
        return { true, true, std::nullopt };
    if (status >= 128 && status <= 148)
        return { true, false, "SMBus error code " + hex4(status) };
    if (const char* text = fixedMessage(status))
        return { false, false, std::string(text) };
    return { false, false, "Status code " + hex4(status) };
}

} // namespace zv
