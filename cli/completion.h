// What can come next on the command line.
#pragma once

#include <string>
#include <vector>

namespace tarn::cli {

/// A line for each word that can stand in the place of the last one, which may be unfinished or empty, with a tab and
/// what it is after it where there is more to tell. None where a file name is wanted.
std::vector<std::string> completions(const std::vector<std::string>& words);

}  // namespace tarn::cli
