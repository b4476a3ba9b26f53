#include "cli/columns.h"

#include <algorithm>

#include "base/nearest.h"
#include "cli/describe.h"
#include "cli/properties.h"
#include "reflect/json.h"
#include "storage/kind.h"
#include "tarn/code_names.h"
#include "tarn/member_units.h"

namespace tarn::cli {
namespace {

constexpr std::string_view kIndexColumn = "nIndex", kNameColumn = "szName";

/// The columns of a kind's index table.
std::vector<std::string_view> table_columns(const Kind& kind) {
  std::vector<std::string_view> names{kIndexColumn, kNameColumn};
  for (const SummaryColumn& column : kind.columns) names.push_back(column.name);
  for (const ChangedFlag& flag : kind.flags) names.push_back(flag.column);
  return names;
}

/// "Height" of "fHeight": without the letters of its type.
std::string_view without_type(std::string_view column) {
  const size_t first = column.find_first_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ");
  return column.substr(std::min(first, column.size()));
}

bool is_listed(const Member& member) {
  return member.kind == MemberKind::Property && member.type != ValueType::Object && member.type != ValueType::Reals;
}

const Member* property_of(const ClassInfo& info, std::string_view name) {
  const int number = info.number(name);
  return number >= 0 && is_listed(info.members[static_cast<size_t>(number)])
             ? &info.members[static_cast<size_t>(number)]
             : nullptr;
}

/// The part that a property named without one belongs to: the one that also holds the entity's name, else the only one.
const Member* holder_of(const ClassInfo& info, std::string_view name) {
  const Member* found = nullptr;
  size_t count = 0;
  for (const Member& member : info.members) {
    if (!member.is_part() || member.owned().numbered || !property_of(member.owned().info(), name)) continue;
    if (holds_name(member.owned().info())) return &member;
    found = &member;
    ++count;
  }
  return count == 1 ? found : nullptr;
}

}  // namespace

void Column::find_property(const ClassInfo& info, const std::string& name) {
  member_ = property_of(info, name);
  const Member* holder = member_ || !parts_.empty() ? nullptr : holder_of(info, name);
  if (holder) {
    parts_.add(*holder, 1);
    member_ = property_of(holder->owned().info(), name);
  }
  if (!member_) {
    std::vector<std::string_view> names;
    for (const Member& member : info.members) {
      if (is_listed(member)) names.push_back(member.name);
    }
    throw UsageError(std::string(info.name) + " has no property " + name + "; " + did_you_mean(name, names));
  }
}

Column::Column(const EntityKind& kind, const std::string& word) {
  const auto sample = blank_entity(kind);
  const auto columns = table_columns(sample->kind());
  const auto raw = std::ranges::find_if(columns, [&](std::string_view each) { return same_word(each, word); });
  if (raw != columns.end()) {
    *this = of_table(*sample, std::string(*raw));
    return;
  }
  std::string_view path = word;
  parts_ = PartPath(sample->info(), path, word);
  const bool named_alone = parts_.empty();
  title_ = parts_.text();
  find_property(parts_.owner(), name_in(path, at_, word));
  title_ += member_->name;
  if (member_->unit_beside.empty() && is_unit(member_->unit)) unit_ = member_->unit;
  for (size_t i = 0; i < at_.size(); ++i) title_ += (i == 0 ? "(" : ",") + std::to_string(at_[i]);
  if (!at_.empty()) title_ += ")";
  if (at_.size() != member_->bounds.size())
    throw UsageError("\"" + word + "\": name " + (member_->indexed() ? "an element of " : "it as ") +
                     signature(*member_) + ".");
  for (size_t i = 0; i < at_.size(); ++i) {
    if (at_[i] < member_->bounds[i].first || at_[i] > member_->bounds[i].last) {
      throw UsageError("\"" + word + "\": the subscript " + std::to_string(at_[i]) + " is not from " +
                       std::to_string(member_->bounds[i].first) + " to " + std::to_string(member_->bounds[i].last) +
                       ".");
    }
  }
  if (!named_alone || member_->indexed() || member_->labels_vary) return;
  const auto held = std::ranges::find_if(
      columns, [&](std::string_view each) { return same_word(without_type(each), member_->name); });
  if (held != columns.end()) in_row_ = *held;
}

Column Column::of_table(const StoredEntity& entity, const std::string& name) {
  Column column;
  column.title_ = column.in_row_ = name;
  const auto summary = std::ranges::find(entity.kind().columns, name, &SummaryColumn::name);
  if (summary == entity.kind().columns.end()) return column;
  const Member* part = find_part(entity.info(), summary->part);
  const Member* shows = property_of(part ? part->owned().info() : entity.info(), summary->property);
  column.unit_ = shows ? shows->unit : summary->unit;
  return column;
}

Listed Column::listed(const Value& value, std::span<const Label> labels) const {
  Listed out{to_json(value), {}, {}, {}, unit_};
  if (const auto* text = std::get_if<std::string>(&value)) {
    out.text = trimmed(*text);
    out.json = out.text;
    return out;
  }
  if (out.json.is_null()) return out;
  const auto* truth = std::get_if<bool>(&value);
  out.number = truth ? (*truth ? 1 : 0) : real_from(value);
  out.text = shown(out.json);
  const auto label = std::ranges::find_if(labels, [&](const Label& each) { return each.code == *out.number; });
  if (label != labels.end()) {
    out.code = label->name;
    out.text = label->text.empty() ? label->name : label->text;
    out.json = {{"code", label->code}, {"text", out.text}};
  }
  return out;
}

Listed Column::of_row(const Cell& cell) const {
  const Value value = value_of(cell);
  if (!member_ || type_of(value) == ValueType::Empty) return listed(value, {});
  if (member_->type == ValueType::Boolean) return listed(Value(integer_from(value, INT32_MIN, INT32_MAX) != 0), {});
  if (member_->type == ValueType::Real32) return listed(Value(static_cast<float>(real_from(value))), {});
  return listed(value, member_->labels);
}

Listed Column::of_record(Object& entity) const {
  Object* owner = parts_.in(entity);
  if (!owner) return {};
  Value value;
  member_->get(*owner, at_, value);
  Listed out = listed(value, codes_of(*owner, *member_));
  out.unit = unit_of(*owner, *member_);
  if (member_->refers_by) out.target = member_->target_of(*owner, at_);
  return out;
}

std::vector<Column> columns_named(const EntityKind& kind, const std::string& words) {
  std::vector<Column> columns;
  std::string word;
  int depth = 0;
  for (const char c : words + ",") {
    if (c == ',' && depth == 0) {
      columns.emplace_back(kind, std::exchange(word, {}));
      continue;
    }
    if (c == '(') ++depth;
    if (c == ')') --depth;
    if (c != ' ') word += c;
  }
  if (!word.empty()) throw UsageError("\"" + word + "\" has a bracket that is not closed.");
  return columns;
}

Listed ListedEntity::value(const Column& column) {
  if (!column.in_row().empty()) return column.of_row(row_.at(column.in_row()));
  if (!loaded_) {
    const auto index = std::get<int64_t>(row_.at(std::string(kIndexColumn)));
    if (index < 1 || index > INT16_MAX)
      fail(ErrorNumber::InvalidCall, std::string(entity_.kind().index_table) + " has a row of index " +
                                         std::to_string(index) +
                                         ", which no entity can have. Run 'tarn project repair'.");
    entity_.Load(static_cast<int16_t>(index));
    loaded_ = true;
  }
  return column.of_record(entity_);
}

}  // namespace tarn::cli
