#include "cli/examples.h"

#include <algorithm>
#include <vector>

namespace tarn::cli {

const Example& example_of(std::string_view group) {
  static const std::vector<Example> all{
      {"windows", "", "South 4x5", "Height=4 Width=5", "\"GlassTrans(2)=0.78\" FrameType=3", "OverallUValue>0.5",
       "Name,Height,OverallUValue", "CalculatePerformance"},
      {"doors", "", "Main entrance", "AreaSpec=DAS_HEIGHT_AND_WIDTH Height=7 Width=6", "SolidUValue=0.3",
       "SolidUValue<0.5 or GlassUValue<0.5", "Name,SolidUValue"},
      {"shades", "", "Deep overhang", "OvhgExt=2.5 OvhgHeight=0.5", "RHFinExt=1 RHFinHeight=4", "OvhgExt>1",
       "Name,OvhgExt"},
      {"walls", "", "Brick", "\"Layer(3).Thickness=2\"", "\"Layer(2).Density=120\"", "Layer(2).Thickness>=4",
       "Name,OverallUValue,Layer(2).Thickness", "CalcTransferCoefficients"},
      {"roofs", "", "Built-up roof", "\"Layer(3).Thickness=4\"", "Absorptivity=0.7", "OverallUValue<0.1",
       "Name,OverallUValue", "ComputeSummary"},
      {"schedules", "", "Office hours", "\"HourlyValue(1,0)=0\" \"HourlyValue(1,12)=90\"",
       "\"ProfileName(1)=Weekdays\"", "ScheduleType=ST_FRACTIONAL", "Name,ScheduleType", "GetValue 1 1 12"},
      {"spaces", "", "Open office", "FloorArea=1200 AvgHeight=9", "People.Occupancy=12", "FloorArea>500",
       "Name,FloorArea", "GetMaxOccupancy"},
      {"air-systems", "--type VAV ", "Office VAV", "\"ZoneData(1).Name=North zone\"",
       "HeatSys.Used=true HeatSys.Source=ST_HOT_WATER", "SystemType=8", "Name,SystemType", "IsHWCoilUsed"},
      {"chillers", "--type WATER_COOLED_CENTRIFUGAL ", "Chiller A", "CoolingMode.FLCapacity=250", "MinECWT=55",
       "CoolingMode.FLCapacity>100", "Name,ChillerType,CoolingMode.FLCapacity", "GetDXFCDefaults 1"},
      {"boilers", "", "Gas boiler", "BoilerOutput=500 DesignHWST=180", "FuelType=BFT_NATURAL_GAS", "BoilerOutput>100",
       "Name,BoilerOutput"},
      {"towers", "", "Tower on the roof", "DesignWetBulb=78 DesignRange=10", "DesignApproach=7", "DesignRange>=10",
       "Name,DesignRange,DesignApproach"},
      {"plants", "--type HOT_WATER ", "Heating plant", "SystemSelect.NumSystems=0", "Name=\"North plant\"",
       "Name~*plant", "Name,PlantType", "General.GetDetailedTowerCount"},
      {"electric-rates", "", "Day rate", "FlatRate=0.12", "FixedCharge=25", "FlatRate<0.2",
       "Name,FlatRate,FixedCharge"},
      {"fuel-rates", "", "Natural gas", "FlatRate=0.9", "FixedCharge=12", "FlatRate<2", "Name,FlatRate,FixedCharge"},
      {"buildings", "", "Mall", "BuildingInputs.AddBldgFloorArea=500", "Name=\"Shopping mall\"", "Name~*mall",
       "Name,Index"}};
  static const Example plain{"", "", "First", "", "Name=Second", "Name~F*", "Name,Index"};
  const auto found = std::find_if(all.begin(), all.end(), [&](const Example& each) { return each.group == group; });
  return found == all.end() ? plain : *found;
}

}  // namespace tarn::cli
