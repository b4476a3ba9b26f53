// The manual pages, in the manual's own language, from the tables that help is made of.
#pragma once

#include <string>
#include <vector>

namespace tarn::cli {

struct ManualPage {
  std::string file;  // "tarn-windows.1"
  std::string text;
};
/// One of the program and one of each group.
std::vector<ManualPage> manual_pages();

}  // namespace tarn::cli
