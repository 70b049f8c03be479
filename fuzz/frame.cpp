// SPDX-License-Identifier: MIT
// Any bytes as a frame, as a line, and as what a player receives.
#include "protocol/protocol.h"
#include "simulator/wiredecoder.h"

#include <cstdlib>

using qx::Protocol;

namespace {

void require(bool holds)
{
    if (!holds)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const bool valid = Protocol::isValidControlFrame(bytes);
    require(valid != Protocol::frameSummary(bytes).isEmpty());
    if (valid) {
        require(bytes.size() == 20);
        require(Protocol::controlFrameChecksum(bytes) == static_cast<quint8>(bytes.at(19)));
    }
    const qsizetype hexSize = Protocol::bytesToHex(bytes).size();
    require(hexSize == (bytes.isEmpty() ? 0 : 3 * bytes.size() - 1));
    Protocol::parseReply(bytes);

    qx::ControlFrame frame;
    for (qsizetype i = 0; i < qMin(bytes.size(), qsizetype{6}); ++i)
        frame.reserved[static_cast<std::size_t>(i)] = static_cast<quint8>(bytes.at(i));
    require(Protocol::isValidControlFrame(Protocol::encodeControlFrame(frame)));

    // Whatever came before, a player finds a good frame that is sent three times: the first may
    // complete the garbage, as on a real line. Nobody can tell where a frame begins that has the
    // header in its reserved bytes as well: every turn of its 20 bytes is a valid frame.
    qx::WireDecoder decoder;
    decoder.append(bytes);
    const QByteArray good = Protocol::encodeControlFrame(frame);
    if ((good + good).indexOf(good.first(6), 1) != good.size())
        return 0;
    decoder.append(good + good + good);
    bool found = false;
    while (const auto item = decoder.next())
        found = found || item->bytes == good;
    require(found);
    return 0;
}
