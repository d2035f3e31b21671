#include "device_files/file_protocol.h"

#include "device_files/file_status.h"
#include "link/cellweft_events.h"
#include "link/dongle_link.h"
#include "link/hlk_text.h"
#include "link/smbus_transactions.h"
#include "platform/dialogs.h"
#include "platform/event_loop.h"
#include "platform/text.h"
#include "usb/usb_link.h"

#include <algorithm>

namespace zv {

namespace {

constexpr int kAttempts = 11; // the eleventh attempt of a step counts as failed
// A request whose link failed is made again after the link was rebuilt, up to twice: a pack that
// restarts is silent for about two seconds, longer than one rebuild over the USB adapter takes.
constexpr int kRequestRounds = 3;
constexpr int kExtraBytePauseMs = 250;
constexpr int kIdlePauseMs = 10;
constexpr int kResetRounds = 16;
constexpr int kResetRoundMs = 1000;
constexpr int kUsbLastBlockPauseMs = 1000;
constexpr int kUsbWriteWaitRoundMs = 1000;
const std::string kStatusLine = "/*T~3D\r/R3\r";
const std::string kReadLine = "/*T~3F\r/R~00\r";

std::string toHex(const std::vector<std::uint8_t>& bytes)
{
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const auto b : bytes)
        text += platform::byteHex(b);
    return text;
}

} // namespace

FileProtocol::FileProtocol(FileProtocolServices services, FileProtocolSettings settings)
    : s_(std::move(services))
    , settings_(settings)
{
}

std::vector<std::uint8_t> FileProtocol::requestBlock(const FileRequest& r) const
{
    return { static_cast<std::uint8_t>(r.access), static_cast<std::uint8_t>(r.file),
        static_cast<std::uint8_t>(r.offset & 0xFF), static_cast<std::uint8_t>((r.offset >> 8) & 0xFF),
        static_cast<std::uint8_t>(r.count & 0xFF), static_cast<std::uint8_t>((r.count >> 8) & 0xFF) };
}

bool FileProtocol::sendWithRetries(const std::string& line, const std::string& expected, int segments,
    const char* stepName, std::string& reply)
{
    for (int attempt = 1; attempt <= kAttempts && !expired(); ++attempt) {
        // The step fails once all eleven attempts were used, even when the last one answered.
        if (s_.link.i2c_send_receive(line, expected, reply, segments) && attempt < kAttempts)
            return true;
        if (s_.breakOnError)
            s_.dialogs.messageBox(
                std::string("Function ") + stepName + " did not receive the expected response",
                platform::Buttons::OK, platform::Icon::Exclamation, "Debug Breakpoint Active");
    }
    noteLinkFailure();
    if (s_.reInit && !expired())
        (void)s_.reInit();
    return false;
}

void FileProtocol::noteLinkFailure()
{
    linkFailed_ = true;
    // The first cause of a request tells what went wrong; later ones come from rebuilding the link.
    if (!linkCause_.empty())
        return;
    std::string cause = usb() ? usbStatusText(usb()->lastStatus) : s_.link.lastError();
    std::ranges::replace(cause, '\r', ' ');
    std::ranges::replace(cause, '\n', ' ');
    linkCause_ = cause;
}

void FileProtocol::noResponse()
{
    s_.dialogs.messageBox(
        "No response from hardware.", platform::Buttons::OK, platform::Icon::Critical, "Communication error");
}

bool FileProtocol::report(int status, int file)
{
    const auto verdict = CheckFileStatus(status);
    if (verdict.message)
        s_.events.FileAccessStatus(*verdict.message, file);
    if (s_.breakOnError && status != 0 && !verdict.busy)
        s_.dialogs.messageBox("Error: " + std::to_string(status), platform::Buttons::OK,
            platform::Icon::Exclamation, "File Access Error");
    return verdict.good;
}

FileProtocol::Status FileProtocol::FileStatusOnly(const char* stepName)
{
    std::string reply;
    if (!sendWithRetries(kStatusLine, "", 2, stepName, reply))
        return {};
    const auto status = parseStatusReply(reply);
    if (!status) {
        noResponse();
        return {};
    }
    return { true, status->status, status->extra };
}

FileProtocol::Status FileProtocol::waitWhileBusy(int file, int pauseMs, const char* stepName)
{
    const auto deadline = s_.loop.milliseconds() + settings_.busyLimitMs;
    for (;;) {
        const auto st = FileStatusOnly(stepName);
        if (!st.ok || st.status != kFileStatusBusy)
            return st;
        if (expired()) {
            noteLinkFailure();
            return {};
        }
        if (s_.loop.milliseconds() >= deadline) {
            s_.events.FileAccessStatus(kBusyTooLongMessage, file);
            return {};
        }
        s_.loop.sleep(pauseMs);
        s_.loop.processEvents();
    }
}

