#pragma once
// A serial port in memory, the double that a test or the in-process simulator is wired to:
// what the program writes goes to onOutput, deliver() puts bytes in the receive buffer. Every
// port exists and is free unless the test says otherwise.

#include "platform/serial_port.h"

#include <functional>
#include <set>
#include <string>
#include <vector>

namespace zv::platform {

class MemorySerialPort : public SerialPort {
public:
    void setCommPort(int n) override;
    void setDevice(const std::string& path) override;
    [[nodiscard]] int commPort() const override { return commPort_; }
    [[nodiscard]] std::string device() const override { return device_; }

    [[nodiscard]] int setPortOpen(bool open) override;
    [[nodiscard]] bool portOpen() const override { return open_; }
    [[nodiscard]] std::string errorText() const override { return errorText_; }

    void setSettings(const std::string& settings) override;
    [[nodiscard]] std::string settings() const override { return settings_; }
    void setHandshaking(int mode) override { handshaking_ = mode; }
    [[nodiscard]] int handshaking() const override { return handshaking_; }
    void setInputLen(int n) override { inputLen_ = n; }
    [[nodiscard]] int inputLen() const override { return inputLen_; }
    void setRThreshold(int n) override { rThreshold_ = n; }
    [[nodiscard]] int rThreshold() const override { return rThreshold_; }

    [[nodiscard]] std::string input() override;
    void output(const std::string& data) override;
    [[nodiscard]] int inBufferCount() const override { return static_cast<int>(received_.size()); }
    void setInBufferCount(int n) override;

    // --- the device side ---

    // Gets every write of the program while the port is open.
    std::function<void(const std::string&)> onOutput;
    // Puts bytes in the receive buffer (dropped while closed); raises Receive when RThreshold > 0
    // and at least that many characters wait.
    void deliver(const std::string& bytes);

    // Which ports open: a missing one gives 8002, a busy one 8005. Ports are named by their number
    // ("COM3" for 3) or by a device path.
    void setMissing(const std::string& device, bool missing = true);
    void setBusy(const std::string& device, bool busy = true);
    void setMissing(int port, bool missing = true) { setMissing(portName(port), missing); }
    void setBusy(int port, bool busy = true) { setBusy(portName(port), busy); }
    // The user may not open the device: opening fails with 70.
    void setDenied(int port, bool denied = true)
    {
        if (denied)
            denied_.insert(portName(port));
        else
            denied_.erase(portName(port));
    }

    // The device goes away: an open port closes and raises BreakOrError; opening fails with 8002
    // until plugIn().
    void pull();
    void plugIn();

    // Everything written while open, in order.
    [[nodiscard]] const std::string& written() const { return written_; }
    void clearWritten() { written_.clear(); }
    // Every settings text given, valid or not, in order.
    [[nodiscard]] const std::vector<std::string>& settingsHistory() const { return settingsHistory_; }
    [[nodiscard]] int openCount() const { return openCount_; }

    [[nodiscard]] static std::string portName(int port) { return "COM" + std::to_string(port); }

private:
    void raise(CommEvent event);

    int commPort_ = 1;
    std::string device_ = portName(1);
    bool open_ = false;
    std::string errorText_;
    std::string settings_ = "9600,n,8,1";
    int handshaking_ = 0;
    int inputLen_ = 1;
    int rThreshold_ = 0;
    std::string received_;
    std::string written_;
    std::vector<std::string> settingsHistory_;
    std::set<std::string> missing_;
    std::set<std::string> busy_;
    std::set<std::string> denied_;
    bool pulled_ = false;
    int openCount_ = 0;
};

} // namespace zv::platform
