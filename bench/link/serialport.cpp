// SPDX-License-Identifier: MIT
// What Qt's serial port costs: the same closed loop without a window.
// bench_serialport PORT FRAMES
#include "protocol/protocol.h"

#include <QCoreApplication>
#include <QSerialPort>

#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    if (argc != 3) {
        std::fprintf(stderr, "usage: bench_serialport PORT FRAMES\n");
        return 2;
    }
    QSerialPort port;
    port.setPortName(QString::fromLocal8Bit(argv[1]));
    port.setBaudRate(115200);
    if (!port.open(QIODevice::ReadWrite))
        return 1;
    const int frames = QByteArray(argv[2]).toInt();
    int sent = 0;
    QByteArray received;
    QObject::connect(&port, &QSerialPort::readyRead, &application, [&] {
        received += port.readAll();
        if (!received.endsWith('\n'))
            return;
        received.clear();
        if (sent == frames) {
            application.quit();
            return;
        }
        qx::ControlFrame frame;
        frame.frame = static_cast<quint16>(sent++);
        port.write(qx::Protocol::encodeControlFrame(frame));
        port.flush();
    });
    port.write(qx::Protocol::handshake());
    return application.exec();
}
