#pragma once
// The system calls of a Linux i2c-dev character device, behind a seam so that the adapter built
// on them is tested on a double. Results as the kernel gives them: a descriptor or 0 on success,
// -errno on failure.

#include <string>

namespace zv {

class I2cDevice {
public:
    virtual ~I2cDevice() = default;
    [[nodiscard]] virtual int open(const std::string& path) = 0;
    // An ioctl whose argument is a pointer (I2C_FUNCS, I2C_SMBUS, I2C_RDWR).
    [[nodiscard]] virtual int ioctl(int fd, unsigned long request, void* arg) = 0;
    // An ioctl whose argument is a value (I2C_SLAVE, I2C_PEC).
    [[nodiscard]] virtual int ioctlValue(int fd, unsigned long request, unsigned long value) = 0;
    virtual void close(int fd) = 0;
};

// The real calls.
class SystemI2cDevice : public I2cDevice {
public:
    [[nodiscard]] int open(const std::string& path) override;
    [[nodiscard]] int ioctl(int fd, unsigned long request, void* arg) override;
    [[nodiscard]] int ioctlValue(int fd, unsigned long request, unsigned long value) override;
    void close(int fd) override;
};

} // namespace zv
