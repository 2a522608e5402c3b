#pragma once
// The live display's view of the run's performance tables: damping weight, wind corrections
// from the correction table and target speeds from the current sail's polar table.

#include "display/performance_lookup.h"
#include "performance/performance_tables.h"

namespace wakeline {

class TableLookup : public PerformanceLookup {
  public:
    // `tables` must outlive the lookup. The tables start unused until SetPolarTablesOn.
    explicit TableLookup(const PerformanceTables& tables) : tables_(tables) {}

    // Start-up turns the tables on when the polar file was read and a sail is current.
    void SetPolarTablesOn(bool on) { polarTablesOn_ = on; }

    bool PolarTablesOn() const override { return polarTablesOn_; }
    bool HasCurrentTable() const override { return tables_.Polars.Current >= 0; }
    float DampingFactor() const override { return tables_.DampingFactor; }
    std::optional<float> AngleCorrection(float angleDeg, float speedKn) const override;
    std::optional<float> SpeedCorrection(float angleDeg, float speedKn) const override;
    // Empty for a current index beyond the six tables the set can hold.
    std::optional<float> TargetSpeed(float angleDeg, float windSpeedKn) const override;

  private:
    const PerformanceTables& tables_;
    bool polarTablesOn_ = false;
};

}  // namespace wakeline
