// The main window driven as a sailor drives it, on the real run: data lines from a chart
// plotter on a local socket, the log button, the close button, the help window, and a bad
// polar file's burst of messages.

#include "shell/window/window_run.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <functional>

#include "base/file_system.h"
#include "display/window/main_window.h"
#include "display/window/twips.h"
#include "performance/window/tables_window.h"
#include "shell/navigation_centre.h"
#include "shell/window/help_window.h"
#include "shell/window/message_box_dialogs.h"
#include "support/fakes.h"
#include "wind/window/wind_graph_window.h"

namespace wakeline {
namespace {

const QByteArray kLine =
    "52.5,-4.25,6.5,1.5708,1.5708,0,10,0.7854,0.5236,2.3562,5,7,4,1.5708,6.2,,,,,,,,";
const QByteArray kWaypointLine =
    "52.5,-4.25,6.5,1.5708,1.5708,0,10,0.7854,0.5236,2.3562,5,7,4,1.5708,6.2,52.4,-4.3,,,,,,Home";

// A boat directory with its settings file, and the run's settings and state beside it.
struct Boat {
    Boat() {
        qputenv("XDG_CONFIG_HOME", dir.filePath("config").toLocal8Bit());
        qputenv("XDG_STATE_HOME", dir.filePath("state").toLocal8Bit());
        QDir(dir.path()).mkpath("traces");
        QDir(dir.path()).mkpath("config/Wakeline");
        Write("config/Wakeline/Wakeline.conf", "[Settings]\nSetLogData=True\n");
        Write("SeaClear_2.ini", "[Program Setup]\r\nDDE=1\r\nTrack Time=1\r\nTrack Dir=" +
                                    dir.filePath("traces").toLocal8Bit() + "\r\n");
        server.listen(QHostAddress::LocalHost);
        options.link = "127.0.0.1:" + std::to_string(server.serverPort());
        options.logPath = dir.filePath("log.txt").toStdString();
        options.commandLine = dir.filePath("SeaClear_2.ini").toStdString() + ",,,F";
    }

    // A closed run asks the event loop to end; that request must not end the next test's loops.
    ~Boat() {
        run.reset();
        QCoreApplication::processEvents();
    }

