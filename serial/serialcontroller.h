// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QSerialPort>
#include <QString>

#include <optional>

QT_BEGIN_NAMESPACE
class QSocketNotifier;
class QTimer;
QT_END_NAMESPACE

namespace qx {

/// One port that the operator can choose.
struct SerialPortEntry
{
    QString portName;     ///< system location, what SerialController::open() takes
    QString displayText;  ///< "/dev/ttyACM0 — Demo Unit [1A2B:00FE]"
    QString description;  ///< trimmed; may be empty
    QString manufacturer; ///< trimmed; may be empty; not shown
    quint16 vendorId = 0; ///< USB identifiers; 0 when not known
    quint16 productId = 0;
    bool hasVendorId = false;
    bool hasProductId = false;
};

/// The link to one player: opens a port at 8 data bits, no parity, one stop bit and no flow
/// control, writes whole byte arrays, and cuts what comes back into lines.
///
/// Knows no frames and writes no log. Every failure leaves as a signal with a message in the
/// interface language. Signals may be emitted from inside open(), close(), send() and the
/// destructor; a receiver may call any of the three in turn, but must not delete the controller.
///
/// A device that vanishes ends in exactly one errorOccurred() and one connectionChanged(false)
/// with the same message, and a closed port.
class SerialController : public QObject
{
    Q_OBJECT

public:
    explicit SerialController(QObject *parent = nullptr);
    ~SerialController() override; ///< closes the port first, with the usual signal

    /// Opens the port `portName` (a system location) at `baudRate` for both directions; a port
    /// that is already open is closed first. True: open, and announced by
    /// connectionChanged(true). False: not opened, the reason sent by errorOccurred() and
    /// connectionChanged(false), or a receiver closed it again. A receiver that opens a port
    /// itself meanwhile keeps that one.
    bool open(const QString &portName, int baudRate);

    /// Closes the port and discards what was not sent yet. Does nothing on a closed port.
    void close();

    bool isOpen() const;
    QString portName() const; ///< of the open port; empty while closed

    /// Queues `data` and returns without waiting: the count of bytes accepted, which is all of
    /// them, or -1 after errorOccurred(). The device can vanish in the middle: the port may be
    /// closed although the bytes were accepted.
    qint64 send(const QByteArray &data);

    /// The ports of this moment, filtered, labelled and sorted.
    QList<SerialPortEntry> availablePorts() const;

signals:
    void connectionChanged(bool connected, const QString &message);
    void lineReceived(const QByteArray &line); ///< without its line end; never empty
    void rawReceived(const QByteArray &data);  ///< each chunk as it was read
    void bytesTransmitted(qint64 count);       ///< bytes that the system took, as it takes them
    void errorOccurred(const QString &message);

protected:
    /// For a port with behaviour of its own; takes ownership of `port`.
    SerialController(QSerialPort *port, QObject *parent);

private slots:
    void readAvailableData();

private:
    bool configurePort(int baudRate);
    bool openPort();
    bool reportOpenFailure(const QString &message);
    void handlePortError(QSerialPort::SerialPortError error);
    void reportIoError(const QString &operation);
    void reportBytesWritten(qint64 count);
    QString portErrorText() const;
    void watchLine();
    void checkLine();
    void releasePort();
    void announceDisconnection();
    void processReceivedData(const QByteArray &data);

    QTimer *ioTimer; ///< the slow look at the line while the port is open
    QSerialPort *serialPort;
    QString openedPortName;
    QByteArray rxBuffer;                ///< received bytes without a line feed yet; at most 4096
    QSocketNotifier *lineWatch;         ///< the quick look: wakes when the line hangs up
    bool opening = false;               ///< inside QSerialPort::open(), which bears no re-entry
    bool reportingBytes = false;        ///< inside bytesTransmitted()
    QStringList openErrors;             ///< messages held back while opening
    std::optional<QString> unannounced; ///< a connectionChanged(false) still to be emitted
};

} // namespace qx
