// A water loop of a plant, with its pumps.
#pragma once

#include "tarn/base/flow_units.h"
#include "tarn/plant_codes.h"
#include "tarn/storage/part.h"

namespace tarn {

struct PumpRecord {
  R4 Flow;
  Code<COM_FlowUOM> FlowUnits;
  R4 Performance;
  Code<PLT_PumpPerfUnits> PerfUnits;
  R4 MechanicalEff, ElectricalEff;  // per cent
};
static_assert(sizeof(PumpRecord) == 20);

struct PumpLoopRecord {
  Bool Used;
  I2 NumPumps;
  Code<PLT_PumpControls> PumpControl;
  R4 StaticHead;                               // ft wg
  R4 MinimumPumpFlow, MinimumEqptFlow;         // per cent of the design flow
  R4 DesCoilDeltaT, DesCoilDeltaT2;            // F; of a changeover loop cooling, then heating
  R4 PipeHeatGainFactor, PipeHeatGainFactor2;  // per cent of the load; likewise
};
static_assert(sizeof(PumpLoopRecord) == 34);

constexpr int kPumps = 13;

class PLT_Pump final : public Part<PumpRecord> {
 public:
  PLT_Pump() = default;
  explicit PLT_Pump(std::string name) : name_(std::move(name)) {}
  const ClassInfo& info() const override;
  /// "CondenserWaterLoop Pump 3".
  std::string Name() const { return name_; }
  void set_name(std::string name) { name_ = std::move(name); }

 private:
  std::string name_;
};

class PLT_PumpLoop final : public Part<PumpLoopRecord> {
 public:
  PLT_PumpLoop() : PLT_PumpLoop(std::string{}) {}
  explicit PLT_PumpLoop(std::string name);
  const ClassInfo& info() const override;
  std::string Name() const { return name_; }

  int16_t NumPumps() const { return PumpLoopRecord::NumPumps; }
  /// 0 to 13. Error `SubscriptOutOfRange`.
  void SetNumPumps(int16_t pumps);
  /// Error `InvalidCall` for a used loop without a pump.
  void Validate() const;

  Parts<PLT_Pump, kPumps> Pumps;

 private:
  std::string name_;
};

}  // namespace tarn
