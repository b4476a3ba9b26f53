// How names of members are written in Python.
#pragma once

#include <string>
#include <string_view>

namespace tarn::python {

/// Lower case without underscores: "glass_trans", "GlassTrans" and "GLASSTRANS" are one name.
std::string folded(std::string_view name);

/// "glass_trans" of "GlassTrans", "des_idiff" of "DesIDIFF", "index_db_name" of "IndexDBName": a word begins at a
/// capital after a small letter or a digit, and at the last capital of several before a small letter.
std::string snake_case(std::string_view name);

}  // namespace tarn::python
