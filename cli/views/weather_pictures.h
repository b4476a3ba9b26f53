// A year of weather as a person reads it: tables and a chart for a terminal.
#pragma once

#include "tarn/hourly_file.h"
#include "tarn/weather.h"

namespace tarn::cli {

/// Whose design conditions the importer chose: those that 0.4 % (summer) and 99.6 % (winter) of the hours exceed. Of an
/// hourly file it is not known which they are.
void show_site(const HW1ReaderWriter& year, bool has_known_design);
/// The months' statistics as two tables.
void show_statistics(const WTH_Stats& statistics);
/// The months' dry-bulbs as columns of characters.
void show_month_chart(const WTH_Stats& statistics);

}  // namespace tarn::cli
