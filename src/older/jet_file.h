// A Jet database by libmdb, told line by line as JSON: {"format"}, then {"table", "columns"} with {"row"}s after it,
// {"unreadable", "why"}, {"note"}, and {"end"} last.
#pragma once

#include <cstdio>
#include <string>

namespace tarn::older {

/// libmdb asks the environment how to read: that is cleared. Its own messages go to standard error.
void tell_tables(const std::string& path, std::FILE* to);

}  // namespace tarn::older