FileProtocol::Status FileProtocol::FileStatus(const FileRequest& request)
{
    const auto block = requestBlock(request);
    std::string line = request.usePec ? hlk::writeBlock(s_.link.SMBusWriteAddress, smbus::kFileAccess, block)
                                      : hlk::writeRaw(std::vector<std::uint8_t> { smbus::kFileAccess, 6 });
    if (!request.usePec)
        line.insert(line.size() - 1, [&] {
            std::string tail;
            for (const auto b : block)
                tail += ByteToTildeHex(b);
            return tail;
        }());
    line += "\r";

    std::string reply;
    if (!sendWithRetries(line, "/MTC", 1, "FileStatus", reply))
        return {};
    s_.loop.sleep(settings_.T_cmd_to_sts);
    // The status that answers the request. A busy device is read again every T_sts_to_sts until
    // the busy bound; only replies that do not come count against the eleven attempts, so a
    // device that is busy for a while is waited out without sending the request again.
    const auto busyDeadline = s_.loop.milliseconds() + settings_.busyLimitMs;
    int failures = 0;
    for (;;) {
        std::string statusReply;
        if (s_.link.i2c_send_receive(kStatusLine, "", statusReply, 2)) {
            const auto status = parseStatusReply(statusReply);
            if (!status) {
                noResponse();
                return {};
            }
            if (failures == kAttempts - 1) { // an answer to the eleventh attempt still counts as failed
                noteLinkFailure();
                return {};
            }
            if (status->status != kFileStatusBusy)
                return { true, status->status, status->extra };
            if (s_.loop.milliseconds() >= busyDeadline) {
                s_.events.FileAccessStatus(kBusyTooLongMessage, request.file);
                return {};
            }
            s_.loop.sleep(settings_.T_sts_to_sts);
            s_.loop.processEvents();
            continue;
        }
        if (s_.breakOnError)
            s_.dialogs.messageBox("Function FileStatus did not receive the expected response",
                platform::Buttons::OK, platform::Icon::Exclamation, "Debug Breakpoint Active");
        if (++failures >= kAttempts || expired()) {
            noteLinkFailure();
            if (s_.reInit && !expired())
                (void)s_.reInit();
            return {};
        }
        s_.loop.sleep(settings_.T_cmd_to_sts);
    }
}

bool FileProtocol::FileRead(std::vector<std::uint8_t>& data)
{
    std::string reply;
    if (!sendWithRetries(kReadLine, "", 2, "FileRead", reply))
        return false;
    auto bytes = parseDataReply(reply);
    if (!bytes) {
        noResponse();
        return false;
    }
    data = std::move(*bytes);
    if (data.empty() && s_.reInit)
        (void)s_.reInit();
    return true;
}

FileProtocol::Status FileProtocol::FileWrite(std::span<const std::uint8_t> data, int extra, int writeWait)
{
    std::string reply;
    const auto line = hlk::writeBlock(s_.link.SMBusWriteAddress, smbus::kFileWrite, data);
    if (!sendWithRetries(line, "/MTC", 1, "FileWrite", reply))
        return {};
    if (writeWait != 0) {
        s_.loop.sleep(writeWait);
        return { true, -1, extra };
    }
    if (extra == 1)
        s_.loop.sleep(kExtraBytePauseMs);
    return waitWhileBusy(-1, settings_.T_sts_to_sts, "FileWrite");
}

FileReply FileProtocol::demoRequest(const FileRequest& request) const
{
    FileReply reply;
    reply.ok = true;
    if (request.access == 0) {
        const auto key = request.file == 0 ? "Dir" + std::to_string(request.offset)
                                           : "File" + std::to_string(request.file);
        reply.text = s_.demo(key);
        reply.ok = !reply.text.empty();
    }
    return reply;
}

std::string requestAbandonedMessage(int file, std::int64_t elapsedMs, const std::string& cause)
{
    return "The link to the device failed: the request for file " + std::to_string(file)
        + " was abandoned after " + std::to_string(elapsedMs)
        + " ms: " + (cause.empty() ? "no answer" : cause);
}

bool FileProtocol::expired() const
{
    return s_.link.deadline.expired(s_.loop.milliseconds());
}

