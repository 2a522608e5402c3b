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
    Pty() : master(::posix_openpt(O_RDWR | O_NOCTTY)) {
        if (master >= 0 && ::grantpt(master) == 0 && ::unlockpt(master) == 0) {
            slave = ::ptsname(master);
        }
    }
    ~Pty() { ::close(master); }
    int master;
    std::string slave;
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
    // Messages for the user and log lines in the order given out; a run logs its messages, so
    // each text must come through one of the two only.
    std::vector<QString> told, messages;
    QObject::connect(&port, &SeaTalkSerialPort::userMessage, [&](const QString& text) {
        messages.push_back(text);
        told.push_back("message: " + text);
    });
    QObject::connect(&port, &SeaTalkSerialPort::logLine,
                     [&](const QString& text) { told.push_back("log: " + text); });
    ASSERT_TRUE(port.Start().Ok());

    termios t{};
    ASSERT_EQ(::tcgetattr(port.Descriptor(), &t), 0);
    EXPECT_EQ(t.c_cflag & (CSIZE | PARODD | CSTOPB | CLOCAL | CREAD),
              tcflag_t(CS8 | CLOCAL | CREAD));
    EXPECT_EQ(t.c_iflag & (INPCK | PARMRK | IGNPAR | ISTRIP | IXON | ICRNL),
              tcflag_t(INPCK | PARMRK));
    EXPECT_EQ(t.c_lflag & (ICANON | ECHO | ISIG), 0u);
    EXPECT_EQ(cfgetispeed(&t), speed_t(B4800));

    // The kernel clears PARENB on a pty: told once, naming the device and the setting.
    // The refusal comes before the line that the port was opened, which claims no space parity.
    ASSERT_EQ(told.size(), 2u);
    EXPECT_TRUE(told[0].startsWith("message: SeaTalk port " + link + " refused "));
    EXPECT_TRUE(told[0].contains(QStringLiteral("space parity (PARENB)")));
    EXPECT_EQ(told[1], "log: SeaTalk port " + link + " opened with the settings it kept");

    // The device goes away: told once, then opened again when it is back.
    pty.reset();
    ASSERT_TRUE(testing::WaitUntil([&] { return messages.size() == 2; }));
    EXPECT_FALSE(port.IsOpen());
    EXPECT_TRUE(messages[1].contains(QStringLiteral("was lost")));

    const Pty back;
    ASSERT_FALSE(back.slave.empty());
    ::unlink(link.toLocal8Bit().constData());
    ASSERT_EQ(::symlink(back.slave.c_str(), link.toLocal8Bit().constData()), 0);
    ASSERT_TRUE(testing::WaitUntil([&] { return port.IsOpen(); }));
    EXPECT_EQ(messages.size(), 2u);  // the refusal was told already: the log alone has it
    ASSERT_EQ(told.size(), 5u);
    EXPECT_TRUE(told[3].startsWith("log: SeaTalk port " + link + " refused "));
    EXPECT_TRUE(told[4].contains(" opened "));
    port.Stop();
}

TEST(SeaTalkSerialPort, AMissingDeviceIsToldOnceAndTriedAgain) {
    testing::EnsureCoreApplication();
    QTemporaryDir dir;
    const QString missing = dir.filePath("ttyUSB9");
    SeaTalkSerialPort port(missing);
    port.SetRetryInterval(20);
    std::vector<QString> told;  // the messages for the user
    QObject::connect(&port, &SeaTalkSerialPort::userMessage,
                     [&](const QString& text) { told.push_back(text); });
    EXPECT_EQ(port.Start().Message(),
              "could not open " + missing.toStdString() + ": No such file or directory");
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0], "SeaTalk port " + missing +
                           " cannot be opened: No such file or directory; trying again "
                           "every 0.02 seconds");

    // A file that is no serial port is refused too, still without a second message.
    QFile notATty(missing);
    ASSERT_TRUE(notATty.open(QIODevice::WriteOnly));
    notATty.close();
    testing::WaitUntil([] { return false; }, 150);
    EXPECT_FALSE(port.IsOpen());
    EXPECT_EQ(told.size(), 1u);
    port.Stop();
}

}  // namespace
}  // namespace wakeline
