#include "platform/qt/qt_serial_port.h"

#include "platform/port_devices.h"
#include "platform/serial_settings.h"

#include <QSerialPort>
#include <QTimer>

#include <cerrno>
#include <filesystem>
#include <unistd.h>

namespace zv::platform {

namespace {

QSerialPort::Parity qtParity(Parity parity)
{
    switch (parity) {
    case Parity::Even:
        return QSerialPort::EvenParity;
    case Parity::Odd:
        return QSerialPort::OddParity;
    case Parity::Mark:
        return QSerialPort::MarkParity;
    case Parity::Space:
        return QSerialPort::SpaceParity;
    case Parity::None:
        break;
    }
    return QSerialPort::NoParity;
}

QSerialPort::StopBits qtStopBits(StopBits stopBits)
{
    switch (stopBits) {
    case StopBits::OneAndHalf:
        return QSerialPort::OneAndHalfStop;
    case StopBits::Two:
        return QSerialPort::TwoStop;
    case StopBits::One:
        break;
    }
    return QSerialPort::OneStop;
}

QSerialPort::FlowControl qtFlowControl(int handshaking)
{
    switch (handshaking) {
    case 1:
        return QSerialPort::SoftwareControl;
    case 2:
    case 3:
        return QSerialPort::HardwareControl;
    default:
        return QSerialPort::NoFlowControl;
    }
}

void apply(QSerialPort& port, const SerialSettings& line)
{
    port.setBaudRate(line.baud);
    port.setParity(qtParity(line.parity));
    port.setDataBits(static_cast<QSerialPort::DataBits>(line.dataBits));
    port.setStopBits(qtStopBits(line.stopBits));
}

// Links (/dev/serial/by-id, a link to a pseudo-terminal) resolve to the device itself, so that
// every name of one device takes the same lock.
std::string resolved(const std::string& path)
{
    std::error_code error;
    auto real = std::filesystem::canonical(path, error);
    return error ? path : real.string();
}

bool accessDenied(const std::string& path)
{
    return ::access(path.c_str(), R_OK | W_OK) != 0 && (errno == EACCES || errno == EPERM);
}

std::string permissionText(const std::string& path)
{
    return "Permission denied on " + path
        + ". Join the 'dialout' group (sudo usermod -aG dialout $USER, then log in again) or add a udev "
          "rule that gives your user access to the device.";
}

} // namespace

QtSerialPort::QtSerialPort(const SettingsStore& settings)
    : store_(settings)
    , port_(std::make_unique<QSerialPort>())
{
    if (const auto line = parseSerialSettings(settings_))
        apply(*port_, *line);
    QObject::connect(port_.get(), &QSerialPort::readyRead, port_.get(), [this] { received(); });
    QObject::connect(port_.get(), &QSerialPort::errorOccurred, port_.get(),
        [this](QSerialPort::SerialPortError error) { failed(error); });
}

QtSerialPort::~QtSerialPort()
{
    QObject::disconnect(port_.get(), nullptr, nullptr, nullptr);
    close();
}

void QtSerialPort::setCommPort(int n)
{
    commPort_ = n;
    devicePath_.clear();
}

void QtSerialPort::setDevice(const std::string& path)
{
    commPort_ = 0;
    devicePath_ = path;
}

std::string QtSerialPort::device() const
{
    return devicePath_.empty() ? devicePathForPort(commPort_, store_) : devicePath_;
}

int QtSerialPort::setPortOpen(bool open)
{
    errorText_.clear();
    if (!open) {
        close();
        return 0;
    }
    if (portOpen())
        return 0;
    close(); // a port whose device failed is closed before it opens again
    return openDevice();
}

bool QtSerialPort::portOpen() const
{
    return port_->isOpen() && !lost_;
}

int QtSerialPort::openDevice()
{
    const std::string path = device();
    if (path.empty()) {
        errorText_ = "COM" + std::to_string(commPort_) + " has no device.";
        return kPortErrorNoSuchPort;
    }
    if (!deviceExists(path)) {
        errorText_ = "The serial device " + path + " does not exist.";
        return kPortErrorNoSuchPort;
    }
    if (accessDenied(path)) {
        errorText_ = permissionText(path);
        return kPortErrorPermissionDenied;
    }
    port_->setPortName(QString::fromStdString(resolved(path)));
    if (!port_->open(QIODevice::ReadWrite))
        return openFailure(path);
    ++generation_;
    return 0;
}

int QtSerialPort::openFailure(const std::string& path)
{
    const auto error = port_->error();
    const std::string reason = port_->errorString().toStdString();
    port_->clearError();
    switch (error) {
    case QSerialPort::PermissionError:
        // The device is readable for us, so what refused it is a lock file or an exclusive open.
        errorText_ = "The serial device " + path + " is in use by another program (" + reason + ").";
        return kPortErrorInUse;
    case QSerialPort::UnsupportedOperationError:
        errorText_ = path + " is not a serial port (" + reason + ").";
        return kPortErrorNoSuchPort;
    default:
        errorText_ = "The serial device " + path + " cannot be opened (" + reason + ").";
        return kPortErrorNoSuchPort;
    }
}

void QtSerialPort::close()
{
    ++generation_; // a device failure reported before this close no longer acts
    lost_ = false;
    if (port_->isOpen())
        port_->close();
}

void QtSerialPort::setSettings(const std::string& settings)
{
    const auto line = parseSerialSettings(settings);
    if (!line)
        return;
    settings_ = settings;
    apply(*port_, *line);
}

void QtSerialPort::setHandshaking(int mode)
{
    handshaking_ = mode;
    port_->setFlowControl(qtFlowControl(mode));
}

std::string QtSerialPort::input()
{
    if (!portOpen())
        return {};
    const QByteArray data = inputLen_ <= 0 ? port_->readAll() : port_->read(inputLen_);
    return std::string(data.constData(), static_cast<std::size_t>(data.size()));
}

void QtSerialPort::output(const std::string& data)
{
    if (!portOpen())
        return;
    port_->write(data.data(), static_cast<qint64>(data.size()));
    port_->flush(); // on the wire now, before a settings change or a sleep that may follow
}

int QtSerialPort::inBufferCount() const
{
    return portOpen() ? static_cast<int>(port_->bytesAvailable()) : 0;
}

void QtSerialPort::setInBufferCount(int n)
{
    if (n != 0 || !portOpen())
        return;
    (void)port_->readAll();
    port_->clear(QSerialPort::Input);
}

void QtSerialPort::received()
{
    if (rThreshold_ > 0 && inBufferCount() >= rThreshold_)
        raise(CommEvent::Receive);
}

// Errors while open mean the device is gone or broken: QSerialPort goes on reporting them for
// every wake of the port, so the port closes at the first one. The close runs from the event
// loop, outside QSerialPort's own notification; until then the port reads as closed.
void QtSerialPort::failed(int qtError)
{
    const bool deviceError = qtError == QSerialPort::ResourceError || qtError == QSerialPort::ReadError
        || qtError == QSerialPort::WriteError;
    if (!deviceError || !portOpen())
        return;
    lost_ = true;
    errorText_ = port_->errorString().toStdString();
    QTimer::singleShot(0, port_.get(), [this, opened = generation_] {
        if (opened != generation_)
            return;
        close();
        raise(CommEvent::BreakOrError);
    });
}

void QtSerialPort::raise(CommEvent event)
{
    if (onComm)
        onComm(event);
}

} // namespace zv::platform
