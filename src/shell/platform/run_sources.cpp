#include "shell/platform/run_sources.h"

#include <span>

#include "livedata/platform/replay_source.h"
#include "livedata/platform/tcp_link.h"
#include "seatalk/platform/replay_stream.h"
#include "seatalk/platform/serial_port.h"
#include "shell/navigation_centre.h"

namespace wakeline {

RunSources::RunSources(NavigationCentre& centre, ProgramOptions options, QObject* parent)
    : QObject(parent), centre_(centre), options_(std::move(options)) {}

RunSources::~RunSources() = default;

void RunSources::Start(const LinkEndpoint& endpoint) {
    connect(&timer1_, &QTimer::timeout, this, [this] { OnTick(); });
    if (centre_.State().Timer1Interval > 0) {
        timer1_.start(centre_.State().Timer1Interval);
    }
    if (options_.replay) {
        StartReplay();
    } else if (centre_.SeaTalkPortWanted()) {
        StartSeaTalk();
    } else if (centre_.State().DdeMode) {
        StartLink(endpoint);
    }
}

void RunSources::Stop() {
    stopped_ = true;
    timer1_.stop();
    if (replay_) {
        replay_->Stop();
    }
    if (link_) {
        link_->Close();
    }
    if (serial_) {
        serial_->Stop();
    }
    if (seaTalkReplay_) {
        seaTalkReplay_->Stop();
    }
}

void RunSources::StartReplay() {
    replay_ = std::make_unique<ReplaySource>(QString::fromStdString(*options_.replay), this);
    ReplaySource* replay = replay_.get();
    connect(replay, &ReplaySource::lineRead, this,
            [this](const QByteArray& line) { OnDataLine(line, true); });
    connect(replay, &ReplaySource::lineDropped, this,
            [this] { centre_.DebugWriteLine("Replay line too long, dropped"); });
    connect(replay, &ReplaySource::finished, this, [this](const QString& problem) {
        if (!problem.isEmpty()) {
            exitStatus_ = 1;
            centre_.ShowMessage("Replay ended: " + problem.toStdString());
        }
        emit sourceEnded();
    });
    if (!replay->Start()) {
        exitStatus_ = 1;
        centre_.ShowMessage(replay->ErrorText().toStdString());
        emit sourceEnded();
    }
}

void RunSources::StartLink(const LinkEndpoint& endpoint) {
    link_ = std::make_unique<TcpLink>(endpoint, this);
    TcpLink* link = link_.get();
    connect(link, &TcpLink::connected, this, [this] {
        centre_.OnLinkConnected();
        loggedFailure_.clear();
        centre_.DebugWriteLine("Link to the chart plotter up: " + options_.link);
    });
    connect(link, &TcpLink::connectFailed, this, [this](const Status& failure) {
        // The socket's reason, once per change like the status below.
        if (failure.Message() != loggedFailure_) {
            loggedFailure_ = failure.Message();
            centre_.DebugWriteLine("Link to the chart plotter: " + loggedFailure_);
        }
        const bool lostAfterData = centre_.OnLinkConnectFailed();
        // The status text goes to the log once per change: a plotter that stays away would
        // otherwise add a line ten times a second.
        if (centre_.LinkStatus().text != loggedStatus_) {
            loggedStatus_ = centre_.LinkStatus().text;
            centre_.DebugWriteLine("Link status: " + loggedStatus_);
        }
        emit changed();
        if (lostAfterData) {
            emit linkLostAfterData();
        }
    });
    connect(link, &TcpLink::closed, this, [this] {
        centre_.OnLinkClosed();
        loggedStatus_.clear();
        centre_.DebugWriteLine("Link to the chart plotter closed");
    });
    connect(link, &TcpLink::lineReceived, this,
            [this](const QByteArray& line) { OnDataLine(line, false); });
    connect(link, &TcpLink::lineDropped, this,
            [this] { centre_.DebugWriteLine("Link line too long, dropped"); });
    connect(link, &TcpLink::unendedLastLine, this, [this] {
        centre_.DebugWriteLine(
            "Link closed after a line without its line end; the line is taken as it is");
    });
}

void RunSources::StartSeaTalk() {
    const auto feed = [this](const QByteArray& bytes) {
        if (stopped_) {
            return;
        }
        centre_.OnSeaTalkBytes(
            std::span<const std::uint8_t>(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                                          static_cast<std::size_t>(bytes.size())));
        emit changed();
    };
    if (options_.seaTalkReplay) {
        seaTalkReplay_ = std::make_unique<SeaTalkReplayStream>(
            QString::fromStdString(*options_.seaTalkReplay), this);
        SeaTalkReplayStream* stream = seaTalkReplay_.get();
        connect(stream, &SeaTalkReplayStream::bytesReceived, this, feed);
        connect(stream, &SeaTalkReplayStream::finished, this, [this](const QString& problem) {
            centre_.OnSeaTalkEnd();
            if (!problem.isEmpty()) {
                exitStatus_ = 1;
                centre_.ShowMessage("SeaTalk replay ended: " + problem.toStdString());
            }
            emit changed();
            emit sourceEnded();
        });
        if (!stream->Start()) {
            exitStatus_ = 1;
            centre_.ShowMessage("SeaTalk replay cannot be read: " + *options_.seaTalkReplay);
            emit sourceEnded();
        }
        return;
    }
    serial_ = std::make_unique<SeaTalkSerialPort>(QString::fromStdString(options_.serial), this);
    SeaTalkSerialPort* port = serial_.get();
    connect(port, &SeaTalkSerialPort::bytesReceived, this, feed);
    // A message goes into the log as every message of the run does; the log lines are the rest.
    connect(port, &SeaTalkSerialPort::logLine, this,
            [this](const QString& text) { centre_.DebugWriteLine(text.toStdString()); });
    connect(port, &SeaTalkSerialPort::userMessage, this,
            [this](const QString& text) { centre_.ShowMessage(text.toStdString()); });
    // A port that is not there yet is tried again by the port itself; the run goes on.
    port->Start();
}

void RunSources::OnTick() {
    const bool switchLinkOn = centre_.Timer1_Timer();
    emit ticked();
    if (switchLinkOn && link_ && !stopped_) {
        link_->Connect();
    }
}

void RunSources::OnDataLine(const QByteArray& line, bool replay) {
    if (stopped_) {
        return;
    }
    const std::string_view text(line.constData(), static_cast<std::size_t>(line.size()));
    if (replay) {
        centre_.HandleReplayLine(text);
    } else {
        centre_.OnLinkLine(text);
    }
    emit changed();
}

}  // namespace wakeline
