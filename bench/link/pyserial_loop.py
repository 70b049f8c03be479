#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What a user would otherwise write: the same closed loop with pyserial.

pyserial_loop.py PORT FRAMES
"""
import sys

import serial

HEADER = bytes((0xFF, 0xFF, 0x17, 0x12, 0x34, 0x17))


def frame(number):
    body = HEADER + bytes((0,)) + number.to_bytes(2, "big") + bytes(10)
    checksum = 0
    for byte in body:
        checksum ^= byte
    return body + bytes((checksum,))


with serial.Serial(sys.argv[1], 115200, timeout=5) as port:
    port.write(b"QXUSB HELLO\n")
    assert port.readline() == b"QXUSB OK\n"
    for number in range(int(sys.argv[2])):
        port.write(frame(number & 0xFFFF))
        assert port.readline() == b"QXUSB RX OK\n"
