#include "wind/window/wind_graph_window.h"

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

namespace wakeline {
namespace {

constexpr double kMinutesPerDay = 1440.0;

QColor ColourOf(std::uint32_t bgr) {
    return QColor(static_cast<int>(bgr & 0xFF), static_cast<int>((bgr >> 8) & 0xFF),
                  static_cast<int>((bgr >> 16) & 0xFF));
}

QString TimeText(DateTime t) {
    return QString::fromStdString(GraphTimeText(t));
}

QString Degrees(double value) {
    double folded = std::fmod(value, 360.0);
    if (folded < 0) {
        folded += 360.0;
    }
    return QString::number(std::lround(folded) % 360) + QChar(0x00B0);
}

QString MinutesUntil(DateTime from, DateTime to) {
    return QString::number(std::max<long>(0, std::lround((to - from) * kMinutesPerDay)));
}

}  // namespace

WindGraphWindow::WindGraphWindow(const WindData& history, WindGraphSettings settings,
                                 QWidget* parent)
    : QWidget(parent, Qt::Window), history_(history), settings_(std::move(settings)) {
    setObjectName("frmWindGraph");
    setWindowTitle(QStringLiteral("Wakeline wind"));
    setAttribute(Qt::WA_DeleteOnClose);
    auto* layout = new QVBoxLayout(this);

    auto* top = new QHBoxLayout;
    startLabel_ = new QLabel(this);
    startLabel_->setObjectName("lblStart");
    startLabel_->setToolTip(tr("Double-click to change the start time"));
    startLabel_->installEventFilter(this);
    averagesLabel_ = new QLabel(this);
    averagesLabel_->setObjectName("lblAverages");
    top->addWidget(startLabel_);
    top->addStretch(1);
    top->addWidget(averagesLabel_);
    layout->addLayout(top);

    canvas_ = new WindGraphCanvas(this);
    layout->addWidget(canvas_, 1);

    auto* sine = new QHBoxLayout;
    overlayShown_ = new QCheckBox(tr("Sine"), this);
    overlayShown_->setObjectName("chkSine");
    const auto spin = [this](const QString& suffix, double low, double high, double step) {
        auto* box = new QDoubleSpinBox(this);
        box->setRange(low, high);
        box->setSingleStep(step);
        box->setDecimals(1);
        box->setSuffix(suffix);
        connect(box, &QDoubleSpinBox::valueChanged, this, [this] { OverlayEdited(); });
        return box;
    };
    amplitude_ = spin(QStringLiteral("\u00B0"), 0, 90, 1);
    period_ = spin(tr(" min"), 2, 60, 0.5);
    phase_ = spin(tr(" min"), 0, 60, 0.5);
    auto* fit = new QPushButton(tr("Fit"), this);
    fit->setObjectName("cmdFit");
    fit->setToolTip(
        tr("Fit a sine to the wind direction in view: its period, its size and when "
           "the wind will veer and back next"));
    connect(fit, &QPushButton::clicked, this, [this] { Fit(); });
    connect(overlayShown_, &QCheckBox::toggled, this, [this] { OverlayEdited(); });
    sine->addWidget(overlayShown_);
    sine->addWidget(new QLabel(tr("amplitude"), this));
    sine->addWidget(amplitude_);
    sine->addWidget(new QLabel(tr("wavelength"), this));
    sine->addWidget(period_);
    sine->addWidget(new QLabel(tr("phase"), this));
    sine->addWidget(phase_);
    sine->addWidget(fit);
    sine->addStretch(1);
    layout->addLayout(sine);
    fitLabel_ = new QLabel(this);
    fitLabel_->setObjectName("lblFit");
    layout->addWidget(fitLabel_);

    ShowOverlayInFields();
    resize(760, 480);
    Redraw();
}

void WindGraphWindow::ShowOverlayInFields() {
    filling_ = true;
    overlayShown_->setChecked(settings_.overlayShown);
    amplitude_->setValue(settings_.overlay.amplitudeDegrees);
    period_->setValue(settings_.overlay.periodMinutes);
    // The phase is shown as the minutes after the graph's start at which the sine rises.
    const double period = std::max(settings_.overlay.periodMinutes, 2.0);
    double phase = std::fmod((settings_.overlay.phaseTime - ViewStart()) * kMinutesPerDay, period);
    if (phase < 0) {
        phase += period;
    }
    // A whole period shows as 0, not as a rounding's 8.0 of an 8-minute wave.
    phase_->setValue(period - phase < 0.05 ? 0.0 : phase);
    filling_ = false;
}

DateTime WindGraphWindow::ViewStart() const {
    return start_ != 0 ? start_ : DefaultGraphStart(history_);
}

void WindGraphWindow::OverlayEdited() {
    if (filling_) {
        return;
    }
    settings_.overlayShown = overlayShown_->isChecked();
    settings_.overlay.amplitudeDegrees = amplitude_->value();
    settings_.overlay.periodMinutes = period_->value();
    settings_.overlay.phaseTime = ViewStart() + phase_->value() / kMinutesPerDay;
    // A sine set by hand sits on the mean of the directions in view.
    const WindGraphModel model = MakeWindGraph(history_, ViewStart());
    if (!model.points.empty()) {
        double sum = 0;
        for (const WindGraphPoint& point : model.points) {
            sum += point.direction;
        }
        settings_.overlay.meanDirection = sum / static_cast<double>(model.points.size());
    }
    fit_.reset();
    fitLabel_->clear();
    emit settingsChanged();
    Redraw();
}

void WindGraphWindow::Fit() {
    fit_ = FitWindOscillation(history_, ViewStart());
    if (!fit_) {
        fitLabel_->setText(
            tr("No oscillation fits the wind in view: the shifts follow no "
               "regular period between 2 and 60 minutes."));
        Redraw();
        return;
    }
    settings_.overlay = fit_->overlay;
    settings_.overlayShown = true;
    ShowOverlayInFields();
    const DateTime now = history_.Count > 0 ? history_.Obs[history_.Count - 1].Time : 0;
    fitLabel_->setText(tr("Fit: period %1 min, amplitude %2\u00B0, R\u00B2 %3 \u2014 next veer in "
                          "%4 min, next back in %5 min")
                           .arg(fit_->overlay.periodMinutes, 0, 'f', 1)
                           .arg(fit_->overlay.amplitudeDegrees, 0, 'f', 1)
                           .arg(fit_->r2, 0, 'f', 2)
                           .arg(MinutesUntil(now, fit_->nextMaximum))
                           .arg(MinutesUntil(now, fit_->nextMinimum)));
    emit settingsChanged();
    Redraw();
}

void WindGraphWindow::SetStart(DateTime start) {
    start_ = start;
    fit_.reset();
    fitLabel_->clear();
    Redraw();
}

void WindGraphWindow::Redraw() {
    const DateTime start = ViewStart();
    WindGraphModel model = MakeWindGraph(history_, start);
    startLabel_->setText(
        tr("start %1 UTC").arg(model.empty ? QStringLiteral("--:--") : TimeText(start)));
    if (history_.Count > 0) {
        const WindObservation five = AverageLastMinutes(history_, 5);
        const WindObservation fifteen = AverageLastMinutes(history_, 15);
        averagesLabel_->setText(tr("last 5 min %1 %2 kn   last 15 min %3 %4 kn")
                                    .arg(Degrees(five.Direction))
                                    .arg(five.Speed, 0, 'f', 1)
                                    .arg(Degrees(fifteen.Direction))
                                    .arg(fifteen.Speed, 0, 'f', 1));
    } else {
        averagesLabel_->clear();
    }
    canvas_->Show(std::move(model), settings_, fit_);
}

void WindGraphWindow::SetNight(bool on) {
    canvas_->SetNight(on);
}

bool WindGraphWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == startLabel_ && event->type() == QEvent::MouseButtonDblClick) {
        emit startChangeRequested();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

WindGraphCanvas::WindGraphCanvas(QWidget* parent) : QWidget(parent) {
    setObjectName("windGraph");
    setMouseTracking(true);
    setMinimumSize(360, 220);
}

void WindGraphCanvas::SetNight(bool on) {
    night_ = on;
    update();
}

void WindGraphCanvas::Show(WindGraphModel model, const WindGraphSettings& settings,
                           std::optional<SineFit> fit) {
    model_ = std::move(model);
    message_ = model_.empty ? QStringLiteral("Cannot draw wind, no winddata (yet)") : QString();
    settings_ = settings;
    fit_ = std::move(fit);
    axisEnd_ = model_.end;
    if (fit_) {
        // The graph runs on to the turns the fit foretells.
        axisEnd_ = std::max({axisEnd_, fit_->nextMaximum, fit_->nextMinimum});
    }
    update();
}

QRectF WindGraphCanvas::Plot() const {
    const QFontMetrics metrics(font());
    const double side = metrics.horizontalAdvance(QStringLiteral("0000 kn")) + 8;
    return QRectF(side, metrics.height() + 8, width() - 2 * side,
                  height() - 2 * metrics.height() - 16);
}

double WindGraphCanvas::X(DateTime t) const {
    const QRectF& plot = plot_;
    const double span = axisEnd_ - model_.start;
    return plot.left() + (span > 0 ? (t - model_.start) / span : 0) * plot.width();
}

double WindGraphCanvas::YDirection(double direction) const {
    const QRectF& plot = plot_;
    const double span = model_.directionMax - model_.directionMin;
    return plot.bottom() -
           (span > 0 ? (direction - model_.directionMin) / span : 0.5) * plot.height();
}

double WindGraphCanvas::YSpeed(double speed) const {
    const QRectF& plot = plot_;
    return plot.bottom() - (model_.speedMax > 0 ? speed / model_.speedMax : 0) * plot.height();
}

void WindGraphCanvas::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor text = palette().color(QPalette::WindowText);
    if (model_.empty) {
        painter.setPen(text);
        painter.drawText(rect(), Qt::AlignCenter, message_);
        return;
    }
    // Measured once a paint: every point's place depends on it.
    plot_ = Plot();
    const QRectF plot = plot_;
    const QFontMetrics metrics(font());
    QColor grid = text;
    grid.setAlpha(night_ ? 70 : 45);
    QColor direction = ColourOf(settings_.colWD);
    QColor speed = ColourOf(settings_.colWS);
    QColor overlay = ColourOf(settings_.colSL);
    if (night_) {
        // Red on black: the day colours would dazzle, or vanish on the dark.
        direction = QColor(220, 30, 30);
        speed = QColor(200, 110, 0);
        overlay = QColor(150, 0, 90);
    } else if (overlay.lightness() > 200) {
        overlay = overlay.darker(125);  // the default cyan is faint on white
    }

    // Grid and labels: directions on the left, speeds on the right, UTC time below.
    painter.setPen(QPen(grid, 1));
    for (double tick : model_.directionTicks) {
        const double y = YDirection(tick);
        painter.drawLine(QPointF(plot.left(), y), QPointF(plot.right(), y));
    }
    for (DateTime tick : model_.timeTicks) {
        const double x = X(tick);
        painter.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
    }
    painter.setPen(direction);
    for (double tick : model_.directionTicks) {
        painter.drawText(
            QRectF(0, YDirection(tick) - metrics.height() / 2.0, plot.left() - 4, metrics.height()),
            Qt::AlignRight | Qt::AlignVCenter, Degrees(tick));
    }
    painter.drawText(QRectF(0, 0, plot.left() + 60, metrics.height() + 4), Qt::AlignLeft,
                     tr("TWD"));
    painter.setPen(speed);
    for (double tick : model_.speedTicks) {
        painter.drawText(QRectF(plot.right() + 4, YSpeed(tick) - metrics.height() / 2.0,
                                width() - plot.right() - 4, metrics.height()),
                         Qt::AlignLeft | Qt::AlignVCenter, QString::number(tick) + tr(" kn"));
    }
    painter.drawText(
        QRectF(plot.right() - 60, 0, width() - plot.right() + 60, metrics.height() + 4),
        Qt::AlignRight, tr("TWS"));
    painter.setPen(text);
    for (DateTime tick : model_.timeTicks) {
        painter.drawText(QRectF(X(tick) - 40, plot.bottom() + 4, 80, metrics.height()),
                         Qt::AlignHCenter | Qt::AlignTop, TimeText(tick));
    }
    painter.drawText(
        QRectF(plot.right() + 4, plot.bottom() + 4, width() - plot.right() - 4, metrics.height()),
        Qt::AlignLeft | Qt::AlignTop, tr("UTC"));
    painter.setPen(QPen(grid, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(plot);

    painter.save();
    painter.setClipRect(plot);
    // Polylines without antialiasing: a full history is a thousand points, and smoothing them
    // costs more than the eye gains at this scale.
    painter.setRenderHint(QPainter::Antialiasing, false);
    const auto curve = [&](auto y) {
        QPolygonF line;
        line.reserve(static_cast<qsizetype>(model_.points.size()));
        for (const WindGraphPoint& point : model_.points) {
            line.append(QPointF(X(point.time), y(point)));
        }
        return line;
    };
    painter.setPen(QPen(speed, 1));
    painter.drawPolyline(curve([&](const WindGraphPoint& p) { return YSpeed(p.speed); }));
    painter.setPen(QPen(direction, 2));
    painter.drawPolyline(curve([&](const WindGraphPoint& p) { return YDirection(p.direction); }));

    if (settings_.overlayShown && settings_.overlay.periodMinutes > 0) {
        QPolygonF sine;
        const int steps = std::max(2, static_cast<int>(plot.width() / 3));
        for (int i = 0; i <= steps; ++i) {
            const DateTime t = model_.start + (axisEnd_ - model_.start) * i / steps;
            sine.append(QPointF(X(t), YDirection(OverlayDirectionAt(settings_.overlay, t))));
        }
        painter.setPen(QPen(overlay, 2, Qt::DashLine));
        painter.drawPolyline(sine);
    }
    if (fit_) {
        painter.setPen(QPen(overlay, 1, Qt::DotLine));
        // Each foretold turn on a line of its own, its label kept inside the plot.
        double line = plot.top() + 2;
        for (const auto& [when, label] :
             {std::pair{fit_->nextMaximum, tr("veer")}, std::pair{fit_->nextMinimum, tr("back")}}) {
            const double x = X(when);
            painter.setPen(QPen(overlay, 1, Qt::DotLine));
            painter.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
            const QString caption = label + " " + TimeText(when);
            const double wide = metrics.horizontalAdvance(caption) + 6;
            const bool left = x + wide > plot.right();
            painter.setPen(text);
            painter.drawText(QRectF(left ? x - wide : x + 3, line, wide, metrics.height()),
                             left ? Qt::AlignRight : Qt::AlignLeft, caption);
            line += metrics.height();
        }
    }
    painter.restore();

    if (!readOut_.isEmpty()) {
        painter.setPen(text);
        painter.drawText(
            QRectF(plot.left() + 6, plot.top() + 4, plot.width() - 12, metrics.height()),
            Qt::AlignLeft, readOut_);
    }
}

void WindGraphCanvas::mouseMoveEvent(QMouseEvent* event) {
    QString readOut;
    plot_ = Plot();
    if (!model_.points.empty() && plot_.contains(event->position())) {
        // The observation nearest in time to the pointer.
        const double x = event->position().x();
        const WindGraphPoint* nearest = &model_.points.front();
        for (const WindGraphPoint& point : model_.points) {
            if (std::abs(X(point.time) - x) < std::abs(X(nearest->time) - x)) {
                nearest = &point;
            }
        }
        readOut = QStringLiteral("%1   %2   %3 kn")
                      .arg(TimeText(nearest->time), Degrees(nearest->direction))
                      .arg(nearest->speed, 0, 'f', 1);
    }
    if (readOut != readOut_) {
        readOut_ = readOut;
        update();
    }
}

void WindGraphCanvas::leaveEvent(QEvent*) {
    if (!readOut_.isEmpty()) {
        readOut_.clear();
        update();
    }
}

}  // namespace wakeline
