#pragma once
// frmWindGraph: the last hour of true wind against UTC time, direction and speed on their own
// scales, with a sine over the direction that the sailor sets or fits, the times of the next
// veer and back it foretells, a read-out under the pointer and the 5 and 15 minute averages.
// A thin view: the core makes the graph, the fit and the averages; this paints them.

#include <QWidget>
#include <optional>

#include "wind/wind_data.h"
#include "wind/wind_fit.h"
#include "wind/wind_graph.h"
#include "wind/wind_graph_settings.h"

class QCheckBox;
class QDoubleSpinBox;
class QLabel;

namespace wakeline {

class WindGraphCanvas;

class WindGraphWindow : public QWidget {
    Q_OBJECT
  public:
    // `history` must outlive the window; it is read at every redraw.
    WindGraphWindow(const WindData& history, WindGraphSettings settings, QWidget* parent = nullptr);

    // Draws the history again (the run calls it after every track record).
    void Redraw();
    // The start of the time axis; a start of 0 is the oldest observation of the last hour.
    void SetStart(DateTime start);
    DateTime Start() const { return start_; }
    void SetNight(bool on);
    const WindGraphSettings& Settings() const { return settings_; }
    // Fits a sine to the directions in view and shows it, or says that none fits.
    void Fit();

    QLabel* StartLabel() const { return startLabel_; }
    QLabel* FitLabel() const { return fitLabel_; }
    WindGraphCanvas* Canvas() const { return canvas_; }

  Q_SIGNALS:
    // The start label was double-clicked: the run asks for a new start.
    void startChangeRequested();
    // The overlay changed: the run remembers it.
    void settingsChanged();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void OverlayEdited();
    void ShowOverlayInFields();
    DateTime ViewStart() const;

    const WindData& history_;
    WindGraphSettings settings_;
    DateTime start_ = 0;
    std::optional<SineFit> fit_;
    WindGraphCanvas* canvas_ = nullptr;
    QLabel* startLabel_ = nullptr;
    QLabel* averagesLabel_ = nullptr;
    QLabel* fitLabel_ = nullptr;
    QCheckBox* overlayShown_ = nullptr;
    QDoubleSpinBox* amplitude_ = nullptr;
    QDoubleSpinBox* period_ = nullptr;
    QDoubleSpinBox* phase_ = nullptr;
    bool filling_ = false;
};

// The graph itself, painted from the model it was last given.
class WindGraphCanvas : public QWidget {
    Q_OBJECT
  public:
    explicit WindGraphCanvas(QWidget* parent = nullptr);
    void Show(WindGraphModel model, const WindGraphSettings& settings, std::optional<SineFit> fit);
    void SetNight(bool on);
    // What the graph says instead of curves ("Cannot draw wind, no winddata (yet)"), or empty.
    const QString& Message() const { return message_; }
    // The read-out under the pointer, empty when the pointer is off the curves.
    const QString& ReadOut() const { return readOut_; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

  private:
    QRectF Plot() const;
    double X(DateTime t) const;
    double YDirection(double direction) const;
    double YSpeed(double speed) const;

    WindGraphModel model_;
    WindGraphSettings settings_;
    std::optional<SineFit> fit_;
    QRectF plot_;           // the plot's place, as the last paint measured it
    DateTime axisEnd_ = 0;  // the newest observation, or the fit's last foretold turn
    QString readOut_;
    QString message_;
    bool night_ = false;
};

}  // namespace wakeline
