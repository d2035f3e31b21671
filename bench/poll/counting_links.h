#pragma once
// What one poll sample costs at best: the USB adapter's transactions at 100 kHz on the SMBus, and
// the waits the file protocol must sleep. Both wrap the real object and pass everything on.

#include "frontends/wire_pacer.h"
#include "platform/event_loop.h"
#include "usb/usb_adapter.h"

#include <cstdint>
#include <memory>

namespace zv::bench {

class CountingUsbAdapter : public UsbAdapter {
public:
    explicit CountingUsbAdapter(std::unique_ptr<UsbAdapter> adapter, std::int64_t& busUs)
        : adapter_(std::move(adapter))
        , busUs_(busUs)
    {
    }

    [[nodiscard]] std::optional<std::string> GetVersion() override { return adapter_->GetVersion(); }
    void Configure(int a, int b, int c) override { adapter_->Configure(a, b, c); }
    [[nodiscard]] int Connect(bool connect) override { return adapter_->Connect(connect); }
    [[nodiscard]] int WriteWord(
        std::uint8_t address, std::uint8_t command, std::uint8_t low, std::uint8_t high) override
    {
        busUs_ += zvsim::WirePacer::smbusTimeUs(5, false);
        return adapter_->WriteWord(address, command, low, high);
    }
    [[nodiscard]] int WriteBlock(
        std::uint8_t address, std::uint8_t command, std::span<const std::uint8_t> data) override
    {
        busUs_ += zvsim::WirePacer::smbusTimeUs(4 + data.size(), false);
        return adapter_->WriteBlock(address, command, data);
    }
    [[nodiscard]] int ReadWord(
        std::uint8_t address, std::uint8_t command, std::uint8_t& high, std::uint8_t& low) override
    {
        busUs_ += zvsim::WirePacer::smbusTimeUs(6, true);
        return adapter_->ReadWord(address, command, high, low);
    }
    [[nodiscard]] int ReadBlock(
        std::uint8_t address, std::uint8_t command, std::vector<std::uint8_t>& data) override
    {
        const int status = adapter_->ReadBlock(address, command, data);
        busUs_ += zvsim::WirePacer::smbusTimeUs(5 + data.size(), true);
        return status;
    }

private:
    std::unique_ptr<UsbAdapter> adapter_;
    std::int64_t& busUs_;
};

// Sums the sleeps and waits asked of the loop: in the poll path these are the protocol's own
// T_cmd_to_sts and T_sts_to_sts waits.
class CountingEventLoop : public platform::EventLoop {
public:
    explicit CountingEventLoop(platform::EventLoop& loop)
        : loop_(loop)
    {
    }

    [[nodiscard]] std::int64_t waitedMs() const { return waitedMs_; }

    [[nodiscard]] std::int64_t milliseconds() const override { return loop_.milliseconds(); }
    [[nodiscard]] std::chrono::system_clock::time_point now() const override { return loop_.now(); }
    void sleep(int ms) override
    {
        waitedMs_ += ms > 0 ? ms : 0;
        loop_.sleep(ms);
    }
    void wait(int ms) override
    {
        waitedMs_ += ms > 0 ? ms : 0;
        loop_.wait(ms);
    }
    void processEvents() override { loop_.processEvents(); }
    [[nodiscard]] bool waitUntil(const std::function<bool()>& done, int timeoutMs) override
    {
        return loop_.waitUntil(done, timeoutMs);
    }
    [[nodiscard]] std::unique_ptr<platform::Timer> createTimer() override { return loop_.createTimer(); }

private:
    platform::EventLoop& loop_;
    std::int64_t waitedMs_ = 0;
};

} // namespace zv::bench
