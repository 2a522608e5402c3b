#pragma once
// The run's dialogs as a sailor sees them: message boxes with OK and the title "Wakeline", a
// question with OK and Cancel, a one-line prompt. A message does not wait for its answer, so a
// box nobody clicks through the night never holds up the track; a message already open is not
// opened a second time, so a burst of the same message from one bad file shows one box.

#include <QList>
#include <QObject>
#include <QPointer>

#include "base/user_dialogs.h"

class QMessageBox;
class QWidget;

namespace wakeline {

class MessageBoxDialogs : public QObject, public UserDialogs {
    Q_OBJECT
  public:
    explicit MessageBoxDialogs(QString title, QObject* parent = nullptr);

    // The window the boxes belong to; null shows them on their own (start-up).
    void SetParentWindow(QWidget* window) { parentWindow_ = window; }

    void ShowMessage(const std::string& text) override;
    bool AskOkCancel(const std::string& text) override;
    std::optional<std::string> AskText(const std::string& prompt,
                                       const std::string& title) override;

    // The message boxes still open.
    QList<QMessageBox*> OpenMessages() const;
    // Waits until every open message has been answered (a start that cannot go on).
    void WaitForOpenMessages();
    // From now on a question is answered OK without a box: the run is closing on a signal, and
    // a shutdown does not wait for a click from a chart table nobody may be at.
    void AnswerOkUnasked() { answerOkUnasked_ = true; }

  private:
    QString title_;
    QPointer<QWidget> parentWindow_;
    QList<QPointer<QMessageBox>> open_;
    bool answerOkUnasked_ = false;
};

}  // namespace wakeline
