#include "usb/i2c_device.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>

namespace zv {

namespace {

int result(int value)
{
    return value < 0 ? -errno : value;
}

} // namespace

int SystemI2cDevice::open(const std::string& path)
{
    return result(::open(path.c_str(), O_RDWR | O_CLOEXEC));
}

int SystemI2cDevice::ioctl(int fd, unsigned long request, void* arg)
{
    return result(::ioctl(fd, request, arg));
}

int SystemI2cDevice::ioctlValue(int fd, unsigned long request, unsigned long value)
{
    return result(::ioctl(fd, request, value));
}

void SystemI2cDevice::close(int fd)
{
    ::close(fd);
}

} // namespace zv
