// A year of weather as a person reads it: tables and a chart for a terminal, a heat map for a page.
#pragma once

#include <string>

#include "tarn/hourly_file.h"
#include "tarn/weather.h"

namespace tarn::cli {

void show_site(const HW1ReaderWriter& year);
/// The months' statistics as two tables.
void show_statistics(const WTH_Stats& statistics);
/// The months' dry-bulbs as columns of characters.
void show_month_chart(const WTH_Stats& statistics);

/// A self-contained picture (SVG) of the year: 24 hours by 365 days of dry-bulb, humidity and solar, in IP and SI
/// units.
std::string heat_map(const HW1ReaderWriter& year);

}  // namespace tarn::cli
