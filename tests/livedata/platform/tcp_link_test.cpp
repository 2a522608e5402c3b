#include "livedata/platform/tcp_link.h"

#include <gtest/gtest.h>

#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>
#include <memory>
#include <string>
#include <vector>

#include "livedata/platform/event_loop_wait.h"

namespace wakeline {
namespace {

using testing::WaitUntil;

// What the link reported, in order.
struct Recorder {
    explicit Recorder(TcpLink& link) {
        QObject::connect(&link, &TcpLink::connected, [this] { events.push_back("connected"); });
        QObject::connect(&link, &TcpLink::connectFailed,
                         [this](const QString&) { events.push_back("failed"); });
        QObject::connect(&link, &TcpLink::closed, [this] { events.push_back("closed"); });
        QObject::connect(&link, &TcpLink::lineDropped, [this] { events.push_back("dropped"); });
        QObject::connect(&link, &TcpLink::lineReceived,
                         [this](const QByteArray& line) { lines.push_back(line.toStdString()); });
    }
    bool Saw(const std::string& event) const {
        return std::find(events.begin(), events.end(), event) != events.end();
    }
    std::vector<std::string> events;
    std::vector<std::string> lines;
};

class TcpLinkTest : public ::testing::Test {
  protected:
    void SetUp() override {
        testing::EnsureCoreApplication();
        ASSERT_TRUE(server_.listen(QHostAddress::LocalHost, 0));
        port_ = server_.serverPort();
        link_ = std::make_unique<TcpLink>(LinkEndpoint{"127.0.0.1", port_});
        recorder_ = std::make_unique<Recorder>(*link_);
    }

    // Connects the link and returns the server's end of the connection.
    QTcpSocket* Accept() {
        EXPECT_TRUE(link_->Connect());
        EXPECT_TRUE(WaitUntil([&] { return recorder_->Saw("connected"); }));
        EXPECT_TRUE(WaitUntil([&] { return server_.hasPendingConnections(); }));
        return server_.nextPendingConnection();
    }

    void Send(QTcpSocket* peer, const QByteArray& bytes) {
        peer->write(bytes);
        ASSERT_TRUE(WaitUntil([&] { return peer->bytesToWrite() == 0; }));
    }

    QTcpServer server_;
    quint16 port_ = 0;
    std::unique_ptr<TcpLink> link_;
    std::unique_ptr<Recorder> recorder_;
};

TEST_F(TcpLinkTest, RefusedWithoutAServerAndLinkedWhenItComesBack) {
    server_.close();
    ASSERT_TRUE(link_->Connect());
    EXPECT_FALSE(link_->Connect()) << "one attempt at a time";
    ASSERT_TRUE(WaitUntil([&] { return recorder_->Saw("failed"); }));
    EXPECT_EQ(recorder_->events, std::vector<std::string>{"failed"});
    EXPECT_FALSE(link_->IsConnecting());

    ASSERT_TRUE(server_.listen(QHostAddress::LocalHost, port_));
    QTcpSocket* peer = Accept();
    ASSERT_NE(peer, nullptr);
    EXPECT_TRUE(link_->IsConnected());
    EXPECT_EQ(recorder_->events, (std::vector<std::string>{"failed", "connected"}));
}

TEST_F(TcpLinkTest, LinesSplitAcrossWritesThenTheServerClosesAndReturns) {
    QTcpSocket* peer = Accept();
    ASSERT_NE(peer, nullptr);
    Send(peer, "52.5,4.9\n");
    ASSERT_TRUE(WaitUntil([&] { return recorder_->lines.size() == 1; }));
    Send(peer, "12.");
    Send(peer, "0,N\r");
    Send(peer, "\n\xff\x01\n");
    // A megabyte without a line end is dropped and the line after it arrives.
    Send(peer, QByteArray(1024 * 1024, 'x') + "\nnext\n");
    ASSERT_TRUE(WaitUntil([&] { return recorder_->lines.size() == 4; }));
    EXPECT_EQ(recorder_->lines,
              (std::vector<std::string>{"52.5,4.9", "12.0,N", "\xff\x01", "next"}));

    peer->disconnectFromHost();
    ASSERT_TRUE(WaitUntil([&] { return recorder_->Saw("closed"); }));
    EXPECT_FALSE(link_->IsConnected());

    // The chart plotter back again: a new connection works like the first.
    peer = Accept();
    ASSERT_NE(peer, nullptr);
    Send(peer, "again\n");
    ASSERT_TRUE(WaitUntil([&] { return recorder_->lines.size() == 5; }));
    EXPECT_EQ(recorder_->lines.back(), "again");
    EXPECT_EQ(recorder_->events,
              (std::vector<std::string>{"connected", "dropped", "closed", "connected"}));
}

TEST_F(TcpLinkTest, AFloodArrivesCompleteAndInOrderBeforeTheClose) {
    QTcpSocket* peer = Accept();
    ASSERT_NE(peer, nullptr);
    // About 600 KB: more than one turn reads, so part of it is still buffered at the close.
    const std::string tail = ",5230.1234,N,00412.5678,E,6.2,184.0,12.5,0.785,7.3,A,WP1";
    QByteArray flood;
    for (int i = 0; i < 10000; ++i) {
        flood += "line " + QByteArray::number(i) + QByteArray::fromStdString(tail) + "\r\n";
    }
    // Written and closed while the link's side of the loop stands still, so the close is seen
    // while much of the flood is still unread.
    peer->write(flood);
    for (int turn = 0; turn < 100 && peer->bytesToWrite() > 0; ++turn) {
        peer->waitForBytesWritten(100);
    }
    peer->disconnectFromHost();
    ASSERT_TRUE(WaitUntil([&] { return recorder_->Saw("closed"); }));
    ASSERT_EQ(recorder_->lines.size(), 10000U);
    for (int i = 0; i < 10000; ++i) {
        ASSERT_EQ(recorder_->lines[std::size_t(i)], "line " + std::to_string(i) + tail);
    }
    EXPECT_EQ(recorder_->events.back(), "closed");
}

}  // namespace
}  // namespace wakeline
