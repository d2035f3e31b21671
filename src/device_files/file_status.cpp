#include "device_files/file_status.h"

#include "link/hlk_text.h"

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

namespace {

constexpr std::size_t kMrcFirstPair = 5; // "/MRC~" then the first pair
constexpr std::size_t kMrcPairStride = 3;

std::optional<std::uint8_t> mrcPair(std::string_view reply, std::size_t index)
{
    const auto at = reply.find("/MRC");
    if (at == std::string_view::npos)
        return std::nullopt;
    return hlk::hexPairAt(reply, at + kMrcFirstPair + index * kMrcPairStride);
}

} // namespace

std::optional<StatusReply> parseStatusReply(std::string_view reply)
{
    const auto status = mrcPair(reply, 0);
    const auto extra = mrcPair(reply, 1);
    if (!status || !extra)
        return std::nullopt;
    return StatusReply { *status, *extra };
}

std::optional<std::vector<std::uint8_t>> parseDataReply(std::string_view reply)
{
    const auto count = mrcPair(reply, 0);
    if (!count)
        return std::nullopt;
    std::vector<std::uint8_t> data;
    data.reserve(*count);
    for (std::size_t i = 1; i <= *count; ++i) {
        const auto b = mrcPair(reply, i);
        if (!b)
            return std::nullopt;
        data.push_back(*b);
    }
    return data;
}

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
