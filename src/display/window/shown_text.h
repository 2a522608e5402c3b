#pragma once
// The program's texts are 8-bit (the instruments', the files', the messages'): each byte is
// one Latin-1 character on the screen, and a CR LF is one line break.

#include <QString>
#include <string>

namespace wakeline {

inline QString ShownText(const std::string& text) {
    QString shown = QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
    shown.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    shown.remove(QLatin1Char('\r'));
    return shown;
}

}  // namespace wakeline
