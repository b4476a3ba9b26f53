// The inputs that a new air system of each type gets: the VAV set, and for each other type the values that differ.
// Enumerations by their codes, temperatures in F. A word is Property=value, values in a row from element 1 on, or
// *value for all elements.
#include "airsystems/defaults.h"

namespace tarn {

const std::array<ComponentDefaults, 21> kVavDefaults{{
    {"AirSystem",
     "Sized=false CoilDataValid=false Simulated=false CWCoilsExists=false HWCoilsExists=false STMCoilsExists=false"},
    {"CoolSys",
     "Used=true SupAirSpec=0 SupAirVal=55 SupAirReset=1 FanCycled=false ResetTemp=65 OAMinTemp=95 OAMaxTemp=30 "
     "Source=0 CoilBypass=0.1 UnoccCool=true BypassFlowRate=0 ChangeoverTime=0 SizingFactor=0 DesignET=95 "
     "DesignCapacity=1 DesignPower=11 DesignPowerUnits=2 DesignPowerOption=1 DXConfig=0 CutoffOAT1=55 "
     "LowTempControlUsed=true CutoffOAT2=0 PerfModelType=0 AutoSize=true"},
    {"HeatSys",
     "Used=false SupAirSpec=0 SupAirVal=95 SupAirReset=3 FanCycled=false ResetTemp=90 OAMinTemp=50 OAMaxTemp=10 "
     "Source=0 SizingFactor=0 DesignET=47 DesignCapacity=1 DesignPower=3.3 DesignPowerUnits=0 DesignPowerOption=1 "
     "DXConfig=0 CutoffOAT=-15 PerfModelType=0 DirectHeatType=3 DirectHeatCapacity=1 DirectHeatEff=0.85 "
     "DirectHeatOption=0 DirectHeatMiscElec=0 AuxHeatUpperCutoff=40 AutoSize=true"},
    {"OutVent",
     "VentType=1 CommonSys=false MinCO2=100 MaxCO2=700 OutdoorCO2=400 SizingMethod=0 MinVentRate=0 Schedule=0 "
     "DampersOn=false LeakRate=0"},
    {"SupplyDuct", "HeatGain=0 LeakRate=0"},
    {"RetPlenum", "Used=false RoofGain=0 WallGain=0 LightGain=0"},
    {"SupplyFan",
     "Used=true FanType=1 PerfUnits=1 Value=0 Configuration=1 "
     "KWValue=0.21,0.27,0.33,0.4,0.46,0.54,0.61,0.72,0.81,0.91,1 FanControl=0 LowSpeedFlow=100 MidSpeedFlow=0 "
     "Efficiency=0.54"},
    {"ReturnFan",
     "Used=false FanType=0 PerfUnits=1 Value=0 Efficiency=0.54 Configuration=0 "
     "KWValue=0.21,0.27,0.33,0.4,0.46,0.54,0.61,0.72,0.81,0.91,1 FanControl=0 LowSpeedFlow=100 MidSpeedFlow=0"},
    {"SupplyFan2",
     "Used=false FanType=0 PerfUnits=1 Value=0 Efficiency=0.54 Configuration=0 "
     "KWValue=0.21,0.27,0.33,0.4,0.46,0.54,0.61,0.72,0.81,0.91,1 FanControl=0 LowSpeedFlow=100 MidSpeedFlow=0"},
    {"Economizer", "Used=false EconomizerType=0 UpCutoff=73 LoCutoff=-60"},
    {"PreHeat",
     "Used=true Setpoint=50 DownStream=true Source=0 CoilBypass=0 AutoSize=true SizingFactor=0 DesignET=68 "
     "DesignCapacity=1 DesignPower=4.2 DesignPowerUnits=0 DesignPowerOption=1 DXConfig=0 CutoffOAT1=0 "
     "LowTempControlUsed=false CutoffOAT2=0 PerfModelType=0 DirectHeatType=3 DirectHeatCapacity=1 DirectHeatEff=0.85 "
     "DirectHeatOption=0 DirectHeatMiscElec=0"},
    {"PreCool",
     "Used=false Setpoint=60 DownStream=true Source=0 CoilBypass=0.1 AutoSize=true SizingFactor=0 DesignET=95 "
     "DesignCapacity=1 DesignPower=11 DesignPowerUnits=2 DesignPowerOption=1 DXConfig=0 CutoffOAT1=55 "
     "LowTempControlUsed=true CutoffOAT2=0 PerfModelType=0 DirectHeatType=0 DirectHeatCapacity=0 DirectHeatEff=0 "
     "DirectHeatOption=0 DirectHeatMiscElec=0"},
    {"Humidity", "Used=false Setpoint=0.3 DeviceType=3 HeatSource=8 DevicePower=0"},
    {"Dehumid", "Used=false Setpoint=0.6"},
    {"SafetyFac", "Sensible=0 Latent=0 Heating=0"},
    {"ZoneSched",
     "ReheatSource=0 ReheatCoil=*true HeatingSource=0 HeatingUnit=*true TermClgSource=3 TermClgSchedule=*true "
     "TstatSchedule=0"},
    {"WCSystemData",
     "LoopConfig=1 TowerID=0 BoilerID=0 LoopMaxSetpt=86 LoopMinSetpt=68 FreeCoolingUsed=false FreeCoolingType=0 "
     "HXApproach=3 CondPumpPerf=19 CondPumpUnits=2 CondPumpMechEff=70 CondPumpElecEff=94"},
    {"SplitSystem",
     "AutoSize=true ClgSizingFactor=0 HtgSizingFactor=0 CompressorType=0 HeatRecoveryUsed=false MinimumLoad=10 "
     "PipeLength=0 PipeHeight=0 DesignPowerOption=1 ClgDesignOADB=95 ClgDesignCapacity=1 ClgDesignPowerUnits=2 "
     "ClgDesignPower=10.8 HtgDesignOADB=47 HtgDesignCapacity=1 HtgDesignPowerUnits=0 HtgDesignPower=3.3 "
     "HtgCutoffOADB=-4 DirectHeatType=3 AuxHeatUpperCutoff=40"},
    {"ZoneData",
     "TotalSpacesInZone=0 AllZoneTstatSame=true UnoccCoolSetpt=80 OccHeatSetpt=70 UnoccHeatSetpt=65 "
     "TstatRange=1.5 DiversityFactor=1 AirRateSpec=1 ExhaustAirRate=0 ExhaustFanKW=0 AllZoneHtgUnitsSame=true "
     "HeatUnitType=0 HeatUnitTripTemp=30 HeatUnitSupTemp=110 HeatUnitFanSpec=1 HeatUnitFanVal=0 HeatUnitFanEff=0.5 "
     "AllZoneTermsSame=true TermType=4 MinAirSpec=3 MinAirValue=0 MinDamperPos=0 ReheatCoil=true TermFanSpec=1 "
     "TermFanVal=0 TermFanEff=0.5 TermSupTemp=95 AllZoneTermClgSame=true ClgAutoSize=true ClgDesignSizingFactor=0 "
     "ClgDesignET=95 ClgDesignCapacity=1 ClgDesignPower=11 ClgDesignPowerUnits=2 ClgDesignPowerOption=1 ClgCutoffOAT=0 "
     "AllZoneTermHtgSame=true HtgAutoSize=true HtgDesignSizingFactor=0 HtgDesignET=47 HtgDesignCapacity=1 "
     "HtgDesignPower=3.3 HtgDesignPowerUnits=0 HtgDesignPowerOption=1 HtgCutoffOAT=-15 DirectHeatCapacity=1 "
     "DirectHeatEff=0.85 DirectHeatOption=0 DirectHeatMiscElec=0 OccCoolSetpt=75"},
    {"ASD",
     "CoolingTermTemp=0 HeatingSupplyTemp=0 SupplyFan1CFM=0 SupplyFan2CFM=0 VentCFM=0 ExhaustCFM=0 FloorArea=0 "
     "SizingMethod=3 Source=1 CWDeltaT=10 HWDeltaT=20 CalcStartMonth=1 CalcEndMonth=12 SDLSForPeakHour=true "
     "SDLSMonth=0 SDLSHour=0 CoolingSupplyTemp=0"},
    {"ZSD",
     "MaxCFM=0 MinCFM=0 TermCFM=0 ReheatCapacity=0 SpaceHeatCapacity=0 FloorArea=0 CoolingCoilTot=0 HeatingCoilTot=0 "
     "MaxCooling=0 MaxHeating=0 MaxPeople=0 G0=0 G1=0 G2=0 P1=0"},
}};

const std::array<SystemDefaults, 21> kSystemDefaults{{
    {1, "AS_Dflt_01_SZCAV", "SZCAV Defaults", 1, 1,
     "CoolSys: SupAirVal=58 SupAirReset=2 ResetTemp=75 "
     "HeatSys: Used=true SupAirReset=2 ResetTemp=70 "
     "OutVent: VentType=2 "
     "PreHeat: Used=false "
     "ZoneData: TermType=1 MinDamperPos=100 ReheatCoil=false "
     "ASD: SizingMethod=4"},
    {2, "AS_Dflt_02_CAVTR", "CAVRH Defaults", 2, 1,
     "OutVent: VentType=2 "
     "PreHeat: Used=false "
     "ZoneData: TermType=2 MinDamperPos=100 "
     "ASD: SizingMethod=4"},
    {3, "AS_Dflt_03_2DMZ", "MZ Defaults", 3, 5,
     "CoolSys: Source=3 "
     "HeatSys: Used=true SupAirReset=1 Source=7 "
     "OutVent: VentType=2 "
     "SupplyFan: Configuration=0 "
     "PreHeat: Used=false Source=7 "
     "PreCool: Source=3 "
     "ZoneData: TermType=1 MinDamperPos=100 ReheatCoil=false "
     "ASD: SizingMethod=4"},
    {4, "AS_Dflt_04_3DMZ", "BMZ Defaults", 4, 5,
     "CoolSys: Source=3 "
     "HeatSys: Used=true SupAirReset=1 Source=7 "
     "OutVent: VentType=2 "
     "SupplyFan: Configuration=0 "
     "PreHeat: Used=false Source=7 "
     "PreCool: Source=3 "
     "ZoneData: TermType=1 MinDamperPos=100 ReheatCoil=false "
     "ASD: SizingMethod=4"},
    {5, "AS_Dflt_05_DDCAV", "DDCAV Defaults", 5, 5,
     "CoolSys: Source=3 "
     "HeatSys: Used=true SupAirReset=1 Source=7 "
     "OutVent: VentType=2 "
     "SupplyFan: Configuration=0 "
     "PreHeat: Used=false Source=7 "
     "PreCool: Source=3 "
     "ZoneData: TermType=8 MinDamperPos=100 ReheatCoil=false "
     "ASD: SizingMethod=4"},
    {6, "AS_Dflt_06_MUADOAS", "TEMPER Defaults", 6, 2,
     "CoolSys: Used=false SupAirReset=3 "
     "OutVent: VentType=2 "
     "PreHeat: Setpoint=70 Source=3 "
     "PreCool: Used=true Setpoint=75 Source=1 "
     "ZoneData: TermType=1 MinDamperPos=100 ReheatCoil=false AirDistribution=8 "
     "ASD: SizingMethod=4"},
    {7, "AS_Dflt_07_4PIND", "4PIND Defaults", 7, 5,
     "CoolSys: Source=3 "
     "OutVent: VentType=2 CommonSys=true "
     "PreHeat: Used=false Source=7 "
     "ZoneSched: ReheatSource=7 "
     "ZoneData: TermType=10 MinDamperPos=100 "
     "ASD: SizingMethod=4"},
    {8, "AS_Dflt_08_VAV", "VAV Defaults", 8, 1, ""},
    {9, "AS_Dflt_09_1FDDVAV", "1FDDVAV Defaults", 9, 5,
     "CoolSys: Source=3 "
     "HeatSys: Used=true SupAirReset=1 Source=7 "
     "SupplyFan: Configuration=0 "
     "PreHeat: Source=7 "
     "PreCool: Source=3 "
     "ZoneData: TermType=7 ReheatCoil=false"},
    {10, "AS_Dflt_10_2FDDVAV", "2FDDVAV Defaults", 10, 5,
     "CoolSys: Source=3 "
     "HeatSys: Used=true SupAirReset=1 Source=7 "
     "SupplyFan2: Used=true FanType=1 "
     "PreHeat: Used=false Source=7 "
     "PreCool: Source=3 "
     "ZoneData: TermType=7 ReheatCoil=false"},
    {11, "AS_Dflt_11_VVT", "VVT Defaults", 11, 1,
     "CoolSys: SupAirVal=58 BypassFlowRate=80 ChangeoverTime=5 "
     "HeatSys: Used=true SupAirReset=1 "
     "PreHeat: Used=false "
     "ZoneData: TermType=12 ReheatCoil=false"},
    {12, "AS_Dflt_12_PkgDXFC", "PKG-FC Defaults", 12, 6,
     "CoolSys: SupAirVal=58 SupAirReset=2 ResetTemp=75 Source=1 LowTempControlUsed=false CutoffOAT2=15 "
     "HeatSys: Used=true SupAirReset=2 ResetTemp=70 Source=3 "
     "OutVent: VentType=2 "
     "SupplyFan: Used=false FanType=0 "
     "PreHeat: Used=false Setpoint=70 Source=3 "
     "PreCool: Setpoint=75 Source=1 "
     "ZoneData: TermType=11 MinDamperPos=100 ReheatCoil=false "
     "ASD: SizingMethod=4"},
    {13, "AS_Dflt_13_SplitDXFC", "SPLT-FC Defaults", 13, 6,
     "CoolSys: SupAirVal=58 SupAirReset=2 ResetTemp=75 Source=1 LowTempControlUsed=false CutoffOAT2=15 "
     "HeatSys: Used=true SupAirReset=2 ResetTemp=70 Source=3 "
     "OutVent: VentType=2 "
     "SupplyFan: Used=false FanType=0 "
     "PreHeat: Used=false Setpoint=70 Source=3 "
     "PreCool: Setpoint=75 Source=1 "
     "ZoneData: TermType=11 MinDamperPos=100 ReheatCoil=false "
     "ASD: SizingMethod=4"},
    {14, "AS_Dflt_14_WSHP", "WSHP Defaults", 14, 6,
     "CoolSys: SupAirVal=58 SupAirReset=2 ResetTemp=75 Source=2 LowTempControlUsed=false CutoffOAT2=15 "
     "HeatSys: Used=true SupAirReset=2 ResetTemp=70 Source=2 "
     "OutVent: VentType=2 "
     "SupplyFan: Used=false FanType=0 "
     "PreHeat: Used=false Setpoint=70 Source=3 "
     "PreCool: Setpoint=75 Source=1 "
     "WCSystemData: LoopConfig=0 "
     "ZoneData: TermType=11 MinDamperPos=100 ReheatCoil=false ClgDesignET=86 ClgDesignPower=12 HtgDesignET=68 "
     "HtgDesignPower=4.2 HtgCutoffOAT=0 "
     "ASD: SizingMethod=4"},
    {15, "AS_Dflt_15_2PFC", "2P-FC Defaults", 15, 6,
     "CoolSys: SupAirVal=58 SupAirReset=2 ResetTemp=75 Source=3 LowTempControlUsed=false CutoffOAT2=15 "
     "HeatSys: Used=true SupAirReset=2 ResetTemp=70 Source=7 "
     "OutVent: VentType=2 "
     "SupplyFan: Used=false FanType=0 "
     "PreHeat: Used=false Setpoint=70 Source=7 "
     "PreCool: Setpoint=75 Source=3 "
     "ZoneData: TermType=11 MinDamperPos=100 ReheatCoil=false "
     "ASD: SizingMethod=4"},
    {16, "AS_Dflt_16_4PFC", "4P-FC Defaults", 16, 6,
     "CoolSys: SupAirVal=58 SupAirReset=2 ResetTemp=75 Source=3 LowTempControlUsed=false CutoffOAT2=15 "
     "HeatSys: Used=true SupAirReset=2 ResetTemp=70 Source=7 "
     "OutVent: VentType=2 "
     "SupplyFan: Used=false FanType=0 "
     "PreHeat: Used=false Setpoint=70 Source=7 "
     "PreCool: Setpoint=75 Source=3 "
     "ZoneData: TermType=11 MinDamperPos=100 ReheatCoil=false "
     "ASD: SizingMethod=4"},
    {18, "AS_Dflt_18_GWSHP", "GWSHP Defaults", 18, 6,
     "CoolSys: SupAirVal=58 SupAirReset=2 ResetTemp=75 Source=2 LowTempControlUsed=false CutoffOAT2=15 "
     "HeatSys: Used=true SupAirReset=2 ResetTemp=70 Source=2 "
     "OutVent: VentType=2 "
     "SupplyFan: Used=false FanType=0 "
     "PreHeat: Used=false Setpoint=70 Source=3 DesignET=50 DesignPower=3.6 "
     "PreCool: Setpoint=75 Source=1 "
     "ZoneData: TermType=11 MinDamperPos=100 ReheatCoil=false ClgDesignET=59 ClgDesignPower=16.200001 HtgDesignET=50 "
     "HtgDesignPower=3.6 HtgCutoffOAT=0 "
     "ASD: SizingMethod=4"},
    {19, "AS_Dflt_19_GSHP", "GSHP Defaults", 19, 6,
     "CoolSys: SupAirVal=58 SupAirReset=2 ResetTemp=75 Source=2 LowTempControlUsed=false CutoffOAT2=15 "
     "HeatSys: Used=true SupAirReset=2 ResetTemp=70 Source=2 "
     "OutVent: VentType=2 "
     "SupplyFan: Used=false FanType=0 "
     "PreHeat: Used=false Setpoint=70 Source=3 DesignET=32 DesignPower=3.1 "
     "PreCool: Setpoint=75 Source=1 "
     "ZoneData: TermType=11 MinDamperPos=100 ReheatCoil=false ClgDesignET=77 ClgDesignPower=13.4 HtgDesignET=32 "
     "HtgDesignPower=3.1 HtgCutoffOAT=0 "
     "ASD: SizingMethod=4"},
    {20, "AS_Dflt_20_VRF", "VRF Defaults", 13, 6,
     "CoolSys: SupAirVal=58 SupAirReset=2 ResetTemp=75 Source=1 LowTempControlUsed=false CutoffOAT2=15 "
     "HeatSys: Used=true SupAirReset=2 ResetTemp=70 Source=1 "
     "OutVent: VentType=2 "
     "SupplyFan: Used=false FanType=0 "
     "PreHeat: Used=false Setpoint=70 Source=3 "
     "PreCool: Setpoint=75 Source=1 "
     "SplitSystem: CompressorType=2 ClgDesignPower=10.9 AuxHeatUpperCutoff=70 "
     "ZoneData: TermType=11 MinDamperPos=100 ReheatCoil=false "
     "ASD: SizingMethod=4"},
    {21, "AS_Dflt_21_IB", "IB Defaults", 21, 6,
     "CoolSys: SupAirVal=58 SupAirReset=2 ResetTemp=75 Source=3 LowTempControlUsed=false CutoffOAT2=15 "
     "HeatSys: Used=true SupAirReset=2 ResetTemp=70 Source=7 "
     "OutVent: VentType=2 CommonSys=true "
     "SupplyFan: FanType=3 Value=5 KWValue=0.06,0.07,0.09,0.13,0.19,0.25,0.35,0.44,0.6,0.77 Efficiency=0.48 "
     "UnoccFlow=0.5 "
     "ReturnFan: Used=true FanType=3 Value=1.5 Efficiency=0.48 "
     "KWValue=0.06,0.07,0.09,0.13,0.19,0.25,0.35,0.44,0.6,0.77 "
     "SupplyFan2: UnoccFanControl=0 "
     "PreHeat: Setpoint=60 Source=7 UnoccSetpoint=56 "
     "PreCool: Used=true Source=3 UnoccSetpoint=64 "
     "Dehumid: Used=true Setpoint=0.75 "
     "ZoneData: TermType=13 MinDamperPos=100 ReheatCoil=false CoilBypass=0.09 AirflowRatio=3 "
     "ASD: SizingMethod=2"},
    {22, "AS_Dflt_22_ACB", "ACB Defaults", 22, 6,
     "CoolSys: SupAirVal=58 SupAirReset=2 ResetTemp=75 Source=3 LowTempControlUsed=false CutoffOAT2=15 "
     "HeatSys: Used=true SupAirReset=2 ResetTemp=70 Source=7 "
     "OutVent: VentType=2 CommonSys=true "
     "SupplyFan: Value=5 UnoccFlow=1 UnoccFanControl=0 "
     "ReturnFan: Used=true FanType=1 Value=1.5 "
     "PreHeat: Setpoint=55 Source=7 UnoccSetpoint=51 "
     "PreCool: Used=true Setpoint=55 Source=3 UnoccSetpoint=59 "
     "Dehumid: Used=true Setpoint=0.75 "
     "ZoneData: TermType=14 MinDamperPos=100 ReheatCoil=false CoilBypass=0 AirflowRatio=3 "
     "ASD: SizingMethod=2"},
}};

}  // namespace tarn
