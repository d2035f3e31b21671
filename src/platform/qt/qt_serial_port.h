#pragma once
// The serial port on QSerialPort. Port numbers map to devices as port_devices.h tells; a port
// held by another program (its lock file or an exclusive open) gives 8005, a device the user may
// not open gives 70 with a text on how to get access. A device that goes away closes the port at
// its first error and raises BreakOrError once, from the event loop (a close or reopen by the
// program before then takes its place). Data arrives while the event loop runs: inBufferCount()
// counts what the loop has taken from the device.

#include "platform/serial_port.h"

#include <cstdint>
#include <memory>
#include <string>

class QSerialPort;

namespace zv::platform {

class SettingsStore;

class QtSerialPort : public SerialPort {
public:
    // The settings store holds the port overrides (key path "Ports"); it must outlive the port.
    explicit QtSerialPort(const SettingsStore& settings);
    ~QtSerialPort() override;
    QtSerialPort(const QtSerialPort&) = delete;
    QtSerialPort& operator=(const QtSerialPort&) = delete;

    void setCommPort(int n) override;
    void setDevice(const std::string& path) override;
    [[nodiscard]] int commPort() const override { return commPort_; }
    [[nodiscard]] std::string device() const override;

    [[nodiscard]] int setPortOpen(bool open) override;
    [[nodiscard]] bool portOpen() const override;
    [[nodiscard]] std::string errorText() const override { return errorText_; }

    void setSettings(const std::string& settings) override;
    [[nodiscard]] std::string settings() const override { return settings_; }
    void setHandshaking(int mode) override;
    [[nodiscard]] int handshaking() const override { return handshaking_; }
    void setInputLen(int n) override { inputLen_ = n; }
    [[nodiscard]] int inputLen() const override { return inputLen_; }
    void setRThreshold(int n) override { rThreshold_ = n; }
    [[nodiscard]] int rThreshold() const override { return rThreshold_; }

    [[nodiscard]] std::string input() override;
    void output(const std::string& data) override;
    [[nodiscard]] int inBufferCount() const override;
    void setInBufferCount(int n) override;

private:
    [[nodiscard]] int openDevice();
    [[nodiscard]] int openFailure(const std::string& path);
    void close();
    void received();
    void failed(int qtError);
    void raise(CommEvent event);

    const SettingsStore& store_;
    std::unique_ptr<QSerialPort> port_;
    int commPort_ = 1;
    std::string devicePath_; // given directly; else the port number decides
    std::string settings_ = "9600,n,8,1";
    int handshaking_ = 0;
    int inputLen_ = 1;
    int rThreshold_ = 0;
    std::string errorText_;
    bool lost_ = false; // the device failed; the close is on its way
    std::uint64_t generation_ = 0; // counts opens and closes
};

} // namespace zv::platform
