#pragma once
// frmWakelineHelp: the program's title and directory, the files and thresholds the run uses,
// and the help text, as the core made them.

#include <QWidget>
#include <array>

#include "shell/help_content.h"

class QLabel;
class QPlainTextEdit;

namespace wakeline {

class HelpWindow : public QWidget {
    Q_OBJECT
  public:
    explicit HelpWindow(const HelpContent& content, QWidget* parent = nullptr);

    QLabel* TitleLabel() const { return title_; }
    QLabel* InformationLabel(std::size_t i) const { return information_[i]; }
    QLabel* ThresholdLabel(std::size_t i) const { return thresholds_[i]; }
    QPlainTextEdit* HelpText() const { return text_; }

  private:
    QLabel* title_ = nullptr;
    std::array<QLabel*, 4> information_{};
    std::array<QLabel*, 4> thresholds_{};
    QPlainTextEdit* text_ = nullptr;
};

}  // namespace wakeline
