// A client of the C interface that takes what it gives from an input: objects that are there or not, numbers out of
// range, texts of any bytes.
#pragma once

#include <list>
#include <string>
#include <vector>

#include "finding.h"
#include "input.h"
#include "tarn/tarn.h"

namespace tarn::fuzz {

/// What a call is given and hands out; read to the end, so that a text without an end is found.
inline size_t read_through(const char* text) { return text ? std::char_traits<char>::length(text) : 0; }
/// Of an argument: as long as it says.
inline void read_through(const tarn_value& text) {
  volatile char last = 0;
  for (int32_t i = 0; i < text.length; ++i) last = text.as.text[i];
  static_cast<void>(last);
}

class Client {
 public:
  explicit Client(Input input) : input_(input) {}
  virtual ~Client() = default;

 protected:
  void open_project(const std::string& folder, std::string_view prefix) {
    tarn_object* project = nullptr;
    require(tarn_create("COM_ProjectData", &project) == TARN_OK, "there is no project class");
    tarn_value value{TARN_TEXT, static_cast<int32_t>(folder.size()), {}};
    value.as.text = folder.c_str();
    tarn_let_by_name(project, "WorkPath", nullptr, 0, &value);
    value.length = static_cast<int32_t>(prefix.size());
    value.as.text = prefix.data();
    tarn_let_by_name(project, "FilePrefix", nullptr, 0, &value);
    objects_.push_back(project);
  }

  /// Without the parts of a path: nothing here may name a file outside of the project's folder.
  std::string text(size_t length) {
    std::string text = input_.text(length);
    for (size_t i = 0; i < text.size(); ++i) {
      if (text[i] == '/' || (text[i] == '.' && i > 0 && text[i - 1] == '.')) text[i] = '_';
    }
    return text;
  }
  /// Ended by a NUL; sometimes none at all.
  const char* name() {
    const uint8_t length = input_.byte();
    if (length == 255) return nullptr;
    return texts_.emplace_back(text(length)).c_str();
  }
  /// Mostly one that was handed out, released or not.
  tarn_object* object() {
    const uint8_t which = input_.byte();
    if (which == 254 && !objects_.empty()) return objects_.back();
    if (which == 255) return reinterpret_cast<tarn_object*>(input_.number<uint64_t>());
    return objects_.empty() ? nullptr : objects_[which % objects_.size()];
  }
  void keep(tarn_status status, tarn_object* made) {
    if (status == TARN_OK && made) objects_.push_back(made);
  }
  void keep(tarn_status status, const tarn_value& result) {
    if (status != TARN_OK) return;
    if (result.type == TARN_OBJECT) keep(status, result.as.object);
    if (result.type == TARN_TEXT)
      require(read_through(result.as.text) <= static_cast<size_t>(result.length), "a text has no end");
    if (result.type == TARN_REALS) {
      volatile double sum = 0;
      for (int32_t i = 0; i < result.length; ++i) sum = sum + result.as.reals[i];
    }
  }
  /// Mostly one that the object has.
  int32_t member_of(tarn_object* object) {
    const auto number = input_.number<int16_t>();
    const char* name = tarn_class_of(object);
    const int32_t count = name ? tarn_member_count(name) : 0;
    return count > 0 && number >= 0 ? number % (count + 1) : number;
  }
  /// As many as the member has, or another number of them; null where there are none.
  std::vector<int32_t> subscripts() {
    std::vector<int32_t> all(input_.byte() % 5);
    for (int32_t& each : all) {
      each = static_cast<int8_t>(input_.byte());
      if (each == -128) each = input_.number<int32_t>();
    }
    return all;
  }
  tarn_value value() {
    constexpr int32_t kTypes = TARN_ANY + 2;
    tarn_value out{input_.byte() % kTypes, 0, {}};
    switch (out.type) {
      case TARN_BOOLEAN:
        out.as.boolean = input_.byte();
        break;
      case TARN_INT16:
        out.as.i2 = input_.number<int16_t>();
        break;
      case TARN_INT32:
        out.as.i4 = input_.number<int32_t>();
        break;
      case TARN_REAL32:
        out.as.r4 = input_.number<float>();
        break;
      case TARN_REAL64:
        out.as.r8 = input_.number<double>();
        break;
      case TARN_TEXT: {  // as long as it says, without a NUL after it
        const std::string given = text(input_.byte());
        const auto& bytes = text_bytes_.emplace_back(given.begin(), given.end());
        out.length = static_cast<int32_t>(bytes.size());
        out.as.text = bytes.empty() ? "" : bytes.data();
        break;
      }
      case TARN_REALS: {
        auto& reals = reals_.emplace_back(input_.byte());
        for (double& each : reals) each = input_.number<float>();
        out.length = static_cast<int32_t>(reals.size());
        out.as.reals = reals.data();
        break;
      }
      case TARN_OBJECT:
        out.as.object = object();
        break;
      default:
        break;
    }
    return out;
  }
  std::vector<tarn_value> values() {
    std::vector<tarn_value> all(input_.byte() % 8);
    for (tarn_value& each : all) each = value();
    return all;
  }

  /// What a callback does: fails, changes what it is given, or calls on.
  virtual int32_t called_back(tarn_value* arguments, int32_t count) = 0;

  Input input_;
  std::vector<tarn_object*> objects_;

 private:
  // What was given in a call, kept: a call may come back to the client before it has read its arguments.
  std::list<std::string> texts_;
  std::list<std::vector<char>> text_bytes_;
  std::list<std::vector<double>> reals_;
};

}  // namespace tarn::fuzz
