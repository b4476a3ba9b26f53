// A project of given size, twice: one folder for us and one, the same to the byte, for the floor.
#pragma once

#include <string>

#include "tarn/window.h"

namespace tarn::bench {

/// Numbers of entities. Spaces are dealt out to windows and systems in turn, systems to plants, both to buildings.
struct Shape {
  int windows = 0, spaces = 0, systems = 0, plants = 0, buildings = 0;
};

struct Paths {
  std::string index, windows;
};

struct Sample {
  Paths ours, floor;
};

Sample make_sample(const std::string& folder, const Shape& shape);

WindowRecord sample_window(int number);

}  // namespace tarn::bench
