#include "shell/window/help_window.h"

#include <QFontDatabase>
#include <QGridLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include "display/window/shown_text.h"

namespace wakeline {
namespace {

QLabel* NewLabel(const std::string& text, const char* name, QWidget* parent) {
    auto* label = new QLabel(ShownText(text), parent);
    label->setObjectName(QString::fromLatin1(name));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

}  // namespace

HelpWindow::HelpWindow(const HelpContent& content, QWidget* parent) : QWidget(parent, Qt::Window) {
    setObjectName("frmWakelineHelp");
    setWindowTitle(QStringLiteral("Wakeline help"));
    setAttribute(Qt::WA_DeleteOnClose);
    auto* layout = new QVBoxLayout(this);

    title_ = NewLabel(content.title, "lblTitle", this);
    QFont titleFont = title_->font();
    titleFont.setBold(true);
    title_->setFont(titleFont);
    layout->addWidget(title_);

    const std::array<const char*, 4> infoNames = {"lblIni", "lblTrackDir", "lblSeaClear",
                                                  "lblCommandLine"};
    for (std::size_t i = 0; i < information_.size(); ++i) {
        information_[i] = NewLabel(content.information[i], infoNames[i], this);
        layout->addWidget(information_[i]);
    }
    auto* grid = new QGridLayout;
    const std::array<const char*, 4> thresholdNames = {"lblTime", "lblCompDev", "lblDistance",
                                                       "lblDiskWrite"};
    for (std::size_t i = 0; i < thresholds_.size(); ++i) {
        thresholds_[i] = NewLabel(content.thresholds[i], thresholdNames[i], this);
        grid->addWidget(thresholds_[i], static_cast<int>(i / 2), static_cast<int>(i % 2));
    }
    layout->addLayout(grid);

    text_ = new QPlainTextEdit(this);
    text_->setObjectName("txthelp");
    text_->setReadOnly(true);
    text_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    text_->setPlainText(ShownText(content.text));
    layout->addWidget(text_, 1);
    resize(640, 560);
}

}  // namespace wakeline