FileReply FileProtocol::FileAccessRequest(const FileRequest& request)
{
    if (s_.demo)
        return demoRequest(request);
    // A firmware download in block mode keeps its own pace: its blocks are not bounded as one.
    if (request.access == 1 && request.blockSize != 0)
        return requestOnce(request);
    const auto start = s_.loop.milliseconds();
    const LinkDeadline::Scope scope(s_.link.deadline, start, settings_.requestLimitMs);
    FileReply reply;
    linkCause_.clear();
    for (int round = 0; round < kRequestRounds; ++round) {
        linkFailed_ = false;
        reply = requestOnce(request);
        if (reply.ok || !linkFailed_ || expired() || (!usb() && !s_.link.portOpen()))
            break;
        // The link failed part-way (replies lost, a pack that restarted and forgot the request):
        // the failing step rebuilt the link on the dongle; the adapter is rebuilt here. Then the
        // whole request goes again, within the same bound.
        if (usb() && s_.reInit)
            (void)s_.reInit();
    }
    if (!reply.ok && linkFailed_)
        s_.link.SMBusRaiseError(
            kErrTimeout, requestAbandonedMessage(request.file, s_.loop.milliseconds() - start, linkCause_));
    return reply;
}

FileReply FileProtocol::requestOnce(const FileRequest& request)
{
    UsbLink* const link = usb();
    // A port that the device's going away closed is opened again first, rather than failing
    // every attempt of every step; when it cannot be, the request fails at once.
    if (!link && !s_.link.portOpen() && !(s_.reInit && s_.reInit() && s_.link.portOpen())) {
        noteLinkFailure();
        return {};
    }

    // Step 1: the device must not be busy; a bad status here answers an earlier request.
    const auto idle = link ? usbStatus(*link, request.file)
                           : waitWhileBusy(request.file, settings_.T_sts_to_sts, "FileStatusOnly");
    if (!idle.ok)
        return {};
    (void)report(idle.status, request.file);

    // Step 2: the request and the status that answers it.
    const auto accepted = link ? usbFileStatus(*link, request) : FileStatus(request);
    if (!accepted.ok || !report(accepted.status, request.file))
        return { false, {}, accepted.status, accepted.extra };
    if (request.statusOnly)
        return { true, {}, accepted.status, accepted.extra };

    if (request.access == 0) {
        std::vector<std::uint8_t> data;
        const bool read = link ? link->usbBlockRead(link->targetAddress(), smbus::kFileRead, data) == kUsbOk
                               : FileRead(data);
        if (!read) {
            if (link)
                noteLinkFailure();
            return {};
        }
        return { true, toHex(data), accepted.status, accepted.extra };
    }
    if (link)
        return usbWrite(*link, request, accepted.status, accepted.extra);
    if (request.blockSize != 0)
        return blockMode(request, accepted.extra,
            [this](std::span<const std::uint8_t> block, int extra) { return FileWrite(block, extra, 0); });

    const auto written = FileWrite(request.data, accepted.extra, request.writeWait);
    if (!written.ok)
        return {};
    const int finalStatus = request.writeWait != 0 ? accepted.status : written.status;
    notifyWriteStatus(finalStatus);
    return { true, {}, finalStatus, written.extra };
}

void FileProtocol::notifyWriteStatus(int status)
{
    if (status != 0)
        s_.dialogs.notify("Write Status",
            "The status code of the write operation did not return OK.\nPlease retry the last "
            "operation. If this problem persists, please contact Norvale Systems\nStatus Code: "
                + std::to_string(status),
            platform::Icon::Exclamation);
}

FileProtocol::Status FileProtocol::usbStatus(UsbLink& usb, int file)
{
    std::uint8_t status = 0;
    std::uint8_t extra = 0;
    if (usb.usbWaitIdleStatus(status, extra) != 0) {
        // Busy to the end, or the status could not be read at all: only the first is the device's.
        if (status == kFileStatusBusy)
            s_.events.FileAccessStatus(kBusyTooLongMessage, file);
        else
            noteLinkFailure();
        return {};
    }
    return { true, status, extra };
}

FileProtocol::Status FileProtocol::usbFileStatus(UsbLink& usb, const FileRequest& request)
{
    if (usb.usbBlockWrite(usb.targetAddress(), smbus::kFileAccess, requestBlock(request)) != kUsbOk) {
        noteLinkFailure();
        return {};
    }
    s_.loop.sleep(settings_.T_cmd_to_sts);
    return usbStatus(usb, request.file);
}

