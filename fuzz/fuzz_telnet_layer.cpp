// The Telnet layer of an RFC 2217 port on what a device server may send, in any pieces: the
// line's characters escaped and mixed with commands come back exactly; on any bytes, what is
// kept is never more than came, nothing is kept behind garbage, and our replies are whole
// three-byte commands.

#include "fuzz_check.h"
#include "telnet_layer.h"

namespace {

void checkReplies(const QByteArray &r) {
    FUZZ_CHECK(r.size() % 3 == 0);
    for (qsizetype i = 0; i < r.size(); i += 3)
        FUZZ_CHECK(r[i] == Telnet::Iac && uchar(r[i + 1]) >= uchar(Telnet::Will));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    FuzzedDataProvider in(data, size);
    const int piece = in.ConsumeIntegralInRange<int>(1, 64);
    const bool wellFormed = in.ConsumeBool();
    const QByteArray body = restBytes(in);

    QByteArray wire, expected;
    if (wellFormed) {
        // The body read as runs of characters and negotiations, as a server would interleave them.
        for (qsizetype i = 0; i < body.size(); ++i) {
            const uchar c = uchar(body[i]);
            if (c % 7 == 0 && i + 1 < body.size()) {
                wire += QByteArray(1, Telnet::Iac) + char(Telnet::Will + c % 4) + body[++i];
            } else if (c % 11 == 0) {
                wire += TelnetLayer::comPortRequest(100 + c % 10, body.mid(i + 1, c % 5));
                i += c % 5;
            } else {
                wire += TelnetLayer::escape(QByteArray(1, char(c)));
                expected += char(c);
            }
        }
    } else {
        wire = body;
    }

    TelnetLayer t;
    QByteArray got;
    for (qsizetype at = 0; at < wire.size(); at += piece) {
        const qsizetype before = got.size();
        const bool broken = !t.garbage().isEmpty();
        t.feed(wire.mid(at, piece), got);
        FUZZ_CHECK(!broken || got.size() == before);
        checkReplies(t.takeReplies());
        t.takeAnswers();
    }
    FUZZ_CHECK(got.size() <= wire.size());
    if (wellFormed) {
        FUZZ_CHECK(t.garbage().isEmpty());
        FUZZ_CHECK(got == expected);
    }
    return 0;
}
