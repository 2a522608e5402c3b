#pragma once
// frmWakelineMain: the narrow column beside the chart plotter. The battery line and the link
// status at the top, the command buttons, then a code label and a value label for each field.
// A thin view: it places what the layout computed, shows the captions the display computed,
// and turns clicks, keys and resizes into signals for the run. Only what changed is set again,
// so a label repaints only when its text did.

#include <QWidget>
#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "display/display_layout.h"
#include "livedata/field_table.h"

class QAction;
class QLabel;
class QPushButton;

namespace wakeline {

class MainWindow : public QWidget {
    Q_OBJECT
  public:
    explicit MainWindow(QWidget* parent = nullptr);

    // The rows' codes, and their descriptions as the tooltips of both labels of a row.
    void SetFields(const FieldTable& table);
    // Places everything as the layout says; the rows 1 to 22 are created the first time.
    void ApplyGeometry(const DisplayGeometry& geometry);
    // Sets the value labels whose caption changed.
    void ShowCaptions(const std::array<std::string, kFieldCount>& captions);
    // The link status: its text (a CR LF starts a new line), tooltip and colour (blue x 65536
    // + green x 256 + red; empty for the window's own).
    void ShowStatus(const std::string& text, const std::string& toolTip,
                    std::optional<std::uint32_t> colour);
    void ShowPowerStatus(const std::string& text);
    void SetCommandEnabled(CommandButton button, bool enabled, const QString& toolTip);
    // Red on black for night watches; the window's own colours otherwise.
    void SetNight(bool on);
    void SetStayOnTop(bool on);
    bool Night() const { return night_; }
    // Logical dots per inch of the window's screen, for twips.
    double Dpi() const;
    // Asked when the window is to close (its close button, or the run); false keeps it open.
    void SetCloseHandler(std::function<bool()> handler) { closeHandler_ = std::move(handler); }

    QLabel* CodeLabel(std::size_t row) const { return row < codes_.size() ? codes_[row] : nullptr; }
    QLabel* ValueLabel(std::size_t row) const {
        return row < values_.size() ? values_[row] : nullptr;
    }
    QLabel* StatusLabel() const { return status_; }
    QLabel* PowerStatusLabel() const { return power_; }
    QPushButton* Button(CommandButton button) const {
        return buttons_[static_cast<std::size_t>(button)];
    }

  Q_SIGNALS:
    void commandClicked(wakeline::CommandButton button);
    // The window's size changed (by the user or the window system).
    void resized();
    void nightToggled(bool on);
    void stayOnTopToggled(bool on);

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    void CreateRow(std::size_t row);
    void ApplyColours();
    // Shrinks a one-line label's font until its text fits the label's width.
    void FitOneLine(QLabel* label, const QFont& base);
    void FitCodes();

    std::vector<QLabel*> codes_;
    std::vector<QLabel*> values_;
    std::array<QPushButton*, kCommandButtonCount> buttons_{};
    QLabel* status_ = nullptr;
    QLabel* power_ = nullptr;
    QAction* nightAction_ = nullptr;
    QAction* onTopAction_ = nullptr;
    std::array<std::string, kFieldCount> shownCaptions_;
    FieldTable fields_;
    std::string statusText_;
    std::string statusToolTip_;
    std::optional<std::uint32_t> statusColour_;
    std::string powerText_;
    bool statusOneLine_ = false;
    bool night_ = false;
    std::function<bool()> closeHandler_;
};

}  // namespace wakeline
