#pragma once
// A serial port that passes everything to the real one and counts the characters that cross the
// wire each way.

#include "platform/serial_port.h"

#include <cstdint>

namespace zv::bench {

class CountingSerialPort : public platform::SerialPort {
public:
    explicit CountingSerialPort(platform::SerialPort& port)
        : port_(port)
    {
        port_.onComm = [this](platform::CommEvent event) {
            if (onComm)
                onComm(event);
        };
    }
    ~CountingSerialPort() override { port_.onComm = nullptr; }

    [[nodiscard]] std::int64_t charactersOnTheWire() const { return sent_ + received_; }

    void setCommPort(int n) override { port_.setCommPort(n); }
    void setDevice(const std::string& path) override { port_.setDevice(path); }
    [[nodiscard]] int commPort() const override { return port_.commPort(); }
    [[nodiscard]] std::string device() const override { return port_.device(); }
    [[nodiscard]] int setPortOpen(bool open) override { return port_.setPortOpen(open); }
    [[nodiscard]] bool portOpen() const override { return port_.portOpen(); }
    [[nodiscard]] std::string errorText() const override { return port_.errorText(); }
    void setSettings(const std::string& settings) override { port_.setSettings(settings); }
    [[nodiscard]] std::string settings() const override { return port_.settings(); }
    void setHandshaking(int mode) override { port_.setHandshaking(mode); }
    [[nodiscard]] int handshaking() const override { return port_.handshaking(); }
    void setInputLen(int n) override { port_.setInputLen(n); }
    [[nodiscard]] int inputLen() const override { return port_.inputLen(); }
    void setRThreshold(int n) override { port_.setRThreshold(n); }
    [[nodiscard]] int rThreshold() const override { return port_.rThreshold(); }
    [[nodiscard]] std::string input() override
    {
        auto text = port_.input();
        received_ += static_cast<std::int64_t>(text.size());
        return text;
    }
    void output(const std::string& data) override
    {
        sent_ += static_cast<std::int64_t>(data.size());
        port_.output(data);
    }
    [[nodiscard]] int inBufferCount() const override { return port_.inBufferCount(); }
    void setInBufferCount(int n) override
    {
        if (n == 0)
            received_ += port_.inBufferCount(); // discarded, but they did cross the wire
        port_.setInBufferCount(n);
    }

private:
    platform::SerialPort& port_;
    std::int64_t sent_ = 0;
    std::int64_t received_ = 0;
};

} // namespace zv::bench
