#include "tarn/result_block.h"

#include <charconv>

#include "platform/binary_file.h"

namespace tarn {
namespace {

template <typename V>
void append(std::string& text, const V& value) {
  if constexpr (std::is_same_v<V, std::string>) {
    text += tarn::trimmed(value);
  } else if constexpr (std::is_same_v<V, bool>) {
    text += value ? "True" : "False";
  } else if constexpr (std::is_arithmetic_v<V>) {
    char digits[32];
    text.append(digits, std::to_chars(std::begin(digits), std::end(digits), value).ptr);
  }
}

/// One element; a code with its text.
void append_element(std::string& text, const Object& object, const Member& member, Subscripts at) {
  Value value;
  member.get(object, at, value);
  std::visit([&](const auto& v) { append(text, v); }, value);
  if (member.labels.empty()) return;
  const int16_t code = std::get<int16_t>(value);
  const auto label =
      std::find_if(member.labels.begin(), member.labels.end(), [code](const Label& l) { return l.code == code; });
  if (label != member.labels.end()) text += " (" + std::string(label->text.empty() ? label->name : label->text) + ")";
}

/// A plain field in a line, an array in one for each run of its first subscript: "DB(1..12,0) F: 70 72 ...".
void append_field(std::string& text, const Object& object, const Member& member) {
  const std::string unit = (member.unit.empty() ? "" : " ") + std::string(member.unit) + ":";
  if (!member.indexed()) {
    text += std::string(member.name) + unit + " ";
    append_element(text, object, member, {});
    text += "\n";
    return;
  }
  const Bounds run = member.bounds[0];
  for_each_element(member, [&](Subscripts at) {
    if (at[0] == run.first) {
      text += std::string(member.name) + "(" + std::to_string(run.first) + ".." + std::to_string(run.last);
      for (const int subscript : at.subspan(1)) text += "," + std::to_string(subscript);
      text += ")" + unit;
    }
    text += " ";
    append_element(text, object, member, at);
    if (at[0] == run.last) text += "\n";
  });
}

/// The subscripts of a table's column after month and hour.
Member behind_hours(const Member& column) {
  Member rest;
  rest.name = column.name;
  rest.bounds = column.bounds.subspan(2);
  return rest;
}

/// A row for each hour, with all columns of the table; the first row names them.
void append_table(std::string& text, const Object& object, const std::vector<const Member*>& columns) {
  text += "Month Hour";
  std::vector<Member> rests;
  for (const Member* column : columns) {
    const Member& rest = rests.emplace_back(behind_hours(*column));
    for_each_element(rest, [&](Subscripts at) { text += " " + element_name(rest, at); });
  }
  text += "\n";
  for (int month = 1; month <= 12; ++month) {
    for (int hour = 0; hour <= 23; ++hour) {
      text += std::to_string(month) + " " + std::to_string(hour);
      for (size_t i = 0; i < columns.size(); ++i) {
        for_each_element(rests[i], [&](Subscripts behind) {
          std::vector<int> at{month, hour};
          at.insert(at.end(), behind.begin(), behind.end());
          text += " ";
          append_element(text, object, *columns[i], at);
        });
      }
      text += "\n";
    }
  }
}

}  // namespace

ResultBlock::Spans ResultBlock::spans() const {
  Spans all;
  const_cast<ResultBlock*>(this)->add_spans(all);
  return all;
}

size_t ResultBlock::size_in_file() const { return size_of(spans()); }

void ResultBlock::Load(int16_t nFileHandle, int32_t nCurPos) {
  const Spans all = spans();
  std::vector<std::byte> bytes(size_of(all));
  BinaryFiles::of_thread().read(nFileHandle, nCurPos, bytes);
  scatter(bytes, all);
}

void ResultBlock::Save(int16_t nFileHandle, int32_t nCurPos) {
  BinaryFiles::of_thread().write(nFileHandle, nCurPos, gathered(spans()));
}

std::string ResultBlock::Dump() const {
  const ClassInfo& about = info();
  std::string text = "CONTENTS OF " + std::string(about.name) + "\n";
  std::vector<const Member*> columns;
  for (const Member& member : about.members) {
    if (member.stored() && member.field()->stride > 0)
      columns.push_back(&member);
    else if (member.stored())
      append_field(text, *this, member);
  }
  if (!columns.empty()) append_table(text, *this, columns);
  for (const Member& member : about.members) {
    if (!member.is_part()) continue;
    const Object& part = member.part(const_cast<ResultBlock&>(*this), 1);
    text += std::string(member.name) + ": " + dynamic_cast<const ResultBlock&>(part).Dump();
  }
  for (const auto& [name, block] : rest()) text += name + ": " + block->Dump();
  return text;
}

void ResultBlock::CopyFrom(const ObjectPtr& Source) {
  if (!Source) fail(ErrorNumber::ObjectNotSet, "There is no object to copy from.");
  if (&Source->info() != &info()) {
    fail(ErrorNumber::TypeMismatch,
         std::string(info().name) + " cannot take what " + std::string(Source->info().name) + " holds.");
  }
  const auto& other = dynamic_cast<const ResultBlock&>(*Source);
  if (&other == this) return;
  fit(other);
  const Spans to = spans(), from = other.spans();
  for (size_t i = 0; i < to.size(); ++i) std::copy(from[i].begin(), from[i].end(), to[i].begin());
}

}  // namespace tarn
