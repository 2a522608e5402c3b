// The link's own socket handling, below what a run through the program can see: lines split
// across writes, the drop of an over-long line, and lines still buffered when the peer closes.

#include "livedata/platform/tcp_link.h"

#include <gtest/gtest.h>

#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>
#include <string>
#include <vector>

#include "livedata/platform/event_loop_wait.h"

namespace wakeline {
namespace {

using testing::WaitUntil;

TEST(TcpLinkTest, SplitAndOverLongLinesThenAFloodArrivesWholeBeforeTheClose) {
    testing::EnsureCoreApplication();
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost, 0));
    TcpLink link(LinkEndpoint{"127.0.0.1", server.serverPort()});
    std::vector<std::string> events, lines;
    QObject::connect(&link, &TcpLink::connected, [&] { events.push_back("connected"); });
    QObject::connect(&link, &TcpLink::closed, [&] { events.push_back("closed"); });
    QObject::connect(&link, &TcpLink::lineDropped, [&] { events.push_back("dropped"); });
    QObject::connect(&link, &TcpLink::lineReceived,
                     [&](const QByteArray& line) { lines.push_back(line.toStdString()); });
    ASSERT_TRUE(link.Connect());
    ASSERT_TRUE(WaitUntil([&] { return server.hasPendingConnections(); }));
    QTcpSocket* peer = server.nextPendingConnection();
    const auto send = [&](const QByteArray& bytes) {
        peer->write(bytes);
        ASSERT_TRUE(WaitUntil([&] { return peer->bytesToWrite() == 0; }));
    };
    send("12.");
    ASSERT_TRUE(WaitUntil([&] { return link.IsConnected(); }));
    send("0,N\r");
    send("\n\xff\x01\n");
    send(QByteArray(1024 * 1024, 'x') + "\nnext\n");
    ASSERT_TRUE(WaitUntil([&] { return lines.size() == 3; }));
    EXPECT_EQ(lines, (std::vector<std::string>{"12.0,N", "\xff\x01", "next"}));

    // About 600 KB written and closed while this end's loop stands still, so the close is seen
    // while much of the flood is still unread.
    lines.clear();
    QByteArray flood;
    for (int i = 0; i < 10000; ++i) {
        flood += "line " + QByteArray::number(i) + ",5230.1234,N,00412.5678,E,6.2,184.0\r\n";
    }
    peer->write(flood);
    for (int turn = 0; turn < 100 && peer->bytesToWrite() > 0; ++turn) {
        peer->waitForBytesWritten(100);
    }
    peer->disconnectFromHost();
    ASSERT_TRUE(WaitUntil([&] { return !events.empty() && events.back() == "closed"; }));
    ASSERT_EQ(lines.size(), 10000U);
    for (int i = 0; i < 10000; ++i) {
        ASSERT_EQ(lines[std::size_t(i)],
                  "line " + std::to_string(i) + ",5230.1234,N,00412.5678,E,6.2,184.0");
    }
    EXPECT_EQ(events, (std::vector<std::string>{"connected", "dropped", "closed"}));
    EXPECT_FALSE(link.IsConnected());
}

}  // namespace
}  // namespace wakeline
