#pragma once
// The serial port as the dongle link uses it: open by number or device path, settings text
// such as "115200,n,8,1", read what has arrived, write, and an event on receive or error.

#include <functional>
#include <string>

namespace zv::platform {

// Error numbers of the serial port, as the link reports them.
inline constexpr int kPortErrorNoSuchPort = 8002; // the port does not exist
inline constexpr int kPortErrorInUse = 8005; // another program holds the port
inline constexpr int kPortErrorPermissionDenied = 70; // errorText() tells how to get access

enum class CommEvent {
    Receive = 2, // data arrived (RThreshold reached)
    BreakOrError = 1001, // the device went away or reported a read error; the port is closed
};

class SerialPort {
public:
    virtual ~SerialPort() = default;

    // Port number n (see port_devices.h for the devices behind the numbers) or a device path
    // ("/dev/ttyUSB0", a pseudo-terminal). Takes effect at the next open.
    virtual void setCommPort(int n) = 0;
    virtual void setDevice(const std::string& path) = 0;
    [[nodiscard]] virtual int commPort() const = 0; // 0 when a device path was given
    [[nodiscard]] virtual std::string device() const = 0;

    // Opens or closes the port; returns 0, kPortErrorNoSuchPort, kPortErrorInUse, or another
    // error number with errorText() telling the reason (for instance missing permission).
    [[nodiscard]] virtual int setPortOpen(bool open) = 0;
    [[nodiscard]] virtual bool portOpen() const = 0;
    [[nodiscard]] virtual std::string errorText() const = 0;

    // "baud,parity,data,stop", parity n, e, o, m or s; applies at once when open. A text that
    // cannot be read leaves the line as it was.
    virtual void setSettings(const std::string& settings) = 0;
    [[nodiscard]] virtual std::string settings() const = 0;
    virtual void setHandshaking(int mode) = 0; // 0 none, 1 XON/XOFF, 2 RTS/CTS
    [[nodiscard]] virtual int handshaking() const = 0;
    virtual void setInputLen(int n) = 0; // characters one input() takes; 0: all; standing value 1
    [[nodiscard]] virtual int inputLen() const = 0;
    virtual void setRThreshold(int n) = 0; // 0: no receive events
    [[nodiscard]] virtual int rThreshold() const = 0;

    // Takes up to InputLen characters from the receive buffer; empty when none wait.
    [[nodiscard]] virtual std::string input() = 0;
    virtual void output(const std::string& data) = 0;
    [[nodiscard]] virtual int inBufferCount() const = 0;
    // Setting the count to 0 discards what waits; other values are ignored.
    virtual void setInBufferCount(int n) = 0;

    std::function<void(CommEvent)> onComm;
};

} // namespace zv::platform
