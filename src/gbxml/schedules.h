// Schedules from the year, week and day schedules of a drawing.
#pragma once

#include "gbxml/filling.h"

namespace tarn {

class Schedules {
 public:
  explicit Schedules(Filling& filling) : filling_(filling) {}

  void fill_all();
  /// The schedule of an id; 0 for none, and for an id that the file does not have, with a note.
  int16_t index(Element user, const char* reference);

 private:
  Filling& filling_;
  std::map<std::string_view, int16_t> indexes_;
};

}  // namespace tarn
