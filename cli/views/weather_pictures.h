// A year of weather as a person reads it: tables and a chart for a terminal.
#pragma once

#include "tarn/hourly_file.h"
#include "tarn/weather.h"

namespace tarn::cli {

void show_site(const HW1ReaderWriter& year);
/// The months' statistics as two tables.
void show_statistics(const WTH_Stats& statistics);
/// The months' dry-bulbs as columns of characters.
void show_month_chart(const WTH_Stats& statistics);

}  // namespace tarn::cli