FileReply FileProtocol::usbWrite(UsbLink& usb, const FileRequest& request, int status, int extra)
{
    if (request.blockSize != 0)
        return usbBootLoader(usb, request, extra);
    if (usb.usbBlockWrite(usb.targetAddress(), smbus::kFileWrite, request.data) != kUsbOk) {
        noteLinkFailure();
        return {};
    }
    // No status poll after a write on the adapter: the wait is slept in whole seconds.
    for (int round = 0; round < request.writeWait / kUsbWriteWaitRoundMs; ++round)
        s_.loop.wait(kUsbWriteWaitRoundMs);
    notifyWriteStatus(status);
    return { true, {}, status, extra };
}

FileReply FileProtocol::usbBootLoader(UsbLink& usb, const FileRequest& request, int extra)
{
    // BootLoader: the blocks go out without a status poll and without retries; the status
    // after the last block decides.
    const bool retries = usb.UsbNoBlockRetry;
    usb.UsbNoBlockRetry = true;
    const auto reply = blockMode(
        request, extra,
        [&](std::span<const std::uint8_t> block, int blockExtra) {
            s_.loop.processEvents();
            const bool sent = usb.usbBlockWrite(usb.targetAddress(), smbus::kFileWrite, block) == kUsbOk;
            return Status { sent, 0, blockExtra };
        },
        [&] {
            s_.loop.wait(kUsbLastBlockPauseMs);
            return usbStatus(usb, request.file);
        });
    usb.UsbNoBlockRetry = retries;
    return reply;
}

FileReply FileProtocol::blockMode(const FileRequest& request, int extra, const BlockWriter& writeBlock,
    const std::function<Status()>& finalStatus)
{
    const int blocks = request.count;
    const auto blockBytes = static_cast<std::size_t>(settings_.MAX_BLOCK_TRANSFER);
    Status last { true, 0, extra };
    bool allSent = true;
    for (int i = 0; i < blocks; ++i) {
        if (blocks > 1)
            s_.events.FirmwareDownloadStatus(i * 100 / (blocks - 1),
                "Downloading block " + std::to_string(i + 1) + " of " + std::to_string(blocks));
        const auto from = std::min(request.data.size(), static_cast<std::size_t>(i) * blockBytes);
        const auto to = std::min(request.data.size(), from + blockBytes);
        last = writeBlock(std::span(request.data).subspan(from, to - from), last.extra);
        if (!last.ok) {
            allSent = false;
            break;
        }
    }
    if (allSent && finalStatus) {
        last = finalStatus();
        allSent = last.ok;
    }
    if (!allSent) {
        s_.events.FirmwareDownloadComplete(false);
    } else if (last.status == kFileStatusImageAccepted) {
        s_.events.FirmwareDownloadComplete(true);
    } else {
        s_.events.FirmwareDownloadStatus(0,
            last.status == kFileStatusCrcError
                ? "CRC error"
                : "Error: 0x" + platform::byteHex(static_cast<std::uint8_t>(last.status)));
        s_.events.FirmwareDownloadComplete(false);
    }
    resetWait();
    return { allSent, {}, last.status, last.extra };
}

void FileProtocol::resetWait()
{
    for (int round = 1; round <= kResetRounds; ++round) {
        s_.loop.wait(kResetRoundMs);
        const int percent = round * 100 / kResetRounds;
        s_.events.FirmwareDownloadStatus(
            percent, "Please wait while the hardware resets. " + std::to_string(percent) + "% Complete");
    }
}

bool FileProtocol::waitUntilIdle()
{
    if (s_.demo)
        return true;
    if (auto* link = usb())
        return link->usbWaitIdle() == 0;
    s_.loop.sleep(kIdlePauseMs);
    return waitWhileBusy(-1, settings_.T_sts_to_sts, "FileStatusOnly").ok;
}

std::optional<int> FileProtocol::statusOnce()
{
    if (s_.demo)
        return 0;
    const auto st = FileStatusOnly("FileStatusOnly");
    if (!st.ok)
        return std::nullopt;
    return st.status;
}

bool FileProtocol::WriteCommandFile(const std::string& commandHex, int writeWait)
{
    FileRequest request;
    request.access = 1;
    request.file = 27;
    request.offset = 0;
    request.count = 2;
    request.writeWait = writeWait;
    for (std::size_t i = 0; i + 1 < commandHex.size(); i += 2)
        request.data.push_back(static_cast<std::uint8_t>(std::stoi(commandHex.substr(i, 2), nullptr, 16)));
    return FileAccessRequest(request).ok;
}

} // namespace zv
