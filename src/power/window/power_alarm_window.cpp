#include "power/window/power_alarm_window.h"

#include <QEvent>
#include <QFont>
#include <QLabel>
#include <QPalette>
#include <QPushButton>
#include <QScreen>

#include "display/window/twips.h"

namespace wakeline {
namespace {

QColor ColourOf(std::uint32_t bgr) {
    return QColor(static_cast<int>(bgr & 0xFF), static_cast<int>((bgr >> 8) & 0xFF),
                  static_cast<int>((bgr >> 16) & 0xFF));
}

QString Latin1(const std::string& text) {
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

PowerAlarmWindow::PowerAlarmWindow(AlarmWindowHost& host, ChimePlayer& chime, QWidget* parent)
    : QWidget(parent, Qt::Window | Qt::WindowStaysOnTopHint),
      host_(host),
      chime_(chime),
      lblMsg_(new QLabel(this)),
      lblChime_(new QLabel(this)),
      lblSeconds_(new QLabel(this)),
      cmdNoticed_(new QPushButton(QString::fromLatin1(AlarmWindow::kNoticedCaption), this)) {
    setObjectName("frmPowerAlarm");
    setWindowTitle(QStringLiteral("Wakeline"));
    lblMsg_->setObjectName("lblMsg");
    lblMsg_->setAlignment(Qt::AlignCenter);
    lblMsg_->setWordWrap(true);
    QFont message = font();
    message.setPointSize(AlarmWindow::kMessagePoints);
    message.setBold(true);
    lblMsg_->setFont(message);
    QFont text = font();
    text.setPointSize(AlarmWindow::kTextPoints);
    lblChime_->setObjectName("lblChime");
    lblChime_->setWordWrap(true);
    lblChime_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    lblChime_->setFont(text);
    lblSeconds_->setObjectName("lblSeconds");
    lblSeconds_->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    lblSeconds_->setFont(text);
    cmdNoticed_->setObjectName("cmdNoticed");
    cmdNoticed_->setToolTip(QString::fromLatin1(AlarmWindow::kNoticedToolTip));
    text.setBold(true);
    cmdNoticed_->setFont(text);
    cmdNoticed_->setDefault(true);
    timer1_.setInterval(AlarmWindow::kTimerMilliseconds);
    connect(&timer1_, &QTimer::timeout, this, [this] { Timer1_Timer(); });
    connect(cmdNoticed_, &QPushButton::clicked, this, [this] { cmdNoticed_Click(); });
    ApplyGeometry();
    ApplyColours();
}

void PowerAlarmWindow::ShowPowerAlarm(const PowerState& state, DateTime now) {
    if (isVisible()) {
        // It stays on top by itself; a new message is raised, but nothing is activated: doing
        // that at every check would take the keyboard from the chart plotter and restart the
        // count ten times a second.
        if (core_.ShowAgain(state, now)) {
            ShowTexts();
            raise();
        }
        return;
    }
    core_.SetAlarmMessage(state, now);
    ShowTexts();
    show();
    raise();
    activateWindow();
}

void PowerAlarmWindow::Timer1_Timer() {
    if (core_.Timer1_Timer(host_.AlarmPowerState().AlarmState)) {
        if (const auto failure = core_.ChimePlayed(chime_.PlayChime())) {
            host_.ShowChimeFailure(*failure);
        }
    }
    ShowTexts();
}

void PowerAlarmWindow::cmdNoticed_Click() {
    timer1_.stop();
    host_.AcknowledgeAlarm();
    hide();
}

bool PowerAlarmWindow::event(QEvent* event) {
    if (event->type() == QEvent::WindowActivate) {
        // Brought back to the sailor's eye: the message is set again, with its time now.
        core_.SetAlarmMessage(host_.AlarmPowerState(), host_.AlarmNow());
        ShowTexts();
    }
    return QWidget::event(event);
}

void PowerAlarmWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    ApplyGeometry();  // the screen, and with it the dots per inch, may have changed
    timer1_.start();
}

void PowerAlarmWindow::hideEvent(QHideEvent* event) {
    timer1_.stop();
    QWidget::hideEvent(event);
}

void PowerAlarmWindow::ShowTexts() {
    const QString message = Latin1(core_.Message());
    if (lblMsg_->text() != message) {
        lblMsg_->setText(message);
    }
    lblSeconds_->setText(Latin1(core_.SecondsText()));
    const QString problem = Latin1(core_.ChimeProblem());
    if (lblChime_->text() != problem) {
        lblChime_->setText(problem);
    }
}

void PowerAlarmWindow::SetNight(bool on) {
    night_ = on;
    ApplyColours();
}

void PowerAlarmWindow::ApplyGeometry() {
    const double dpi = screen() != nullptr ? screen()->logicalDotsPerInch() : 96.0;
    const AlarmWindowGeometry g = AlarmWindow::Geometry();
    setFixedSize(TwipsToPixels(g.width, dpi), TwipsToPixels(g.height, dpi));
    lblMsg_->setGeometry(ToPixels(g.message, dpi));
    lblChime_->setGeometry(ToPixels(g.chimeProblem, dpi));
    lblSeconds_->setGeometry(ToPixels(g.seconds, dpi));
    cmdNoticed_->setGeometry(ToPixels(g.noticed, dpi));
}

void PowerAlarmWindow::ApplyColours() {
    const AlarmWindowColours colours = AlarmWindow::Colours(night_);
    QPalette palette;
    const QColor background = ColourOf(colours.background);
    const QColor button = ColourOf(colours.buttonBackground);
    palette.setColor(QPalette::Window, background);
    palette.setColor(QPalette::WindowText, ColourOf(colours.text));
    palette.setColor(QPalette::Button, button);
    palette.setColor(QPalette::ButtonText, ColourOf(colours.buttonText));
    palette.setColor(QPalette::ToolTipBase, background);
    palette.setColor(QPalette::ToolTipText, ColourOf(colours.text));
    if (night_) {
        // Bevels in the button's own colour: no light edge to catch the eye at night.
        for (QPalette::ColorRole role :
             {QPalette::Light, QPalette::Midlight, QPalette::Dark, QPalette::Mid}) {
            palette.setColor(role, button);
        }
        palette.setColor(QPalette::Shadow, background);
    }
    setPalette(palette);
    setAutoFillBackground(true);
    QPalette message = palette;
    message.setColor(QPalette::WindowText, ColourOf(colours.message));
    lblMsg_->setPalette(message);
}

WindowPowerAlarm::WindowPowerAlarm(SoundLevels& levels, ChimePlayer& chime)
    : levels_(levels), chime_(chime) {}

WindowPowerAlarm::~WindowPowerAlarm() = default;

void WindowPowerAlarm::SetNight(bool on) {
    night_ = on;
    if (window_) {
        window_->SetNight(on);
    }
}

void WindowPowerAlarm::ShowPowerAlarm(const PowerState& state, DateTime now) {
    if (host_ == nullptr) {
        return;  // no run yet to acknowledge it
    }
    if (!window_) {
        window_ = std::make_unique<PowerAlarmWindow>(*host_, chime_);
        window_->SetNight(night_);
    }
    window_->ShowPowerAlarm(state, now);
}

}  // namespace wakeline
