#include "shell/window/message_box_dialogs.h"

#include <QEventLoop>
#include <QInputDialog>
#include <QMessageBox>

#include "display/window/shown_text.h"

namespace wakeline {
MessageBoxDialogs::MessageBoxDialogs(QString title, QObject* parent)
    : QObject(parent), title_(std::move(title)) {}

QList<QMessageBox*> MessageBoxDialogs::OpenMessages() const {
    QList<QMessageBox*> boxes;
    for (const QPointer<QMessageBox>& box : open_) {
        if (box) {
            boxes.append(box.data());
        }
    }
    return boxes;
}

void MessageBoxDialogs::ShowMessage(const std::string& text) {
    const QString shown = ShownText(text);
    for (QMessageBox* box : OpenMessages()) {
        if (box->text() == shown) {
            return;
        }
    }
    auto* box =
        new QMessageBox(QMessageBox::NoIcon, title_, shown, QMessageBox::Ok, parentWindow_.data());
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowModality(Qt::NonModal);
    open_.removeAll(nullptr);
    open_.append(box);
    box->show();
}

bool MessageBoxDialogs::AskOkCancel(const std::string& text) {
    if (answerOkUnasked_) {
        return true;
    }
    QMessageBox box(QMessageBox::NoIcon, title_, ShownText(text),
                    QMessageBox::Ok | QMessageBox::Cancel, parentWindow_.data());
    box.setDefaultButton(QMessageBox::Ok);
    return box.exec() == QMessageBox::Ok;
}

std::optional<std::string> MessageBoxDialogs::AskText(const std::string& prompt,
                                                      const std::string& title) {
    bool ok = false;
    const QString answer = QInputDialog::getText(parentWindow_.data(), ShownText(title),
                                                 ShownText(prompt), QLineEdit::Normal, {}, &ok);
    if (!ok) {
        return std::nullopt;
    }
    // The track file is 8-bit text: what Latin-1 cannot carry becomes "?".
    const QByteArray bytes = answer.toLatin1();
    return std::string(bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

void MessageBoxDialogs::WaitForOpenMessages() {
    while (!OpenMessages().isEmpty()) {
        QEventLoop loop;
        connect(OpenMessages().first(), &QObject::destroyed, &loop, &QEventLoop::quit);
        loop.exec();
    }
}

}  // namespace wakeline
