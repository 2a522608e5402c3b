#pragma once
// The per-user settings store on Linux: QSettings in its native format, organisation and
// application "Wakeline", that is $XDG_CONFIG_HOME/Wakeline/Wakeline.conf (default
// ~/.config/Wakeline/Wakeline.conf), one INI section per settings section.

#include <memory>

#include "base/settings_store.h"

class QSettings;

namespace wakeline {

class QtSettingsStore : public SettingsStore {
  public:
    QtSettingsStore();
    ~QtSettingsStore() override;

    std::optional<std::string> Get(const std::string& section,
                                   const std::string& key) const override;
    // Written through at once, so a killed run keeps what it stored.
    Status Set(const std::string& section, const std::string& key,
               const std::string& value) override;

  private:
    std::unique_ptr<QSettings> settings_;
};

}  // namespace wakeline
