#include "gbxml/filling.h"

#include "tarn/base/codepage.h"
#include "tarn/platform/recordset.h"

namespace tarn {

FittedText fitted(std::string_view text, size_t width) {
  const ForeignText foreign = foreign_text(trimmed(text));
  std::string page = page_from_utf8(foreign.text);
  FittedText out{{}, page.size() > width, foreign.has_replaced};
  if (out.was_cut) page.resize(width);
  out.text = utf8_from_page(without_padding(page));
  return out;
}

Filling::Before Filling::begin(StoredEntity& entity, const std::string& id) {
  const int16_t index = ids.index(entity.kind().index_table, id);
  if (index == 0) {
    become_default(entity);
    return {true, {}};
  }
  entity.Load(index);
  names_of(entity).erase(entity.stored_name());
  return {false, gathered(entity.file().inputs())};
}

/// The default record of a kind is read once.
void Filling::become_default(StoredEntity& entity) {
  const Blocks inputs = entity.file().inputs();
  std::vector<std::byte>& record = defaults_[entity.kind().index_table];
  if (record.empty()) {
    entity.CreateDefault();
    if (dynamic_cast<RecordEntity*>(&entity)) record = gathered(inputs);
  } else {
    entity.renew();
    scatter(record, inputs);
  }
  entity.Reset(true);
}

int16_t Filling::end(StoredEntity& entity, const std::string& id, const Before& before,
                     const std::function<void()>& save) {
  const bool changed = before.is_new || gathered(entity.file().inputs()) != before.bytes;
  if (changed) {
    save();
    ++(before.is_new ? tally.account.made : tally.account.updated);
  } else {
    ++tally.account.unchanged;
  }
  names_of(entity).insert(entity.stored_name());
  ids.set(entity.kind().index_table, id, entity.Index());
  return entity.Index();
}

std::unordered_set<std::string>& Filling::names_of(StoredEntity& entity) {
  const std::string_view table = entity.kind().index_table;
  const auto [found, is_new] = names_.try_emplace(table);
  if (is_new) {
    auto rows = entity.GetDBHandle()->OpenRecordset("SELECT szName FROM " + std::string(table));
    for (; !rows.AtEof(); rows.MoveNext()) found->second.insert(rows.Fields("szName").text());
  }
  return found->second;
}

std::string Filling::name_for(StoredEntity& entity, std::string_view wanted, std::string_view id, size_t width,
                              Element element) {
  const auto note = [&](const std::string& text) {
    if (element) tally.note(document, element, text);
  };
  FittedText name = fitted(wanted, width);
  if (name.has_replaced && name.text.find_first_not_of("? ") == std::string::npos) {
    note("no character of its name is in the code page of the files; its id is its name");
    name = fitted(id, width);
  } else if (name.has_replaced) {
    note("characters of its name are not in the code page of the files; they are \"?\"");
  }
  if (name.text.empty()) name = fitted(id, width);
  if (name.was_cut) note("its name is cut to " + std::to_string(width) + " characters");
  const auto& taken = names_of(entity);
  std::string free = name.text;
  for (int number = 2; taken.contains(free); ++number) {
    const std::string end = " " + std::to_string(number);
    free = fitted(name.text, width - end.size()).text + end;
  }
  return free;
}

}  // namespace tarn
