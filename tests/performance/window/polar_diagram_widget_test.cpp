#include "performance/window/polar_diagram_widget.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QEvent>
#include <QImage>
#include <cmath>
#include <limits>

#include "base/file_system.h"
#include "performance/polar_file_reader.h"

namespace wakeline {
namespace {

class PaintCounter : public QObject {
  public:
    int paints = 0;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            ++paints;
        }
        return QObject::eventFilter(watched, event);
    }
};

TEST(PolarDiagramWidget, GarbageTablesPaint) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float inf = std::numeric_limits<float>::infinity();
    PolarTable garbage;
    garbage.RowCount = 300;
    garbage.ColumnCount = 10;
    garbage.ColumnAngle.fill(1e30f);
    garbage.ColumnAngle[3] = -1e30f;
    garbage.RowWindSpeed = {0, 5, inf, 15, nan};
    garbage.RowTwaMin = {0, 30, nan, 30, 30};
    for (auto& row : garbage.Cell) {
        row.fill(1e30f);
        row[2] = -7.0f;
    }
    PolarTable overrun;
    overrun.RowCount = -3;
    overrun.ColumnCount = 500;
    PolarDiagramWidget widget;
    for (const PolarTable& table : {garbage, overrun, PolarTable{}}) {
        widget.SetTable(table);
        widget.SetLivePoint(45.0f, 12.0f);
        for (const QSize size : {QSize(320, 320), QSize(12, 9), QSize(900, 120)}) {
            widget.resize(size);
            EXPECT_FALSE(widget.grab().isNull());
        }
    }
    widget.SetLivePoint(nan, inf);
    widget.Clear();
    EXPECT_TRUE(widget.Diagram().curves.empty());
    EXPECT_FALSE(widget.Live());
}

// The live point comes with every data line; an unchanged point must not repaint the diagram
// again and again.
TEST(PolarDiagramWidget, UnchangedLivePointDoesNotRepaint) {
    PolarTable t;
    t.RowCount = 2;
    t.ColumnCount = 2;
    t.ColumnAngle = {0, 60, 120};
    t.RowWindSpeed = {0, 6, 12};
    t.RowTwaMin = {0, 40, 30};
    t.Cell[1] = {4.0f, 5.0f, 6.0f};
    t.Cell[2] = {3.0f, 6.0f, 7.5f};
    PolarDiagramWidget widget;
    widget.SetTable(t);
    widget.resize(320, 320);
    PaintCounter counter;
    widget.installEventFilter(&counter);
    widget.show();
    widget.SetLivePoint(90.0f, 9.0f);
    QApplication::processEvents();
    ASSERT_GT(counter.paints, 0) << "the platform delivers no paint events";

    struct Step {
        std::optional<float> twa, tws;
        bool repaints;
        const char* legend;
    };
    const Step steps[] = {
        {90.0f, 9.0f, false, "the same point"},
        {-90.0f, 9.0f, false, "the same point on the other tack"},
        {100.0f, 9.0f, true, "a new angle"},
        {std::nullopt, 9.0f, true, "no angle any more"},
        {30.0f, 9.0f, false, "below the best upwind angle: still no point"},
    };
    for (const Step& step : steps) {
        counter.paints = 0;
        widget.SetLivePoint(step.twa, step.tws);
        QApplication::processEvents();
        EXPECT_EQ(counter.paints > 0, step.repaints) << step.legend;
    }
}

// The sails of the fixture file with a live wind, as the tables window shows them. With
// WAKELINE_POLAR_PNG set to a directory, the images are saved there to be looked at.
TEST(PolarDiagramWidget, DrawsTheLiveMarkerWhereTheDiagramSays) {
    PerformanceTables tables;
    StdFileSystem files;
    const PolarReadReport report =
        ReadPolarFile(files, WAKELINE_TEST_DATA "/polar_file/WakelinePolar.txt", tables);
    ASSERT_TRUE(report.fileStatus.Ok());
    ASSERT_EQ(tables.Polars.Count, 2);
    const QString outDir = qEnvironmentVariable("WAKELINE_POLAR_PNG");
    for (int i = 0; i < tables.Polars.Count; ++i) {
        PolarDiagramWidget widget;
        widget.SetTable(tables.Polars.Tables[static_cast<std::size_t>(i)]);
        widget.SetLivePoint(-60.0f, 12.0f);
        widget.resize(320, 320);
        ASSERT_TRUE(widget.Live());
        const QImage image = widget.grab().toImage();
        if (!outDir.isEmpty()) {
            image.save(QDir(outDir).filePath(QStringLiteral("polar_diagram_%1.png").arg(i)));
        }
        // The marker's centre is filled with the highlight colour.
        const PolarLayout layout = widget.Layout();
        const PlanePoint p =
            ToPlane(widget.Live()->angle, widget.Live()->speed, widget.Diagram().maxSpeed, layout);
        const qreal ratio = image.devicePixelRatio();
        EXPECT_EQ(image.pixelColor(static_cast<int>(std::lround(p.x * ratio)),
                                   static_cast<int>(std::lround(p.y * ratio))),
                  widget.palette().color(QPalette::Highlight))
            << widget.Diagram().curves.size() << " curves";
    }
}

}  // namespace
}  // namespace wakeline
