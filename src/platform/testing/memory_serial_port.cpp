#include "platform/testing/memory_serial_port.h"

#include "platform/serial_settings.h"

#include <algorithm>

namespace zv::platform {

void MemorySerialPort::setCommPort(int n)
{
    commPort_ = n;
    device_ = n >= 1 ? portName(n) : std::string();
}

void MemorySerialPort::setDevice(const std::string& path)
{
    commPort_ = 0;
    device_ = path;
}

int MemorySerialPort::setPortOpen(bool open)
{
    errorText_.clear();
    if (!open) {
        open_ = false;
        received_.clear();
        return 0;
    }
    if (open_)
        return 0;
    if (pulled_ || device_.empty() || missing_.contains(device_)) {
        errorText_ = "Invalid port number";
        return kPortErrorNoSuchPort;
    }
    if (busy_.contains(device_)) {
        errorText_ = "Port already open";
        return kPortErrorInUse;
    }
    if (denied_.contains(device_)) {
        errorText_ = "Permission denied";
        return kPortErrorPermissionDenied;
    }
    open_ = true;
    ++openCount_;
    return 0;
}

void MemorySerialPort::setSettings(const std::string& settings)
{
    settingsHistory_.push_back(settings);
    if (parseSerialSettings(settings))
        settings_ = settings;
}

std::string MemorySerialPort::input()
{
    const auto count = inputLen_ <= 0 ? received_.size() : std::min<std::size_t>(inputLen_, received_.size());
    std::string taken = received_.substr(0, count);
    received_.erase(0, count);
    return taken;
}

void MemorySerialPort::output(const std::string& data)
{
    if (!open_)
        return;
    written_ += data;
    if (onOutput)
        onOutput(data);
}

void MemorySerialPort::setInBufferCount(int n)
{
    if (n == 0)
        received_.clear();
}

void MemorySerialPort::deliver(const std::string& bytes)
{
    if (!open_ || bytes.empty())
        return;
    received_ += bytes;
    if (rThreshold_ > 0 && inBufferCount() >= rThreshold_)
        raise(CommEvent::Receive);
}

void MemorySerialPort::setMissing(const std::string& device, bool missing)
{
    if (missing)
        missing_.insert(device);
    else
        missing_.erase(device);
}

void MemorySerialPort::setBusy(const std::string& device, bool busy)
{
    if (busy)
        busy_.insert(device);
    else
        busy_.erase(device);
}

void MemorySerialPort::pull()
{
    pulled_ = true;
    if (!open_)
        return;
    open_ = false;
    errorText_ = "No such device";
    received_.clear();
    raise(CommEvent::BreakOrError);
}

void MemorySerialPort::plugIn()
{
    pulled_ = false;
}

void MemorySerialPort::raise(CommEvent event)
{
    if (onComm)
        onComm(event);
}

} // namespace zv::platform
