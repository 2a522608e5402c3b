#include "base/platform/qt_settings_store.h"

#include <QSettings>
#include <QString>

namespace wakeline {
namespace {

QString KeyOf(const std::string& section, const std::string& key) {
    return QString::fromStdString(section) + '/' + QString::fromStdString(key);
}

}  // namespace

QtSettingsStore::QtSettingsStore()
    : settings_(std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope,
                                            QStringLiteral("Wakeline"),
                                            QStringLiteral("Wakeline"))) {}

QtSettingsStore::~QtSettingsStore() = default;

std::optional<std::string> QtSettingsStore::Get(const std::string& section,
                                                const std::string& key) const {
    const QVariant value = settings_->value(KeyOf(section, key));
    if (!value.isValid()) {
        return std::nullopt;
    }
    return value.toString().toStdString();
}

Status QtSettingsStore::Set(const std::string& section, const std::string& key,
                            const std::string& value) {
    settings_->setValue(KeyOf(section, key), QString::fromStdString(value));
    settings_->sync();
    // QSettings keeps no system error text, only its kind.
    switch (settings_->status()) {
        case QSettings::NoError:
            return {};
        case QSettings::AccessError:
            return Status::Failure("save " + section + "/" + key + " to",
                                   settings_->fileName().toStdString(),
                                   "the file cannot be written");
        case QSettings::FormatError:
            break;
    }
    return Status::Failure("save " + section + "/" + key + " to",
                           settings_->fileName().toStdString(), "the file is not in settings form");
}

}  // namespace wakeline
