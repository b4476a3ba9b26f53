#include "tarn/pump_loop.h"

#include "tarn/reflect/describe.h"

namespace tarn {

const ClassInfo& PLT_Pump::info() const {
  using R = PumpRecord;
  static constexpr auto members =
      describe<PLT_Pump>(Failures::Raised, property<&R::Flow>.unit_by<&R::FlowUnits>(), property<&R::FlowUnits>,
                         property<&R::Performance>.unit_by<&R::PerfUnits>(), property<&R::PerfUnits>,
                         property<&R::MechanicalEff>("%"), property<&R::ElectricalEff>("%"), property<&PLT_Pump::Name>);
  static const ClassInfo info(members);
  return info;
}

PLT_PumpLoop::PLT_PumpLoop(std::string name) : name_(std::move(name)) {
  for (int i = 1; i <= kPumps; ++i) Pumps(i).set_name(name_ + " Pump " + std::to_string(i));
}

const ClassInfo& PLT_PumpLoop::info() const {
  using R = PumpLoopRecord;
  using C = PLT_PumpLoop;
  static constexpr auto members =
      describe<C>(Failures::Raised, property<&R::Used>, converted<&R::NumPumps, &C::NumPumps, &C::SetNumPumps>,
                  property<&R::PumpControl>, property<&R::StaticHead>("ft wg"), property<&R::MinimumPumpFlow>("%"),
                  property<&R::MinimumEqptFlow>("%"), property<&R::DesCoilDeltaT>("delta F"),
                  property<&R::DesCoilDeltaT2>("delta F"), property<&R::PipeHeatGainFactor>("%"),
                  property<&R::PipeHeatGainFactor2>("%"), owned<&C::Pumps>, property<&C::Name>, method<&C::Validate>);
  static const ClassInfo info(members);
  return info;
}

void PLT_PumpLoop::SetNumPumps(int16_t pumps) {
  const auto refuse = [pumps](const std::string& bound) {
    fail(ErrorNumber::SubscriptOutOfRange, "NumPumps value is out of range: [" + std::to_string(pumps) + bound + "]");
  };
  if (pumps < 0) refuse(" < 0");
  if (pumps > kPumps) refuse(" > " + std::to_string(kPumps));
  PumpLoopRecord::NumPumps = pumps;
}

void PLT_PumpLoop::Validate() const {
  if (Used && NumPumps() < 1)
    fail(ErrorNumber::InvalidCall, "Data error: if pump loop is used, must have NumPumps >=1");
}

}  // namespace tarn
