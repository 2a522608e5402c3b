#pragma once
// The per-user settings store of the application "Wakeline": texts by section and key.

#include <map>
#include <optional>
#include <string>
#include <utility>

#include "base/status.h"

namespace wakeline {

class SettingsStore {
  public:
    virtual ~SettingsStore() = default;
    // The stored text, empty when the key does not exist.
    virtual std::optional<std::string> Get(const std::string& section,
                                           const std::string& key) const = 0;
    // Stores the text; a failure says why it could not be kept (the store may then hold it
    // for this run only).
    virtual Status Set(const std::string& section, const std::string& key,
                       const std::string& value) = 0;
};

// A store held in memory, for tests and for runs that must not touch the user's settings.
class MemorySettingsStore : public SettingsStore {
  public:
    std::optional<std::string> Get(const std::string& section,
                                   const std::string& key) const override {
        auto found = values_.find({section, key});
        if (found == values_.end()) {
            return std::nullopt;
        }
        return found->second;
    }
    Status Set(const std::string& section, const std::string& key,
               const std::string& value) override {
        values_[{section, key}] = value;
        return {};
    }

  private:
    std::map<std::pair<std::string, std::string>, std::string> values_;
};

}  // namespace wakeline
