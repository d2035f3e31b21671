#pragma once
// The device file protocol: request block (0x3C), status (0x3D), data write (0x3E) and data
// read (0x3F), over the HLK dongle, over the USB adapter or from a demo capture.
// FileAccessRequest is the one entry.

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace zv::platform {
class Dialogs;
class EventLoop;
} // namespace zv::platform

namespace zv {

class CellWeftEvents;
class DongleLink;
class UsbLink;

struct FileRequest {
    int access = 0; // 0 read, 1 write
    int file = 0;
    int offset = 0; // in records of the file's chunk size
    int count = 1; // records; in block mode the number of blocks
    std::vector<std::uint8_t> data; // what a write sends
    bool usePec = true;
    int blockSize = 0; // write: 0 one transfer, else block mode with this many bytes a block
    bool statusOnly = false;
    int writeWait = 0; // ms to sleep after a write instead of polling the status
};

struct FileReply {
    bool ok = false;
    std::string text; // read: the data as upper-case hex, two digits a byte
    int status = 0;
    int extra = 0;
};

struct FileProtocolSettings {
    int T_cmd_to_sts = 1;
    int T_sts_to_sts = 5;
    int MAX_BLOCK_TRANSFER = 128;
    // Bound of a device that stays busy (status 255): the request fails with a clear message.
    int busyLimitMs = 10000;
    // Bound of one whole request, all retries and link rebuilds included.
    int requestLimitMs = 15000;
};

// Where a demo run takes its files: section "Data", "File<n>" or for file 0 "Dir<offset>".
using DemoFileSource = std::function<std::string(const std::string& key)>;

struct FileProtocolServices {
    DongleLink& link;
    platform::EventLoop& loop;
    CellWeftEvents& events;
    platform::Dialogs& dialogs;
    std::function<bool()> reInit; // SMBus_ReInit after a failed step
    bool breakOnError = false;
    DemoFileSource demo; // set in demo mode: no bus traffic at all
    // The USB adapter link while the transport is the adapter (gTransport), else null.
    std::function<UsbLink*()> usbLink;
};

inline constexpr const char* kBusyTooLongMessage
    = "The device stayed busy too long; the request was abandoned";
// A request whose link failed and could not be rebuilt: how long it tried and the last cause.
[[nodiscard]] std::string requestAbandonedMessage(int file, std::int64_t elapsedMs, const std::string& cause);

class FileProtocol {
public:
    FileProtocol(FileProtocolServices services, FileProtocolSettings settings);

    [[nodiscard]] FileReply FileAccessRequest(const FileRequest& request);
    // Waits until the target is not busy (WaitUntilTargetIsIdle_HLK): false when the status
    // cannot be read or the target stays busy beyond the bound.
    [[nodiscard]] bool waitUntilIdle();
    // One status read over the dongle (FileStatusOnly), no wait: the status byte, or nothing when
    // the link failed. 0 in demo mode.
    [[nodiscard]] std::optional<int> statusOnce();
    // True while the requests go over the USB adapter.
    [[nodiscard]] bool onUsb() const { return usb() != nullptr; }
    // Writes the eight-digit command text ("03000000") to the command file 27.
    [[nodiscard]] bool WriteCommandFile(const std::string& commandHex, int writeWait = 0);

    [[nodiscard]] const FileProtocolSettings& settings() const { return settings_; }

    // The request block: byte count 6, access, file, offset and count low byte first, PEC.
    [[nodiscard]] std::vector<std::uint8_t> requestBlock(const FileRequest& request) const;

private:
    struct Status {
        bool ok = false;
        int status = 0;
        int extra = 0;
    };
    [[nodiscard]] FileReply demoRequest(const FileRequest& request) const;
    // One pass of the request: status, request, data.
    [[nodiscard]] FileReply requestOnce(const FileRequest& request);
    [[nodiscard]] bool expired() const;
    [[nodiscard]] Status FileStatusOnly(const char* stepName);
    [[nodiscard]] Status waitWhileBusy(int file, int pauseMs, const char* stepName);
    [[nodiscard]] Status FileStatus(const FileRequest& request);
    [[nodiscard]] bool FileRead(std::vector<std::uint8_t>& data);
    [[nodiscard]] Status FileWrite(std::span<const std::uint8_t> data, int extra, int writeWait);
    [[nodiscard]] bool sendWithRetries(const std::string& line, const std::string& expected, int segments,
        const char* stepName, std::string& reply);
    [[nodiscard]] bool report(int status, int file);
    // Block mode: each block goes out through writeBlock; finalStatus, when given, reads the
    // status that decides after the last block (else the last block's status decides).
    using BlockWriter = std::function<Status(std::span<const std::uint8_t> block, int extra)>;
    [[nodiscard]] FileReply blockMode(const FileRequest& request, int extra, const BlockWriter& writeBlock,
        const std::function<Status()>& finalStatus = {});
    // The steps over the USB adapter: the status (waited for while busy), the request with the
    // status that answers it, and the data write.
    [[nodiscard]] Status usbStatus(UsbLink& usb, int file);
    [[nodiscard]] Status usbFileStatus(UsbLink& usb, const FileRequest& request);
    [[nodiscard]] FileReply usbWrite(UsbLink& usb, const FileRequest& request, int status, int extra);
    [[nodiscard]] FileReply usbBootLoader(UsbLink& usb, const FileRequest& request, int extra);
    [[nodiscard]] UsbLink* usb() const { return s_.usbLink ? s_.usbLink() : nullptr; }
    void notifyWriteStatus(int status);
    void resetWait();
    void noResponse();

    FileProtocolServices s_;
    FileProtocolSettings settings_;
    // Set by a step that failed on the link (as opposed to a status the device gave).
    bool linkFailed_ = false;
    std::string linkCause_; // what the failing step last saw, before the link was rebuilt
    void noteLinkFailure();
};

} // namespace zv
