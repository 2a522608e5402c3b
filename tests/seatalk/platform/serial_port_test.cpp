#include "seatalk/platform/serial_port.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <QTemporaryDir>
#include <cstdio>
#include <string>
#include <vector>

#include "livedata/platform/event_loop_wait.h"

namespace wakeline {
namespace {

// A pseudo-terminal: the master end stands for the bus, the slave for the serial device.
struct Pty {
    Pty() {
        master = ::posix_openpt(O_RDWR | O_NOCTTY);
        if (master >= 0 && ::grantpt(master) == 0 && ::unlockpt(master) == 0) {
            slave = ::ptsname(master);
        }
    }
    ~Pty() { Close(); }
    void Close() {
        if (master >= 0) {
            ::close(master);
            master = -1;
        }
    }
    int master = -1;
    std::string slave;
};

struct Recorder {
    explicit Recorder(SeaTalkSerialPort& port) {
        QObject::connect(&port, &SeaTalkSerialPort::bytesReceived,
                         [this](const QByteArray& b) { bytes += b; });
        QObject::connect(&port, &SeaTalkSerialPort::userMessage, [this](const QString& t) {
            messages.push_back(t);
            told.push_back("message: " + t);
        });
        QObject::connect(&port, &SeaTalkSerialPort::logLine,
                         [this](const QString& t) { told.push_back("log: " + t); });
        QObject::connect(&port, &SeaTalkSerialPort::opened, [this] { ++opened; });
        QObject::connect(&port, &SeaTalkSerialPort::lost, [this] { ++lost; });
    }
    QByteArray bytes;
    std::vector<QString> messages;
    // Messages and log lines in the order given out; a run logs its messages, so each text
    // must come through one of the two only.
    std::vector<QString> told;
    int opened = 0;
    int lost = 0;
};

TEST(SeaTalkSerialPort, SetsThePortUpAndTellsWhatAPtyRefuses) {
    testing::EnsureCoreApplication();
    QTemporaryDir dir;
    auto pty = std::make_unique<Pty>();
    ASSERT_FALSE(pty->slave.empty());
    // The port is opened through a link, so a new pseudo-terminal can take the old one's place.
    const QString link = dir.filePath("ttySeaTalk");
    ASSERT_EQ(::symlink(pty->slave.c_str(), link.toLocal8Bit().constData()), 0);

    SeaTalkSerialPort port(link);
    port.SetRetryInterval(50);
    Recorder seen(port);
    ASSERT_TRUE(port.Start().Ok());

    termios t{};
    ASSERT_EQ(::tcgetattr(port.Descriptor(), &t), 0);
    EXPECT_EQ(t.c_cflag & CSIZE, tcflag_t(CS8));
    EXPECT_EQ(t.c_cflag & (PARODD | CSTOPB), 0u);
    EXPECT_EQ(t.c_cflag & (CLOCAL | CREAD), tcflag_t(CLOCAL | CREAD));
    EXPECT_EQ(t.c_iflag & (INPCK | PARMRK), tcflag_t(INPCK | PARMRK));
    EXPECT_EQ(t.c_iflag & (IGNPAR | ISTRIP | IXON | ICRNL), 0u);
    EXPECT_EQ(t.c_lflag & (ICANON | ECHO | ISIG), 0u);
    EXPECT_EQ(cfgetispeed(&t), speed_t(B4800));

    // The kernel clears PARENB on a pty: told once, naming the device and the setting.
    EXPECT_TRUE(port.Refused().contains(QStringLiteral("space parity (PARENB)")));
    // The refusal comes before the line that the port was opened, which claims no space parity.
    ASSERT_EQ(seen.told.size(), 2u);
    EXPECT_TRUE(seen.told[0].startsWith("message: SeaTalk port " + link + " refused "));
    EXPECT_TRUE(seen.told[0].contains(QStringLiteral("space parity (PARENB)")));
    EXPECT_EQ(seen.told[1], "log: SeaTalk port " + link + " opened with the settings it kept");

    // Bytes pass unchanged, except that parity marking doubles a data byte 0xFF.
    const unsigned char sent[] = {0x84, 0x42, 0xFF};
    ASSERT_EQ(::write(pty->master, sent, sizeof sent), 3);
    ASSERT_TRUE(testing::WaitUntil([&] { return seen.bytes.size() >= 4; }));
    EXPECT_EQ(seen.bytes, QByteArray("\x84\x42\xFF\xFF", 4));

    // The device goes away: told once, then opened again when it is back.
    pty->Close();
    ASSERT_TRUE(testing::WaitUntil([&] { return seen.lost == 1; }));
    EXPECT_FALSE(port.IsOpen());
    ASSERT_EQ(seen.messages.size(), 2u);
    EXPECT_TRUE(seen.messages[1].contains(QStringLiteral("was lost")));

    auto back = std::make_unique<Pty>();
    ASSERT_FALSE(back->slave.empty());
    ::unlink(link.toLocal8Bit().constData());
    ASSERT_EQ(::symlink(back->slave.c_str(), link.toLocal8Bit().constData()), 0);
    ASSERT_TRUE(testing::WaitUntil([&] { return seen.opened == 2; }));
    EXPECT_TRUE(port.IsOpen());
    EXPECT_EQ(seen.messages.size(), 2u);  // the refusal was told already: the log alone has it
    ASSERT_EQ(seen.told.size(), 5u);
    EXPECT_TRUE(seen.told[3].startsWith("log: SeaTalk port " + link + " refused "));
    EXPECT_TRUE(seen.told[4].contains(" opened "));
    port.Stop();
}

TEST(SeaTalkSerialPort, AMissingDeviceIsToldOnceAndTriedAgain) {
    testing::EnsureCoreApplication();
    QTemporaryDir dir;
    const QString missing = dir.filePath("ttyUSB9");
    SeaTalkSerialPort port(missing);
    port.SetRetryInterval(20);
    Recorder seen(port);
    EXPECT_EQ(port.Start().Message(),
              "could not open " + missing.toStdString() + ": No such file or directory");
    ASSERT_EQ(seen.messages.size(), 1u);
    EXPECT_EQ(seen.messages[0], "SeaTalk port " + missing +
                                    " cannot be opened: No such file or directory; trying again "
                                    "every 0.02 seconds");

    // A file that is no serial port is refused too, still without a second message.
    QFile notATty(missing);
    ASSERT_TRUE(notATty.open(QIODevice::WriteOnly));
    notATty.close();
    testing::WaitUntil([] { return false; }, 150);
    EXPECT_FALSE(port.IsOpen());
    EXPECT_EQ(seen.messages.size(), 1u);
    port.Stop();
}

}  // namespace
}  // namespace wakeline
