#include "display/window/main_window.h"

#include <QAction>
#include <QCloseEvent>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QLabel>
#include <QPushButton>
#include <algorithm>
#include <utility>

#include "display/display_palette.h"
#include "display/window/shown_text.h"
#include "display/window/twips.h"

namespace wakeline {
namespace {

// The smallest size a status text is shrunk to before it is cut: still readable at arm's length.
constexpr double kSmallestStatusPoints = 6.5;

QColor ColourOf(std::uint32_t bgr) {
    return QColor(static_cast<int>(bgr & 0xFF), static_cast<int>((bgr >> 8) & 0xFF),
                  static_cast<int>((bgr >> 16) & 0xFF));
}

QFont ValueFont() {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSize(14);
    font.setBold(true);
    return font;
}

}  // namespace

MainWindow::MainWindow(QWidget* parent) : QWidget(parent) {
    setObjectName("frmWakelineMain");
    power_ = new QLabel(this);
    power_->setObjectName("lblPowerStatus");
    status_ = new QLabel(this);
    status_->setObjectName("lblDDE");
    status_->setAlignment(Qt::AlignLeft | Qt::AlignTop);

    const std::array<const char*, kCommandButtonCount> names = {"cmdHelp", "cmdWind", "cmdTab",
                                                                "cmdLog"};
    const std::array<const char*, kCommandButtonCount> captions = {"Help", "Wind", "Tables", "Log"};
    for (std::size_t i = 0; i < kCommandButtonCount; ++i) {
        auto* button = new QPushButton(QString::fromLatin1(captions[i]), this);
        button->setObjectName(QString::fromLatin1(names[i]));
        // Keys stay with the window (N for the night colours); the buttons are for the mouse.
        button->setFocusPolicy(Qt::NoFocus);
        const auto which = static_cast<CommandButton>(i);
        connect(button, &QPushButton::clicked, this, [this, which] { emit commandClicked(which); });
        buttons_[i] = button;
    }
    CreateRow(0);

    nightAction_ = new QAction(tr("Night colours"), this);
    nightAction_->setCheckable(true);
    nightAction_->setShortcut(QKeySequence(Qt::Key_N));
    connect(nightAction_, &QAction::toggled, this, [this](bool on) {
        if (on != night_) {
            SetNight(on);
            emit nightToggled(on);
        }
    });
    onTopAction_ = new QAction(tr("Stay on top"), this);
    onTopAction_->setCheckable(true);
    connect(onTopAction_, &QAction::toggled, this, [this](bool on) {
        SetStayOnTop(on);
        emit stayOnTopToggled(on);
    });
    addAction(nightAction_);
    addAction(onTopAction_);
    setContextMenuPolicy(Qt::ActionsContextMenu);
}

void MainWindow::CreateRow(std::size_t row) {
    auto* code = new QLabel(this);
    code->setObjectName(QString("lblA%1").arg(row));
    auto* value = new QLabel(this);
    value->setObjectName(QString("lblData%1").arg(row));
    for (QLabel* label : {code, value}) {
        label->setFont(ValueFont());
        label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        label->setTextFormat(Qt::PlainText);
    }
    if (row < fields_.size()) {
        code->setText(ShownText(fields_[row].Code));
        code->setToolTip(ShownText(fields_[row].Description));
        value->setToolTip(ShownText(fields_[row].Description));
    }
    code->show();
    value->show();
    codes_.push_back(code);
    values_.push_back(value);
}

void MainWindow::SetFields(const FieldTable& table) {
    fields_ = table;
    for (std::size_t row = 0; row < codes_.size(); ++row) {
        codes_[row]->setText(ShownText(table[row].Code));
        codes_[row]->setToolTip(ShownText(table[row].Description));
        values_[row]->setToolTip(ShownText(table[row].Description));
    }
}

double MainWindow::Dpi() const {
    return logicalDpiX();
}

void MainWindow::ApplyGeometry(const DisplayGeometry& geometry) {
    const double dpi = Dpi();
    while (codes_.size() < kFieldCount) {
        CreateRow(codes_.size());
    }
    power_->setGeometry(ToPixels(geometry.powerStatus, dpi));
    status_->setGeometry(ToPixels(geometry.status, dpi));
    statusOneLine_ = geometry.status.height <= DisplayLayout::kPowerStatusHeight;
    status_->setWordWrap(!statusOneLine_);
    for (std::size_t i = 0; i < kCommandButtonCount; ++i) {
        const bool visible =
            static_cast<CommandButton>(i) != CommandButton::Log || geometry.logButtonVisible;
        buttons_[i]->setVisible(visible);
        if (visible) {
            buttons_[i]->setGeometry(ToPixels(geometry.buttons[i], dpi));
        }
    }
    for (std::size_t row = 0; row < kFieldCount; ++row) {
        codes_[row]->setGeometry(ToPixels(geometry.codeLabels[row], dpi));
        codes_[row]->setVisible(geometry.codeColumnWidth > 0);
        values_[row]->setGeometry(ToPixels(geometry.valueLabels[row], dpi));
    }
    FitOneLine(power_, font());
    FitOneLine(status_, font());
    FitCodes();
}

void MainWindow::ShowCaptions(const std::array<std::string, kFieldCount>& captions) {
    for (std::size_t row = 0; row < kFieldCount && row < values_.size(); ++row) {
        if (captions[row] != shownCaptions_[row]) {
            shownCaptions_[row] = captions[row];
            values_[row]->setText(ShownText(captions[row]));
        }
    }
}

void MainWindow::ShowStatus(const std::string& text, const std::string& toolTip,
                            std::optional<std::uint32_t> colour) {
    if (text != statusText_) {
        statusText_ = text;
        status_->setText(ShownText(text));
        FitOneLine(status_, font());
    }
    // Compared as it came: the tooltip is the same long instruction text at every tick, and
    // turning it into a QString ten times a second only to find it unchanged is wasted.
    if (toolTip != statusToolTip_) {
        statusToolTip_ = toolTip;
        status_->setToolTip(ShownText(toolTip));
    }
    if (colour != statusColour_) {
        statusColour_ = colour;
        ApplyColours();
    }
}

void MainWindow::ShowPowerStatus(const std::string& text) {
    if (text != powerText_) {
        powerText_ = text;
        power_->setText(ShownText(text));
        FitOneLine(power_, font());
    }
}

void MainWindow::SetCommandEnabled(CommandButton button, bool enabled, const QString& toolTip) {
    QPushButton* b = Button(button);
    b->setEnabled(enabled);
    b->setToolTip(toolTip);
}

void MainWindow::FitOneLine(QLabel* label, const QFont& base) {
    if (label == status_ && !statusOneLine_) {
        label->setFont(base);
        return;
    }
    QFont fitted = base;
    const QString text = label->text();
    while (fitted.pointSizeF() > kSmallestStatusPoints &&
           QFontMetrics(fitted).horizontalAdvance(text) > label->width()) {
        fitted.setPointSizeF(fitted.pointSizeF() - 0.5);
    }
    if (label->font() != fitted) {
        label->setFont(fitted);
    }
}

void MainWindow::FitCodes() {
    // A fixed-pitch 14-point code such as "BTW ORIG" is wider than the code column at every
    // resolution; its letters are set closer rather than cut.
    QFont font = ValueFont();
    const QFontMetrics metrics(font);
    int widest = 0;
    qsizetype letters = 1;
    for (const QLabel* code : codes_) {
        const QString text = code->text().trimmed();
        const int advance = metrics.horizontalAdvance(text);
        if (advance > widest) {
            widest = advance;
            letters = std::max<qsizetype>(text.size(), 1);
        }
    }
    const int room = codes_.empty() ? 0 : codes_[0]->width();
    if (room > 0 && widest > room) {
        font.setLetterSpacing(QFont::AbsoluteSpacing, static_cast<double>(room - widest - 1) /
                                                          static_cast<double>(letters));
    }
    for (QLabel* code : codes_) {
        if (code->font() != font) {
            code->setFont(font);
        }
    }
}

void MainWindow::SetNight(bool on) {
    night_ = on;
    if (nightAction_->isChecked() != on) {
        nightAction_->setChecked(on);
    }
    ApplyColours();
}

void MainWindow::ApplyColours() {
    QPalette palette;
    if (night_) {
        const QColor background = ColourOf(kNightColours.background);
        const QColor text = ColourOf(kNightColours.text);
        const QColor raised = ColourOf(kNightColours.buttonBackground);
        for (const auto& [role, colour] : {
                 std::pair{QPalette::Window, background},
                 std::pair{QPalette::WindowText, text},
                 std::pair{QPalette::Button, raised},
                 std::pair{QPalette::ButtonText, ColourOf(kNightColours.buttonText)},
                 std::pair{QPalette::Base, raised},
                 std::pair{QPalette::Text, text},
                 std::pair{QPalette::ToolTipBase, background},
                 std::pair{QPalette::ToolTipText, text},
                 // Bevels in the buttons' own colour: no light edge to catch the eye at night.
                 std::pair{QPalette::Light, raised},
                 std::pair{QPalette::Midlight, raised},
                 std::pair{QPalette::Dark, raised},
                 std::pair{QPalette::Mid, raised},
                 std::pair{QPalette::Shadow, background},
             }) {
            palette.setColor(role, colour);
        }
        for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::ButtonText}) {
            palette.setColor(QPalette::Disabled, role, ColourOf(kNightColours.disabledText));
        }
    }
    setPalette(palette);
    setAutoFillBackground(night_);
    QPalette statusPalette;
    if (statusColour_) {
        statusPalette.setColor(QPalette::WindowText, ColourOf(*statusColour_));
    }
    status_->setPalette(statusPalette);
}

void MainWindow::SetStayOnTop(bool on) {
    if (onTopAction_->isChecked() != on) {
        onTopAction_->setChecked(on);
        return;  // the action's toggle comes back here
    }
    if (windowFlags().testFlag(Qt::WindowStaysOnTopHint) == on) {
        return;
    }
    const bool visible = isVisible();
    setWindowFlag(Qt::WindowStaysOnTopHint, on);
    if (visible) {
        show();  // changing the flags hides a window
    }
}

void MainWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    emit resized();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (closeHandler_ && !closeHandler_()) {
        event->ignore();
        return;
    }
    event->accept();
}

}  // namespace wakeline
