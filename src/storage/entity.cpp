#include "storage/entity.h"

#include <algorithm>

#include "base/log.h"
#include "platform/host.h"
#include "platform/workspace.h"
#include "storage/entity_memory.h"
#include "storage/links.h"

namespace tarn {

Database& StoredEntity::database() const {
  if (!database_) {
    fail(ErrorNumber::ObjectNotSet,
         "The " + std::string(kind().class_name) + " has no database handle; give it one with SetDBHandle.");
  }
  return *database_;
}

const std::string& StoredEntity::file_name() const {
  if (FileName.empty()) {
    fail(ErrorNumber::FileNotFound, "The " + std::string(info().name) + " has no record file; set its FileName.");
  }
  return FileName;
}

Recordset StoredEntity::index_rows() const {
  return database().OpenRecordset("SELECT * FROM " + std::string(kind().index_table) + " ORDER BY nIndex ASC");
}

size_t StoredEntity::record_size() const {
  size_t size = 0;
  for (const auto& block : blocks_) size += block.size();
  return size;
}

std::vector<std::byte> StoredEntity::record() const {
  std::vector<std::byte> bytes;
  bytes.reserve(record_size());
  for (const auto& block : blocks_) bytes.insert(bytes.end(), block.begin(), block.end());
  return bytes;
}

void StoredEntity::set_record(std::span<const std::byte> bytes) {
  for (const auto& block : blocks_) {
    std::copy_n(bytes.begin(), block.size(), block.begin());
    bytes = bytes.subspan(block.size());
  }
}

void StoredEntity::copy_record(const StoredEntity& from) {
  set_record(from.record());
  linked_ = from.linked_;
  copy_memory(from, true);
}

void StoredEntity::read_record(int16_t index) {
  std::vector<std::byte> bytes = record();
  if (index < 0)
    fail(ErrorNumber::SubscriptOutOfRange, "There is no record " + std::to_string(index) + " in " + file_name() + ".");
  const OpenMode mode = database_ && database_->read_only() ? OpenMode::Read : OpenMode::Create;
  const size_t got = files().read(file_name(), static_cast<uint64_t>(index) * bytes.size(), bytes, mode);
  if (got > 0 && got < bytes.size()) {
    log().message("Record " + std::to_string(index) + " of " + FileName + " is cut short: " + std::to_string(got) +
                  " of " + std::to_string(bytes.size()) + " bytes; the rest reads as zeros.");
  }
  set_record(bytes);
}

void StoredEntity::write_record(int16_t index) {
  const auto bytes = record();
  const uint64_t offset = static_cast<uint64_t>(index) * bytes.size();
  const uint64_t size = files().size(file_name());
  if (offset >= size && size % bytes.size() != 0) {
    log().message(FileName + " ends in a partial record (" + std::to_string(size / bytes.size()) +
                  "), which is filled up with zeros.");
  }
  files().write(FileName, offset, bytes, database_);
}

void StoredEntity::mark_dependants() {
  bool override_default = false;
  OnUpdateDependencies.raise(override_default);
  if (!override_default) kind().reach.mark(database(), Index);
}

void StoredEntity::Load(int16_t nRecNum) {
  or_as_before([&] {
    check_file("Load()");
    Transaction transaction;
    Recordset rows = index_rows();
    rows.FindFirst("nIndex = ?", {cell(nRecNum)});
    const bool there = !rows.NoMatch();
    if (there) {
      Index = static_cast<int16_t>(rows.Fields("nIndex").integer());
    } else {
      const std::string missing = std::string(kind().missing_row_message) + std::to_string(nRecNum);
      if (kind().row_needed) fail(ErrorNumber::NoCurrentRecord, missing);
      log().message(missing);
    }
    read_record(Index);  // holds all that the row summarises, and wins over it
    if (there) clear_unlinked();
    transaction.commit();
    if (m_bCloning) Reset();
  });
}

void StoredEntity::load_number(int32_t number) {
  if (number >= INT16_MIN && number <= INT16_MAX) return Load(static_cast<int16_t>(number));
  check_file("Load()");
  fail(ErrorNumber::NoCurrentRecord, std::string(kind().missing_row_message) + std::to_string(number));
}

void StoredEntity::make_name_valid() {
  if (!kind().gives_names || !stored_name().empty()) return;
  // The number's sign has its blank: "Window  3", which names are compared by, to the character.
  store_name(std::string(kind().default_word) + (kind().numbered_names ? "  " + std::to_string(Index) : ""));
}

void StoredEntity::Save() {
  or_as_before([&] {
    Transaction transaction;
    const bool refers = !kind().link_owner.empty();
    if (Index == 0 || refers || kind().saved_anew) follow_rollback();
    std::vector<std::byte> before = refers ? record() : std::vector<std::byte>();
    Recordset rows = index_rows();
    if (Index != 0) rows.FindFirst("nIndex = ?", {cell(Index)});
    if (Index == 0 || (rows.NoMatch() && kind().saved_anew)) {
      Index = GetFreeIndex();
      rows.AddNew();
    } else {
      if (rows.NoMatch()) {
        const std::string_view message = kind().lost_row_message;
        fail(ErrorNumber::NoCurrentRecord, std::string(message.empty() ? "No current record." : message));
      }
      rows.Edit();
    }
    store(rows, Naming::Valid, Saving::Edited);
    if (refers) take_back_changes(std::move(before));
    transaction.commit();
  });
}

void StoredEntity::SaveAs(int16_t index, Naming naming) {
  or_as_before([&] {
    Transaction transaction;
    follow_rollback();
    Recordset rows = index_rows();
    Index = index == 0 ? GetFreeIndex() : index;
    rows.AddNew();
    store(rows, naming, Saving::AsGiven);
    transaction.commit();
  });
}

std::string StoredEntity::title() const { return std::string(kind().default_word) + " " + std::to_string(Index); }

void StoredEntity::remember_links(std::span<const std::string_view> kinds, const std::vector<Use>& uses) {
  const size_t deletions = database().memory<Deletions>().count();
  const int64_t foreign_version = database().foreign_version();
  for (const std::string_view kind : kinds) linked_[kind] = {{}, Index, deletions, foreign_version};
  std::map<std::string_view, Linked>::iterator last = linked_.end();
  for (const Use& use : uses) {
    if (last == linked_.end() || !same_kind(last->first, use.kind)) last = linked_.try_emplace(use.kind).first;
    last->second.uses.push_back(use);
  }
}

std::vector<std::string_view> StoredEntity::known_kinds() const {
  if (kind().link_owner.empty()) return {};
  return kinds_referred_to(info(), [this](std::string_view k) { return knows_links(k); });
}

void StoredEntity::clear_references(const std::string& title, const std::function<bool(const Use&)>& lost) {
  clear_lost_references(*this, title, lost);
}

void StoredEntity::clear_unlinked() {
  const auto known = known_kinds();
  if (known.empty()) return;
  LinkRows links(database(), kind().link_owner, Index);
  std::vector<Use> uses;
  bool cleared = false;
  clear_references(title(), [&](const Use& use) {
    if (!knows_links(use.kind)) return false;
    const LinkRows::Row* row = links.find(use);
    if (!row) return cleared = true;
    if (row->there) uses.push_back(use);
    return false;
  });
  after_clearing();
  if (cleared) {  // what is left may have moved
    uses = uses_of(*this);
    std::erase_if(uses, [&](const Use& use) { return !knows_links(use.kind) || !links.is_there(use); });
  }
  remember_links(known, uses);
}

/// What was linked and deleted since goes, also where another entity has its index by now. What another program did in
/// between shows by the link row alone.
void StoredEntity::clear_lost_links(LinkRows& links) {
  struct Known {
    const Linked* linked;
    std::vector<Use>::const_iterator next;  // both stand in the same order, but for what the client changed
    bool foreign;
  };
  std::map<std::string_view, Known> known;
  const int64_t foreign_version = database().foreign_version();
  for (const auto& [kind, linked] : linked_) {
    if (linked.uses.empty()) continue;
    const bool foreign = linked.index == Index && linked.foreign_version != foreign_version;
    known.emplace(kind, Known{&linked, linked.uses.begin(), foreign});
  }
  if (known.empty()) return;
  clear_references(title(), [&](const Use& use) {
    const auto found = known.find(use.kind);
    if (found == known.end()) return false;
    auto& [linked, next, foreign] = found->second;
    const auto& uses = linked->uses;
    const auto use_known = next != uses.end() && *next == use ? next : std::find(uses.begin(), uses.end(), use);
    if (use_known == uses.end()) return false;
    next = std::next(use_known);
    return database().memory<Deletions>().since(linked->deletions, use.kind, use.index) || !links.is_there(use) ||
           (foreign && !links.has(use));
  });
}

void StoredEntity::on_rollback(std::function<void()> undo) {
  Engine::of_thread().Workspaces(0).on_rollback([weak = std::weak_ptr<StoredEntity*>(self_), undo = std::move(undo)] {
    if (weak.lock()) undo();
  });
}

void StoredEntity::follow_rollback() {
  on_rollback([this, before = Index, linked = linked_, put_rest_back = keep_rest()] {
    Index = before;
    linked_ = linked;
    if (put_rest_back) put_rest_back();
  });
}

void StoredEntity::take_back_changes(std::vector<std::byte> before) {
  std::vector<std::byte> after = record();
  if (after == before) return;
  on_rollback([this, before = std::move(before), after = std::move(after)] {
    if (record() == after) set_record(before);
  });
}

/// Writes the row that is being edited or added, marks dependants, writes the record.
void StoredEntity::store(Recordset& rows, Naming naming, Saving saving) {
  if (naming == Naming::Valid) make_name_valid();
  const std::vector<std::string_view> known = known_kinds();
  std::optional<LinkRows> links;
  if (!known.empty()) links.emplace(database(), kind().link_owner, Index);
  if (saving == Saving::Edited) {
    if (links) clear_lost_links(*links);
    before_save();
  } else {
    before_restore();
  }
  rows.Fields("nIndex") = cell(Index);
  rows.Fields("szName") = stored_name();
  for (const SummaryColumn& column : kind().columns) rows.Fields(column.name) = column.get(*this);
  rows.Update();
  if (links) remember_links(known, write_links(*this, *links, known));
  mark_dependants();
  write_record(Index);
}

void StoredEntity::SaveDefault() {
  Transaction transaction;
  write_record(0);
  transaction.commit();
}

void StoredEntity::CreateDefault() {
  or_as_before([&] {
    check_file("CreateDefault()");
    read_default();
    Index = 0;
    if (kind().link_owner.empty() || !database_) return;
    LinkRows links(database(), kind().link_owner, 0);
    clear_references("The default " + std::string(kind().default_word),
                     [&](const Use& use) { return !links.is_there(use); });
    after_clearing();
    remember_links(known_kinds(), uses_of(*this));
  });
}

void StoredEntity::Delete(std::optional<int16_t> nRecNum) {
  or_as_before([&] {
    Transaction transaction;
    follow_rollback();
    if (nRecNum) Index = *nRecNum;
    mark_dependants();
    const Cell id[]{cell(Index)};
    database().Execute("DELETE FROM " + std::string(kind().index_table) + " WHERE nIndex = ?", id);
    for (const LinkColumn& link : kind().links) {
      database().Execute("DELETE FROM " + std::string(link.table) + " WHERE " + std::string(link.column) + " = ?", id);
    }
    remove_files(Index);
    database().memory<Deletions>().note(kind().default_word, Index);
    transaction.commit();
  });
  Reset();
}

int16_t StoredEntity::GetFreeIndex() const {
  const int64_t free = database().memory<FreeIndexes>().lowest(std::string(kind().index_table));
  if (free > INT16_MAX) {
    fail(ErrorNumber::Overflow,
         "Overflow: every index of " + std::string(kind().index_table) + " up to 32767 is in use.");
  }
  return static_cast<int16_t>(free);
}

bool StoredEntity::IsNameUnique(const std::optional<std::string>& sName) const {
  std::string name(trimmed(sName.value_or("")));
  if (name.empty()) name = stored_name();
  if (name.find('\'') != std::string::npos) {
    log().error(kComponent, kind().class_name, "IsNameUnique()",
                "A name that holds an apostrophe cannot be checked, and counts as not unique: " + name);
    return false;
  }
  return database()
      .OpenRecordset("SELECT * FROM " + std::string(kind().index_table) + " WHERE szName = ? AND nIndex <> ?",
                     {name, cell(Index)})
      .AtEof();
}

void StoredEntity::Reset(std::optional<bool> bResetAll) {
  Index = 0;
  if (bResetAll.value_or(false)) store_name(std::string_view("\0", 1));
}

void StoredEntity::fill_clone(StoredEntity& clone, std::optional<int16_t> index) {
  clone.FileName = FileName;
  clone.database_ = database_;
  clone.m_bCloning = true;
  clone.copy_memory(*this, false);
  if (index)
    clone.Load(*index);
  else
    clone.copy_record(*this);
  clone.m_bCloning = false;
  const std::string name = stored_name();
  if (!name.empty()) clone.store_name(host().copy_name(name));
}

}  // namespace tarn
