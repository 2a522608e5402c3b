#include "performance/window/polar_diagram_widget.h"

#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <algorithm>
#include <cmath>

namespace wakeline {
namespace {

constexpr double kSwatch = 16.0;  // legend: the line before each wind speed
constexpr double kDot = 3.5;      // radius of a best upwind dot
constexpr double kRing = 5.0;     // radius of a best VMG ring
constexpr double kLive = 5.5;     // radius of the live marker
constexpr double kLabelGap = 4.0;
constexpr const char* kDotKey = "TWA_min";
constexpr const char* kRingKey = "best VMG";

QPointF Plane(double angle, double speed, double maxSpeed, const PolarLayout& layout) {
    const PlanePoint p = ToPlane(angle, speed, maxSpeed, layout);
    return {p.x, p.y};
}

bool DarkPalette(const QPalette& palette) {
    return palette.color(QPalette::Base).lightnessF() < 0.5;
}

// Light winds blue, strong winds red, evenly between; brighter and softer on a dark
// background so that the curves keep their contrast either way.
QColor CurveColour(std::size_t index, std::size_t count, bool dark) {
    const double share =
        count > 1 ? static_cast<double>(index) / static_cast<double>(count - 1) : 0.0;
    const int hue = static_cast<int>(std::lround(230.0 * (1.0 - share)));
    return dark ? QColor::fromHsv(hue, 150, 255) : QColor::fromHsv(hue, 230, 200);
}

QString AngleLabel(int degrees) {
    return QString::number(degrees) + QChar(0x00B0);
}

bool SameLive(const std::optional<LivePoint>& a, const std::optional<LivePoint>& b) {
    if (!a || !b) {
        return !a && !b;
    }
    return a->angle == b->angle && a->speed == b->speed && a->text == b->text;
}

}  // namespace

PolarDiagramWidget::PolarDiagramWidget(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("polarDiagram"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAttribute(Qt::WA_OpaquePaintEvent);
    Clear();
}

void PolarDiagramWidget::SetTable(const PolarTable& table) {
    table_ = table;
    diagram_ = MakePolarDiagram(table_);
    live_ = twa_ && tws_ ? LivePolarPoint(table_, *twa_, *tws_) : std::nullopt;
    update();
}

void PolarDiagramWidget::SetLivePoint(std::optional<float> twaDegrees,
                                      std::optional<float> twsKnots) {
    twa_ = twaDegrees;
    tws_ = twsKnots;
    std::optional<LivePoint> live =
        twa_ && tws_ ? LivePolarPoint(table_, *twa_, *tws_) : std::nullopt;
    if (SameLive(live, live_)) {
        return;
    }
    live_ = std::move(live);
    update();
}

void PolarDiagramWidget::Clear() {
    table_ = PolarTable{};
    diagram_ = MakePolarDiagram(table_);
    twa_.reset();
    tws_.reset();
    live_.reset();
    update();
}

double PolarDiagramWidget::LegendWidth() const {
    const QFontMetricsF fm(font());
    double widest = std::max(fm.horizontalAdvance(QString::fromLatin1(kDotKey)),
                             fm.horizontalAdvance(QString::fromLatin1(kRingKey)));
    for (const PolarCurve& curve : diagram_.curves) {
        widest = std::max(widest, fm.horizontalAdvance(QString::fromStdString(curve.legend)));
    }
    return kSwatch + kLabelGap + widest;
}

PolarLayout PolarDiagramWidget::Layout() const {
    const QFontMetricsF fm(font());
    return LayOutPolarDiagram(width(), height(), fm.height(), fm.horizontalAdvance(AngleLabel(180)),
                              LegendWidth());
}

QSize PolarDiagramWidget::sizeHint() const {
    return {320, 320};
}

QSize PolarDiagramWidget::minimumSizeHint() const {
    return {220, 180};
}

void PolarDiagramWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPalette& pal = palette();
    const bool dark = DarkPalette(pal);
    const QColor text = pal.color(QPalette::Text);
    QColor grid = text;
    grid.setAlphaF(0.35f);
    painter.fillRect(rect(), pal.color(QPalette::Base));

    const QFontMetricsF fm(font());
    const double line = fm.height();
    const QString dotKey = QString::fromLatin1(kDotKey);
    const QString ringKey = QString::fromLatin1(kRingKey);
    const double legendWidth = LegendWidth();
    const PolarLayout layout = Layout();
    if (layout.radius < 10.0) {
        return;
    }
    const double max = diagram_.maxSpeed;
    const QPointF centre(layout.centreX, layout.centreY);
    const double r = layout.radius;

    // Rings with their speeds left of the upward axis, the outer one with its unit.
    painter.setPen(QPen(grid, 1.0));
    for (double k = diagram_.ringStep; k <= max + 1e-9; k += diagram_.ringStep) {
        const double rk = r * k / max;
        painter.setPen(QPen(grid, 1.0));
        painter.drawArc(QRectF(centre.x() - rk, centre.y() - rk, 2 * rk, 2 * rk), 90 * 16,
                        -180 * 16);
        QString label = QString::fromStdString(KnotsText(k));
        if (k + diagram_.ringStep > max + 1e-9) {
            label += QStringLiteral(" kn");
        }
        painter.setPen(text);
        const double w = fm.horizontalAdvance(label);
        painter.drawText(QRectF(centre.x() - kLabelGap - w, centre.y() - rk - line / 2, w, line),
                         Qt::AlignRight | Qt::AlignVCenter, label);
    }
    // Spokes every 30 degrees, labelled outside the rim; 0 and 180 beside the axis's ends.
    for (int a = 0; a <= 180; a += 30) {
        painter.setPen(QPen(grid, 1.0));
        painter.drawLine(centre, Plane(a, max, max, layout));
        const QString label = AngleLabel(a);
        const double w = fm.horizontalAdvance(label);
        const QPointF tip = Plane(a, max, max, layout);
        QRectF box(0, 0, w, line);
        if (a == 0) {
            box.moveBottomLeft(QPointF(tip.x() + kLabelGap, tip.y()));
        } else if (a == 180) {
            box.moveTopLeft(QPointF(tip.x() + kLabelGap, tip.y()));
        } else {
            const QPointF out = Plane(a, max, max, layout) - centre;
            const QPointF at = tip + out * (kLabelGap / r);
            box.moveTopLeft(QPointF(at.x(), at.y() - line / 2));
            if (a < 90) {
                box.translate(0, -line / 4);
            } else if (a > 90) {
                box.translate(0, line / 4);
            }
        }
        painter.setPen(text);
        painter.drawText(box, Qt::AlignLeft | Qt::AlignVCenter, label);
    }

    // The curves, each row's marks, and the legend.
    const std::size_t count = diagram_.curves.size();
    double legendY = layout.legendY;
    for (std::size_t i = 0; i < count; ++i) {
        const PolarCurve& curve = diagram_.curves[i];
        const QColor colour = CurveColour(i, count, dark);
        QPainterPath path;
        for (std::size_t s = 0; s < curve.samples.size(); ++s) {
            const QPointF p = Plane(curve.samples[s].angle, curve.samples[s].speed, max, layout);
            s == 0 ? path.moveTo(p) : path.lineTo(p);
        }
        painter.setPen(QPen(colour, 2.0));
        painter.setBrush(Qt::NoBrush);
        painter.drawPath(path);
        if (curve.bestVmg) {
            painter.drawEllipse(Plane(curve.bestVmg->angle, curve.bestVmg->speed, max, layout),
                                kRing, kRing);
        }
        if (curve.bestUpwind) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(colour);
            painter.drawEllipse(
                Plane(curve.bestUpwind->angle, curve.bestUpwind->speed, max, layout), kDot, kDot);
        }
        painter.setPen(QPen(colour, 2.0));
        painter.drawLine(QPointF(layout.legendX, legendY + line / 2),
                         QPointF(layout.legendX + kSwatch, legendY + line / 2));
        painter.setPen(text);
        painter.drawText(QRectF(layout.legendX + kSwatch + kLabelGap, legendY, legendWidth, line),
                         Qt::AlignLeft | Qt::AlignVCenter, QString::fromStdString(curve.legend));
        legendY += line;
    }
    if (count > 0 && legendY + 2.5 * line <= layout.liveTextY) {
        // The key to the marks, in the text colour, where eleven rows leave room for it.
        legendY += line / 2;
        const QPointF dot(layout.legendX + kSwatch / 2, legendY + line / 2);
        painter.setPen(Qt::NoPen);
        painter.setBrush(text);
        painter.drawEllipse(dot, kDot, kDot);
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(text, 2.0));
        painter.drawEllipse(dot + QPointF(0, line), kRing, kRing);
        painter.setPen(text);
        painter.drawText(QRectF(layout.legendX + kSwatch + kLabelGap, legendY, legendWidth, line),
                         Qt::AlignLeft | Qt::AlignVCenter, dotKey);
        painter.drawText(
            QRectF(layout.legendX + kSwatch + kLabelGap, legendY + line, legendWidth, line),
            Qt::AlignLeft | Qt::AlignVCenter, ringKey);
    }

    // The live wind: a spoke to it, the marker, and its values along the bottom.
    if (live_) {
        const QPointF p = Plane(live_->angle, std::min(live_->speed, max), max, layout);
        QColor mark = pal.color(QPalette::Highlight);
        painter.setPen(QPen(mark, 1.0, Qt::DashLine));
        painter.drawLine(centre, p);
        painter.setPen(QPen(text, 1.5));
        painter.setBrush(mark);
        painter.drawEllipse(p, kLive, kLive);
        painter.setBrush(Qt::NoBrush);
        painter.setPen(text);
        const QString liveText = fm.elidedText(QString::fromStdString(live_->text), Qt::ElideRight,
                                               width() - 2 * layout.legendX);
        painter.drawText(QRectF(layout.legendX, layout.liveTextY, width(), line),
                         Qt::AlignLeft | Qt::AlignVCenter, liveText);
    }
}

}  // namespace wakeline
