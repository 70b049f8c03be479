// SPDX-License-Identifier: MIT
#include "serial/serialcontroller.h"

#include "i18n/language.h"
#include "serial/linestate.h"
#include "serial/portdiscovery.h"

#include <QScopedValueRollback>
#include <QSignalBlocker>
#include <QSocketNotifier>
#include <QTimer>

#include <cerrno>
#include <chrono>
#include <utility>

namespace qx {

namespace {

constexpr qsizetype bufferLimit = 4096; // bytes, of Qt's read buffer and of our line buffer
constexpr std::chrono::milliseconds lineCheckInterval{500};

} // namespace

SerialController::SerialController(QObject *parent)
    : SerialController(new QSerialPort, parent)
{}

SerialController::SerialController(QSerialPort *port, QObject *parent)
    : QObject(parent)
    , ioTimer(new QTimer(this))
    , serialPort(port)
    , lineWatch(new QSocketNotifier(QSocketNotifier::Exception, this))
{
    serialPort->setParent(this);
    ioTimer->setInterval(lineCheckInterval);
    connect(serialPort, &QSerialPort::readyRead, this, &SerialController::readAvailableData);
    connect(serialPort, &QSerialPort::bytesWritten, this, &SerialController::reportBytesWritten);
    connect(serialPort, &QSerialPort::errorOccurred, this, &SerialController::handlePortError);
    connect(ioTimer, &QTimer::timeout, this, &SerialController::checkLine);
    connect(lineWatch, &QSocketNotifier::activated, this, &SerialController::checkLine);
}

SerialController::~SerialController()
{
    close();
}

bool SerialController::open(const QString &portName, int baudRate)
{
    // The original may change in a receiver's hands.
    const QString name = portName; // NOLINT(performance-unnecessary-copy-initialization)
    close();
    if (isOpen())
        return false; // a receiver of the disconnection opened a port of its own

    serialPort->setPortName(name);
    serialPort->setReadBufferSize(bufferLimit);
    if (!configurePort(baudRate)) {
        return reportOpenFailure(
            Language::text(UiText::ConfigurePortFailed)
                .arg(name, QString::number(baudRate), serialPort->errorString()));
    }
    const bool opened = openPort();
    const QString reason = serialPort->errorString();
    if (opened)
        openedPortName = name;
    const QStringList complaints = std::exchange(openErrors, {});
    for (const QString &message : complaints)
        emit errorOccurred(message);
    if (opened != isOpen())
        return false; // a receiver of the error closed the port, or opened one of its own
    if (!opened)
        return reportOpenFailure(Language::text(UiText::OpenPortFailed).arg(name, reason));

    rxBuffer.clear();
    watchLine();
    emit connectionChanged(true,
                           Language::text(UiText::PortOpened).arg(name, QString::number(baudRate)));
    return isOpen();
}

bool SerialController::configurePort(int baudRate)
{
    return serialPort->setBaudRate(baudRate, QSerialPort::AllDirections) &&
           serialPort->setDataBits(QSerialPort::Data8) &&
           serialPort->setParity(QSerialPort::NoParity) &&
           serialPort->setStopBits(QSerialPort::OneStop) &&
           serialPort->setFlowControl(QSerialPort::NoFlowControl);
}

bool SerialController::openPort()
{
    opening = true;
    const bool opened = serialPort->open(QIODevice::ReadWrite);
    opening = false;
    if (opened) {
        // A line that is gone again already complains here; watchLine() tells of it.
        const QSignalBlocker silence(serialPort);
        serialPort->clear();
    }
    return opened;
}

bool SerialController::reportOpenFailure(const QString &message)
{
    unannounced = message;
    emit errorOccurred(message);
    announceDisconnection();
    return false;
}

void SerialController::close()
{
    announceDisconnection();
    if (!isOpen())
        return;
    const QString name = openedPortName;
    releasePort();
    emit connectionChanged(false, Language::text(UiText::DisconnectedFrom).arg(name));
}

bool SerialController::isOpen() const
{
    return serialPort && serialPort->isOpen();
}

QString SerialController::portName() const
{
    return openedPortName;
}

qint64 SerialController::send(const QByteArray &data)
{
    if (!isOpen()) {
        emit errorOccurred(Language::text(UiText::CommandNotSent));
        return -1;
    }
    const qint64 accepted = serialPort->write(data);
    if (accepted < 0) {
        reportIoError(Language::text(UiText::SerialWriteOperation));
        return -1;
    }
    if (accepted != data.size()) {
        emit errorOccurred(Language::text(UiText::SerialWritePartial)
                               .arg(QString::number(accepted), QString::number(data.size())));
        return -1;
    }
    // Flushing a line that takes nothing now counts as a failed port, and QSerialPort forgets to
    // count what is flushed while it reports a count: the event loop writes then.
    if (!reportingBytes && lineTakesBytes(*serialPort))
        serialPort->flush();
    return accepted;
}

void SerialController::reportBytesWritten(qint64 count)
{
    const QScopedValueRollback<bool> inside(reportingBytes, true);
    emit bytesTransmitted(count);
}

QList<SerialPortEntry> SerialController::availablePorts() const
{
    return portEntries(systemPorts(), systemPortRule());
}

void SerialController::readAvailableData()
{
    if (isOpen())
        processReceivedData(serialPort->readAll());
}

void SerialController::processReceivedData(const QByteArray &data)
{
    if (data.isEmpty())
        return;
    // Kept before anyone hears of it: a receiver that closes the port empties the buffer, and
    // nothing of this connection reaches the next.
    rxBuffer.append(data);
    emit rawReceived(data);
    if (rxBuffer.size() > bufferLimit) {
        rxBuffer.clear();
        emit errorOccurred(Language::text(UiText::ResponseBufferOverflow));
        return;
    }
    for (qsizetype end; (end = rxBuffer.indexOf('\n')) >= 0;) {
        QByteArray line = rxBuffer.first(end);
        rxBuffer.remove(0, end + 1);
        if (line.endsWith('\r'))
            line.chop(1);
        if (!line.isEmpty())
            emit lineReceived(line);
    }
}

void SerialController::handlePortError(QSerialPort::SerialPortError error)
{
    switch (error) {
    case QSerialPort::NoError:
    case QSerialPort::NotOpenError:
        return;
    case QSerialPort::DeviceNotFoundError:
    case QSerialPort::PermissionError:
    case QSerialPort::ResourceError:
        reportIoError(Language::text(UiText::MacSerialPort));
        return;
    default:
        break;
    }
    if (isOpen() && lineIsLost(*serialPort)) {
        reportIoError(Language::text(UiText::MacSerialPort));
        return;
    }
    const QString message =
        Language::text(UiText::MacSerialPortError).arg(serialPort->errorString());
    if (opening)
        openErrors.append(message);
    else
        emit errorOccurred(message);
}

void SerialController::reportIoError(const QString &operation)
{
    const QString message = Language::text(UiText::OperationFailed).arg(operation, portErrorText());
    if (opening) {
        openErrors.append(message);
        return;
    }
    if (isOpen()) {
        releasePort();
        unannounced = message;
    }
    emit errorOccurred(message);
    announceDisconnection();
}

// On a line that hung up, the port's own text comes from an unrelated errno.
QString SerialController::portErrorText() const
{
    return isOpen() && lineIsLost(*serialPort) ? qt_error_string(EIO) : serialPort->errorString();
}

void SerialController::watchLine()
{
    ioTimer->start();
    if (const qintptr descriptor = openWatch(*serialPort); descriptor >= 0) {
        lineWatch->setSocket(descriptor);
        lineWatch->setEnabled(true);
    }
}

void SerialController::checkLine()
{
    if (isOpen() && lineIsLost(*serialPort))
        reportIoError(Language::text(UiText::MacSerialPort));
}

// A dead port complains about clear() and close() while it still counts as open; heard here,
// that would end in releasePort() again, without end.
void SerialController::releasePort()
{
    ioTimer->stop();
    lineWatch->setEnabled(false);
    closeWatch(lineWatch->socket());
    lineWatch->setSocket(-1);
    const QSignalBlocker silence(serialPort);
    serialPort->clear();
    serialPort->close();
    openedPortName.clear();
    rxBuffer.clear();
}

// A receiver of errorOccurred() may already open the next port: the loss is announced first.
void SerialController::announceDisconnection()
{
    if (unannounced)
        emit connectionChanged(false, *std::exchange(unannounced, std::nullopt));
}

} // namespace qx