    void Write(const QString& name, const QByteArray& bytes) {
        QFile file(dir.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    QByteArray Read(const QString& name) {
        QFile file(dir.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    // Starts the run and waits for its link to the chart plotter.
    void Start() {
        run = std::make_unique<WindowRun>(options, &dialogs);
        ASSERT_EQ(run->Start(), -1);
        ASSERT_TRUE(QTest::qWaitFor([&] { return server.hasPendingConnections(); }, 5000));
        plotter = server.nextPendingConnection();
    }

    // The chart plotter sends a line; true once the run has handled it: a new line becomes the
    // last data line, a repeated one makes the status "unchanged".
    bool Send(const QByteArray& line) {
        const bool repeated = Centre().Link().LastDataLine().starts_with(line.toStdString());
        const std::string status = Centre().LinkStatus().text;
        plotter->write(line + "\n");
        return QTest::qWaitFor(
            [&] {
                const std::string& now = Centre().LinkStatus().text;
                return repeated ? now != status && now.starts_with("unchanged ")
                                : Centre().Link().LastDataLine().starts_with(line.toStdString());
            },
            5000);
    }

    int RowsBottomPixels(std::size_t lastRow) {
        const int twips = Centre().State().CaptionHeight + Centre().Layout().ContentHeight(lastRow);
        return TwipsToPixels(twips, Window().Dpi());
    }

    NavigationCentre& Centre() { return run->Centre(); }
    MainWindow& Window() { return run->Window(); }

    QTemporaryDir dir;
    QTcpServer server;
    QTcpSocket* plotter = nullptr;
    ProgramOptions options;
    testing::RecordingDialogs dialogs;
    std::unique_ptr<WindowRun> run;
};

TEST(WindowRun, ShowsTheCoresTextsFollowsTheRowsAndKeepsTheSailorsAnswers) {
    Boat boat;
    boat.Start();
    MainWindow& window = boat.Window();
    ASSERT_TRUE(boat.Send(kLine));
    const FieldTable& fields = boat.Centre().Fields();
    for (std::size_t row = 0; row <= kFieldSpd; ++row) {
        EXPECT_EQ(window.ValueLabel(row)->text().toStdString(), fields[row].Shown) << row;
        EXPECT_EQ(window.CodeLabel(row)->toolTip().toStdString(), fields[row].Description);
    }
    EXPECT_EQ(window.height(), boat.RowsBottomPixels(14));
    ASSERT_TRUE(boat.Send(kWaypointLine));
    EXPECT_EQ(window.ValueLabel(15)->text().toStdString(), fields[15].Shown);
    EXPECT_EQ(window.height(), boat.RowsBottomPixels(22));
    EXPECT_GT(boat.RowsBottomPixels(22), boat.RowsBottomPixels(14));
    ASSERT_TRUE(boat.Send(kWaypointLine));
    EXPECT_TRUE(window.StatusLabel()->text().startsWith("unchanged "));

    // The log button: an empty answer writes nothing, not even the pending records.
    boat.dialogs.textAnswer = "";
    const std::size_t pending = boat.Centre().Track().PendingCount();
    ASSERT_GT(pending, 0U);
    ASSERT_TRUE(window.Button(CommandButton::Log)->isVisible());
    window.Button(CommandButton::Log)->click();
    EXPECT_EQ(boat.dialogs.prompts, std::vector<std::string>{"Enter log Information"});
    EXPECT_EQ(boat.Centre().Track().PendingCount(), pending);

    // Cancel at the close keeps the window and forgets that data came; OK closes it.
    boat.dialogs.okCancelAnswer = false;
    EXPECT_FALSE(window.close());
    EXPECT_TRUE(window.isVisible());
    EXPECT_FALSE(boat.Centre().Link().LinkSeen());
    boat.dialogs.okCancelAnswer = true;
    EXPECT_TRUE(window.close());
    EXPECT_EQ(boat.dialogs.messages, (std::vector<std::string>(2, "ending trace function")));
    EXPECT_EQ(boat.Centre().Track().PendingCount(), 0U);
}

TEST(WindowRun, ABurstOfOneMessageShowsOneBoxAndLogsEveryOne) {
    Boat boat;
    // Five rows without cells: each row's missing cells are told one by one.
    QByteArray polar = "[DampingFactor=1.0000]\r\n[PolarTable=Genoa]\r\n       52,   90\r\n";
    for (int row = 0; row < 5; ++row) {
        polar += "0" + QByteArray::number(row + 2) + ",  40\r\n";
    }
    boat.Write("traces/WakelinePolar.txt", polar + "[PolarTableCurrent=Genoa]\r\n");
    boat.run = std::make_unique<WindowRun>(boat.options);
    ASSERT_EQ(boat.run->Start(), -1);
    const QList<QMessageBox*> boxes = boat.run->MessageBoxes().OpenMessages();
    ASSERT_EQ(boxes.size(), 1);
    EXPECT_EQ(boxes[0]->windowTitle(), "Wakeline");
    EXPECT_EQ(boxes[0]->text(), "Polar File corrupt, added one cell with value -1");
    EXPECT_EQ(boat.Read("log.txt").count("Polar File corrupt, added one cell"), 15);
    boat.run->MessageBoxes().ShowMessage("another");
    EXPECT_EQ(boat.run->MessageBoxes().OpenMessages().size(), 2);
    for (QMessageBox* box : boat.run->MessageBoxes().OpenMessages()) {
        box->close();
    }
}

// Opens the tables from the main window's button and runs `drive` on them once they wait for
// the sailor; the button returns when the window has closed.
void WithTables(Boat& boat, std::function<void(TablesWindow&)> drive) {
    QObject::connect(
        boat.run.get(), &WindowRun::tablesOpened, boat.run.get(),
        [drive](TablesWindow* tables) {
            QTimer::singleShot(0, tables, [drive, tables] {
                drive(*tables);
                tables->accept();
            });
        },
        Qt::SingleShotConnection);
    boat.Window().Button(CommandButton::Tab)->click();
}

TEST(WindowRun, TheTablesAreSavedOnlyWhenChangedAndUsedForTheNextLine) {
    Boat boat;
    QFile::copy(WAKELINE_TEST_DATA "/polar_file/WakelinePolar.txt",
                boat.dir.filePath("traces/WakelinePolar.txt"));
    boat.Start();
    const QString polar = boat.dir.filePath("traces/WakelinePolar.txt");
    const QByteArray bytes = boat.Read("traces/WakelinePolar.txt");
    const QDateTime modified = QFileInfo(polar).lastModified();
    WithTables(boat, [](TablesWindow&) {});
    EXPECT_EQ(boat.Read("traces/WakelinePolar.txt"), bytes);
    EXPECT_EQ(QFileInfo(polar).lastModified(), modified);

    // TWA 45 at 9.7 knots lies between the Jib's TWA_min and its 52 degree column: a faster
    // 52 degree column raises the target of the next line.
    ASSERT_TRUE(boat.Send(kLine));
    const std::string before = boat.Centre().Fields()[kFieldSpd].Shown;
    WithTables(boat, [](TablesWindow& tables) {
        QTableWidget* grid = tables.Grid(TablesGrid::Polar);
        for (int row : {1, 2}) {
            grid->setCurrentCell(row, 3);
            QTest::keyClick(grid, Qt::Key_9);
            QTest::keyClick(tables.CellEditor(), Qt::Key_Return);
        }
    });
    EXPECT_NE(boat.Read("traces/WakelinePolar.txt"), bytes);
    ASSERT_TRUE(boat.Send(kWaypointLine));
    const std::string after = boat.Centre().Fields()[kFieldSpd].Shown;
    EXPECT_EQ(before.substr(0, 4), after.substr(0, 4));  // the water speed itself
    EXPECT_GT(std::stod(after.substr(after.find("T:") + 2)),
              std::stod(before.substr(before.find("T:") + 2)));
}

TEST(WindowRun, TheWindGraphIsRedrawnByTrackRecordsAndAsksForItsStart) {
    Boat boat;
    boat.Start();
    WindGraphWindow* graph = boat.run->OpenWindGraph();
    EXPECT_TRUE(boat.Centre().WindGraphOpen());
    EXPECT_EQ(graph->Canvas()->Message(), "Cannot draw wind, no winddata (yet)");

    // Track Time is one second: a line a second later is a record, which redraws the graph.
    ASSERT_TRUE(boat.Send(kLine));
    QTest::qWait(1100);
    ASSERT_TRUE(boat.Send(kWaypointLine));
    ASSERT_GT(boat.Centre().WindHistory().Count, 0);
    EXPECT_EQ(graph->Canvas()->Message(), "");

    boat.dialogs.textAnswer = "25:99";
    QTest::mouseDClick(graph->StartLabel(), Qt::LeftButton);
    EXPECT_EQ(boat.dialogs.messages.back(), "Invalid time value: 25:99");

    graph->close();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !boat.Centre().WindGraphOpen(); }, 2000));
}

TEST(HelpWindow, ShowsTheFileBesideTheProgramOrTheBuiltInHelp) {
    QTemporaryDir dir;
    HelpInput input;
    input.title = "Wakeline";
    input.version = "0.1.0";
    input.programDir = dir.path().toStdString();
    input.programName = "wakeline";
    input.trackTime = 10;
    StdFileSystem files;
    HelpWindow builtIn(MakeHelpContent(input, files));
    EXPECT_TRUE(builtIn.HelpText()->toPlainText().startsWith("THIS IS A BRIEF HELP"));
    EXPECT_EQ(builtIn.ThresholdLabel(0)->text(), "Time 10");
    EXPECT_EQ(builtIn.TitleLabel()->text(), "Wakeline  0.1.0\n" + dir.path() + "/wakeline");

    QFile help(dir.filePath("Wakeline.txt"));
    ASSERT_TRUE(help.open(QIODevice::WriteOnly));
    help.write("Reefing\r\nfirst reef at 18 knots\n");
    help.close();
    HelpWindow fromFile(MakeHelpContent(input, files));
    EXPECT_EQ(fromFile.HelpText()->toPlainText(), "Reefing\nfirst reef at 18 knots\n");
}

}  // namespace
}  // namespace wakeline
