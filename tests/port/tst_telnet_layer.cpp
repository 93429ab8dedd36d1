// The Telnet layer of an RFC 2217 port, and the names of device servers.
#include "net_device.h"
#include "rows.h"
#include "telnet_layer.h"

#include <QtTest>

namespace {

B hex(const char *text) {
    return B::fromHex(text);
}

} // namespace

class TstTelnetLayer : public QObject {
    Q_OBJECT
private slots:
    // The server's bytes in pieces: the line's characters kept, our answers to its
    // negotiation, its answers to our COM port requests, and where it broke the protocol.
    void feed_data() {
        QTest::addColumn<QByteArrayList>("chunks"); // in hex
        QTest::addColumn<B>("data");
        QTest::addColumn<B>("replies");       // hex
        QTest::addColumn<QString>("answers"); // "command:value hex" each, blank-separated
        QTest::addColumn<QString>("garbage"); // a word of it; empty: none
        QTest::addColumn<bool>("refused");
        row("plain", QByteArrayList{"4c310d"}, B("L1\r"), B(), QString(), QString(), false);
        row("IAC doubled, split", QByteArrayList{"41ff", "ff42"},
            B("A\xff"
              "B"),
            B(), QString(), QString(), false);
        // ser2net's opening: SGA both ways taken, ECHO refused, our own requests not answered.
        row("ser2net opening", QByteArrayList{"fffb03fffd03fffb01fffe01fffd00fffb00fffd2c"}, B(),
            B("fffd03fffb03fffe01"), QString(), QString(), false);
        row("answers", QByteArrayList{"fffa2c6500002580fff0fffa2c", "6603fff0fffa2c6bfffff0"}, B(),
            B(), QStringLiteral("1:00002580 2:03"), QString(), false);
        // A client's command coming from the server is not ours to obey.
        row("client command from server", QByteArrayList{"fffa2c0102fff0"}, B(), B(), QString(),
            QString(), false);
        row("other option's subnegotiation", QByteArrayList{"fffa1801fff0"}, B(), B(), QString(),
            QString(), false);
        row("unknown option asked", QByteArrayList{"fffd18fffb1f"}, B(), B("fffc18fffe1f"),
            QString(), QString(), false);
        row("NOP and go-ahead in data", QByteArrayList{"41fff1fff942"}, B("AB"), B(), QString(),
            QString(), false);
        row("com port refused", QByteArrayList{"fffe2c"}, B(), B(), QString(), QString(), true);
        row("IAC then data byte", QByteArrayList{"41ff4142"}, B("A"), B(), QString(),
            QStringLiteral("41"), false);
        row("SE alone", QByteArrayList{"fff0"}, B(), B(), QString(), QStringLiteral("no Telnet"),
            false);
        row("subnegotiation broken", QByteArrayList{"fffa2c65ff41"}, B(), B(), QString(),
            QStringLiteral("broken"), false);
        row("subnegotiation endless", QByteArrayList{"fffa2c" + B(80, 'a').toHex()}, B(), B(),
            QString(), QStringLiteral("longer"), false);
        row("nothing behind garbage", QByteArrayList{"41ff01", "42"}, B("A"), B(), QString(),
            QStringLiteral("01"), false);
    }
    void feed() {
        QFETCH(QByteArrayList, chunks);
        TelnetLayer t;
        B data;
        for (const B &c : chunks)
            t.feed(hex(c), data);
        QTEST(data, "data");
        QTEST(t.takeReplies().toHex(), "replies");
        QStringList answers;
        for (const ComPortAnswer &a : t.takeAnswers())
            answers << QStringLiteral("%1:%2").arg(a.command).arg(QString(a.value.toHex()));
        QTEST(answers.join(' '), "answers");
        QFETCH(QString, garbage);
        QVERIFY2(garbage.isEmpty() ? t.garbage().isEmpty() : t.garbage().contains(garbage),
                 qPrintable(t.garbage()));
        QTEST(t.comPortRefused(), "refused");
    }

    // Every byte value goes out and comes back as it was, whatever the pieces.
    void roundTrip() {
        B all;
        for (int i = 0; i < 512; ++i)
            all += char(i);
        const B wire = TelnetLayer::escape(all);
        QCOMPARE(wire.size(), all.size() + 2);
        for (int piece : {1, 2, 3, 255}) {
            TelnetLayer t;
            B data;
            for (qsizetype at = 0; at < wire.size(); at += piece)
                t.feed(wire.mid(at, piece), data);
            QCOMPARE(data, all);
            QVERIFY(t.garbage().isEmpty());
        }
        QCOMPARE(TelnetLayer::comPortRequest(1, hex("0000ff00")).toHex(),
                 B("fffa2c010000ffff00fff0"));
    }

    void names_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("parsed"); // "kind host port", or a word of the refusal
        row("raw", QStringLiteral("tcp://box:4001"), QStringLiteral("raw box 4001"));
        row("rfc2217, case, blanks", QStringLiteral(" RFC2217://10.0.0.5:2217/ "),
            QStringLiteral("rfc2217 10.0.0.5 2217"));
        row("ipv6", QStringLiteral("tcp://[::1]:7"), QStringLiteral("raw ::1 7"));
        row("ipv6 bare", QStringLiteral("tcp://::1:7"), QStringLiteral("brackets"));
        row("no port", QStringLiteral("tcp://box"), QStringLiteral("no TCP port"));
        row("port 0", QStringLiteral("tcp://box:0"), QStringLiteral("1 to 65535"));
        row("port big", QStringLiteral("tcp://box:65536"), QStringLiteral("1 to 65535"));
        row("port sign", QStringLiteral("tcp://box:+7"), QStringLiteral("1 to 65535"));
        row("no host", QStringLiteral("rfc2217://:7"), QStringLiteral("no host"));
        row("serial device", QStringLiteral("/dev/ttyS0"), QStringLiteral("tcp://HOST:PORT"));
    }
    void names() {
        QFETCH(QString, name);
        QFETCH(QString, parsed);
        QString why;
        const std::optional<NetDevice> d = parseNetDevice(name, &why);
        QCOMPARE(isNetDeviceName(name), name.contains(QStringLiteral("://")));
        if (!d) {
            QVERIFY2(why.contains(parsed), qPrintable(why));
            return;
        }
        QCOMPARE(QStringLiteral("%1 %2 %3")
                     .arg(d->kind == NetDevice::Kind::Raw ? "raw" : "rfc2217", d->host)
                     .arg(d->port),
                 parsed);
        QCOMPARE(parseNetDevice(d->name())->name(), d->name());
    }
};

QTEST_GUILESS_MAIN(TstTelnetLayer)
#include "tst_telnet_layer.moc"
