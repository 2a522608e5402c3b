#pragma once
// The polar diagram of the selected sail, for the tables window beside its grids: a curve of
// target speed over true wind angle for each wind-speed row, each row's best upwind angle as a
// dot and its best VMG angle as a ring, and the live wind as a filled marker with its text.
// A thin view: the curves, scale, texts and layout come from the core (polar_diagram.h); the
// paint event draws the cached diagram in the palette's colours, so a dark palette works too.

#include <QWidget>
#include <optional>

#include "performance/performance_tables.h"
#include "performance/polar_diagram.h"

namespace wakeline {

class PolarDiagramWidget : public QWidget {
    Q_OBJECT
  public:
    explicit PolarDiagramWidget(QWidget* parent = nullptr);

    // Keeps a copy of the table (for the live point) and repaints its diagram. Any contents
    // are accepted; rows that give no speed are not drawn.
    void SetTable(const PolarTable& table);
    // The live wind in degrees (either side) and knots; empty when no data flow. Repaints
    // only when the point on the diagram or its text changed.
    void SetLivePoint(std::optional<float> twaDegrees, std::optional<float> twsKnots);
    // No table and no live point: an empty diagram.
    void Clear();

    const PolarDiagram& Diagram() const { return diagram_; }
    const std::optional<LivePoint>& Live() const { return live_; }
    // Where the paint event puts the diagram at the widget's size and font.
    PolarLayout Layout() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    double LegendWidth() const;

    PolarTable table_;
    PolarDiagram diagram_;
    std::optional<float> twa_;
    std::optional<float> tws_;
    std::optional<LivePoint> live_;
};

}  // namespace wakeline
