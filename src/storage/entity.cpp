#include "tarn/storage/entity.h"

#include <algorithm>

#include "platform/host.h"
#include "storage/entity_memory.h"
#include "storage/index_row.h"
#include "storage/kind.h"
#include "storage/link_keeper.h"
#include "tarn/base/log.h"
#include "tarn/platform/workspace.h"

namespace tarn {

StoredEntity::StoredEntity(EntityFile& file) : file_(&file), self_(std::make_shared<StoredEntity*>(this)) {}

StoredEntity::~StoredEntity() = default;

Database& StoredEntity::database() const {
  if (!database_) {
    fail(ErrorNumber::ObjectNotSet,
         "The " + std::string(kind().class_name) + " has no database handle; give it one with SetDBHandle.");
  }
  return *database_;
}

Recordset StoredEntity::index_rows() const { return database().OpenRecordset(kind().all_rows); }

IndexRow StoredEntity::row_of(int16_t index) const {
  database();  // without one, that is the error
  try {
    return {*database_, kind(), index};
  } catch (const Error& error) {
    if (kind().no_table_message.empty()) throw;
    throw Error(error.number(), {}, std::string(kind().no_table_message) + error.description());
  }
}

// ---- what a failure or a rollback puts back

struct StoredEntity::Before {
  int16_t index;
  Kept inputs;
  std::function<void()> rest, state;
};

StoredEntity::Before StoredEntity::before(bool with_results) {
  return {index_, Kept(file_->inputs()), keep_rest(), file_->keep_state(with_results)};
}

void StoredEntity::put_back(const Before& before) {
  index_ = before.index;
  if (before.rest) before.rest();  // lists first: the bytes go into them
  before.inputs.put_back(file_->inputs());
  if (before.state) before.state();
}

/// Runs an operation that fills or names the object. Where it fails, the object is as it was when the operation kept
/// it.
template <typename F>
void StoredEntity::or_as_before(F operation) {
  std::optional<Before> kept;
  try {
    operation(kept);
  } catch (...) {
    if (kept) put_back(*kept);
    throw;
  }
}

void StoredEntity::on_rollback(std::function<void()> undo) {
  Engine::of_thread().Workspaces(0).on_rollback([weak = std::weak_ptr<StoredEntity*>(self_), undo = std::move(undo)] {
    if (weak.lock()) undo();
  });
}

void StoredEntity::follow_rollback() {
  std::optional<LinkKeeper> known;
  if (links_) known = *links_;
  on_rollback([this, before = index_, known = std::move(known), state = file_->keep_state(false)] {
    index_ = before;
    if (state) state();
    if (known)
      *links_ = *known;
    else
      links_.reset();
  });
}

void StoredEntity::take_back_changes(const Kept& before) {
  const Blocks saved = file_->inputs();
  if (before.is_in(saved)) return;
  on_rollback([this, before, after = Kept(saved)] {
    const Blocks inputs = file_->inputs();
    if (after.is_in(inputs) && before.fits(inputs)) before.put_back(inputs);
  });
}

// ---- names

std::string StoredEntity::stored_name() const {
  if (name_.empty() || name_.front() == '\0') return {};  // never written
  return utf8_from_page(trimmed(std::string_view(name_.data(), name_.size())));
}

void StoredEntity::store_name(std::string_view name) {
  const std::string bytes = page_from_utf8(name);
  const auto used = static_cast<ptrdiff_t>(std::min(name_.size(), bytes.size()));
  std::copy_n(bytes.begin(), used, name_.begin());
  std::fill(name_.begin() + used, name_.end(), ' ');
}

std::string StoredEntity::title() const { return std::string(kind().default_word) + " " + std::to_string(index_); }

void StoredEntity::make_name_valid() {
  const std::string_view given(name_.data(), name_.size());
  if (!given.starts_with('\0') && !trimmed(given).empty()) return;
  // The number's sign has its blank: "Window  3", which names are compared by, to the character.
  const std::string_view word = kind().name_word.empty() ? kind().default_word : kind().name_word;
  store_name(std::string(word) + "  " + std::to_string(index_));
}

bool StoredEntity::name_is_free(const std::string& name) const {
  try {
    return database().OpenRecordset(kind().others_of_name, {name, cell(index_)}).AtEof();
  } catch (const Error& error) {
    if (kind().name_query_message.empty()) throw;
    throw Error(error.number(), {}, std::string(kind().name_query_message) + error.description());
  }
}

bool StoredEntity::IsNameUnique(const std::optional<std::string>& sName) const {
  const std::string page = page_from_utf8(trimmed(sName.value_or(""))).substr(0, name_width());
  const std::string name(trimmed(utf8_from_page(page)));
  return name_is_free(name.empty() ? stored_name() : name);
}

void StoredEntity::take_valid_name() {
  make_name_valid();
  if (name_is_free(stored_name())) return;
  const std::string copy = page_from_utf8(host().copy_name(stored_name()));
  store_name(utf8_from_page(copy));
  for (int number = 2; !name_is_free(stored_name()); ++number) {
    const std::string end = " " + std::to_string(number);
    store_name(utf8_from_page(copy.substr(0, name_width() - end.size())) + end);
  }
}

void StoredEntity::take_free_name() {
  const std::string name = stored_name();
  if (name_is_free(name)) return;
  store_name(host().copy_name(name));
  log().message(std::string(kind().index_table) + " has " + name + " already; the other one comes as " + stored_name() +
                ".");
}

// ---- references

std::vector<std::string_view> StoredEntity::known_kinds(Sections sections) const {
  return kinds_referred_to(info(), [&](std::string_view kind) { return file_->has_references(kind, sections); });
}

/// The link rows of the entity, or of a default, and whose they are.
struct StoredEntity::Linked {
  LinkRows rows;
  LinkKeeper::Owner owner;
  LinkKeeper::CloseUp close_up;
};

/// Null where nothing in the sections can refer to anything.
std::unique_ptr<StoredEntity::Linked> StoredEntity::linked(Sections sections, int16_t index) {
  const Kind& own = kind();
  if (own.link_owner.empty()) return nullptr;
  std::vector<std::string_view> kinds = known_kinds(sections);
  if (kinds.empty()) return nullptr;
  if (!links_) links_ = std::make_unique<LinkKeeper>();
  const std::string word(own.default_word);
  std::unique_ptr<Linked> all(new Linked{{database(), own.link_owner, index},
                                         {*this, std::move(kinds), index == 0 ? "The default " + word : title()},
                                         [this, sections](const auto& cleared) { close_up(cleared, sections); }});
  return all;
}

Edit StoredEntity::this_edit() const { return {kind().default_word, index_, {name_.data(), name_.size()}}; }

void StoredEntity::mark_dependants() {
  bool override_default = false;
  OnUpdateDependencies.raise(override_default);
  if (!override_default) kind().reach.mark(database(), this_edit());
}

// ---- load

void StoredEntity::Load(int16_t nRecNum) { load(nRecNum, file_->to_load()); }

void StoredEntity::load(int32_t number, Sections sections) {
  or_as_before([&](std::optional<Before>& kept) {
    Transaction transaction(Transaction::Purpose::Reading);
    load_stored(number, sections, kept);
    after_read(ReadFrom::Stored);
    transaction.commit();
    if (m_bCloning) Reset();
  });
}

/// The row comes first, as the lock that it takes is needed for the file too; a missing file is what is told first.
IndexRow StoredEntity::row_to_load(int16_t index) const {
  try {
    return row_of(index);
  } catch (const Error&) {
    file_->check(index, "Load()");
    throw;
  }
}

/// What cannot fail once the object changes is not kept: the header of a large system alone, one after the other.
void StoredEntity::load_stored(int32_t number, Sections sections, std::optional<Before>& kept) {
  const auto index = static_cast<int16_t>(number);
  const IndexRow row = row_to_load(index);
  file_->check(index, "Load()");
  const bool there = index == number && row.there();
  if (!there) {
    const std::string missing = std::string(kind().missing_row_message) + std::to_string(number);
    if (kind().row_needed || index != number) fail(ErrorNumber::NoCurrentRecord, missing);
    if (!kind().missing_row_message.empty()) log().message(missing);
  }
  const bool same = index_ == index && index != 0;
  const bool known = there || file_->one_for_each();
  const auto begin = [&](bool may_fail) {
    if (may_fail) kept = before(true);
    for (const ChangedFlag& flag : kind().flags) {
      if (there) flag.of(*this) = row.flag(flag.column);
    }
    if (known) index_ = index;
  };
  const auto inputs_read = [&] {
    if (!known || !kept) return;  // what cannot fail refers to nothing
    if (const auto links = linked(sections, index_))
      links_->repair(links->owner, links->rows, links->close_up, file_->inputs());
  };
  file_->read({known ? index : index_, sections, same, there ? &row : nullptr, begin, inputs_read});
}

void StoredEntity::read_stored(int16_t index) {
  or_as_before([&](std::optional<Before>& kept) {
    file_->check(index, "Load()");
    const auto begin = [&](bool) {
      kept = before(true);
      index_ = index;
    };
    file_->read({index, kAllSections, false, nullptr, begin, [] {}});
  });
}

void StoredEntity::CreateDefault() {
  or_as_before([&](std::optional<Before>& kept) {
    kept = before(true);
    file_->check({}, "CreateDefault()");
    const bool there = file_->read_default();
    if (!there && (!product_default || !product_default(*this))) {
      fail(ErrorNumber::UnknownFormat, file_->default_path() + " has no default record that tells what the " +
                                           std::string(info().name) +
                                           " is; say so first, or write defaults with a new project.");
    }
    after_read(there ? ReadFrom::Default : ReadFrom::Product);
    index_ = 0;
    if (!database_) return;
    if (const auto links = linked(kAllSections, 0)) links_->repair_default(links->owner, links->rows, links->close_up);
  });
}

// ---- save

void StoredEntity::Save() { save({.sections = file_->to_save()}); }

void StoredEntity::save(SaveContext save) {
  or_as_before([&](std::optional<Before>& kept) {
    kept = before(false);
    Transaction transaction;
    follow_rollback();
    Recordset rows = index_rows();
    if (index_ != 0) rows.FindFirst("nIndex = ?", {cell(index_)});
    if (index_ == 0 || (rows.NoMatch() && kind().saved_anew)) {
      index_ = GetFreeIndex();
      rows.AddNew();
    } else {
      if (rows.NoMatch()) {
        const std::string_view message = kind().lost_row_message;
        fail(ErrorNumber::NoCurrentRecord, std::string(message.empty() ? "No current record." : message));
      }
      rows.Edit();
    }
    store(rows, save);
    take_back_changes(kept->inputs);
    transaction.commit();
  });
}

void StoredEntity::SaveAs(int16_t index, Naming naming) {
  or_as_before([&](std::optional<Before>& kept) {
    kept = before(false);
    Transaction transaction;
    follow_rollback();
    Recordset rows = index_rows();
    index_ = index == 0 ? GetFreeIndex() : index;
    rows.AddNew();
    SaveContext save{.form = SaveContext::Form::AsGiven, .naming = naming, .sections = file_->to_save()};
    store(rows, save);
    take_back_changes(kept->inputs);
    transaction.commit();
  });
}

void StoredEntity::fill_row(Recordset& rows) const {
  rows.Fields("nIndex") = cell(index_);
  rows.Fields("szName") = stored_name();
  for (const SummaryColumn& column : kind().columns) rows.Fields(column.name) = column.get(*this);
}

void StoredEntity::write_row() {
  Transaction transaction;
  Recordset rows = index_rows();
  rows.FindFirst("nIndex = ?", {cell(index_)});
  const bool is_new = rows.NoMatch();
  if (is_new)
    rows.AddNew();
  else
    rows.Edit();
  fill_row(rows);
  for (const ChangedFlag& flag : kind().flags) {
    if (is_new) rows.Fields(flag.column) = cell(true);
  }
  rows.Update();
  transaction.commit();
}

/// Writes the row that is being edited or added, marks dependants, writes the bytes.
void StoredEntity::store(Recordset& rows, SaveContext& save) {
  if (save.naming == Naming::Valid) make_name_valid();
  const auto links = linked(save.sections, index_);
  if (links && save.form == SaveContext::Form::Edited) {
    links_->put_back(links->owner, file_->inputs());
    links_->clear_deleted(links->owner, links->rows, links->close_up);
  }
  before_save(save);
  fill_row(rows);
  std::vector<std::pair<const ChangedFlag*, bool>> turned;
  for (const ChangedFlag& flag : kind().flags) {
    auto column = rows.Fields(flag.column);
    if (flag.of(*this) != (column.integer() != 0)) turned.emplace_back(&flag, flag.of(*this));
    column = cell(flag.of(*this));
  }
  rows.Update();
  const int64_t own[]{index_};
  for (const auto& [flag, stale] : turned) {
    if (stale)
      note_stale_since(database(), kind().index_table, flag->column, own, this_edit());
    else
      forget_stale_since(database(), kind().index_table, index_, flag->column);
  }
  if (links) links_->write(links->owner, links->rows);
  mark_dependants();
  file_->write(index_, save);
}

void StoredEntity::keep_flags_of_row() {
  const IndexRow row = row_of(index_);
  if (!row.there()) return;
  for (const ChangedFlag& flag : kind().flags) flag.of(*this) |= row.flag(flag.column);
}

void StoredEntity::SaveDefault() {
  SaveContext save{.form = SaveContext::Form::Default};
  before_save(save);
  Transaction transaction;
  file_->write_default();
  transaction.commit();
}

// ---- the rest of its life

void StoredEntity::Delete(std::optional<int16_t> nRecNum) {
  or_as_before([&](std::optional<Before>& kept) {
    kept = before(false);
    Transaction transaction;
    follow_rollback();
    const bool same = index_ == 0 || index_ == nRecNum.value_or(index_);
    if (nRecNum) index_ = *nRecNum;
    mark_dependants();
    note_deleted_uses(database(), kind(), index_);
    if (!kind().flags.empty()) forget_stale_since(database(), kind().index_table, index_);
    const Cell id[]{cell(index_)};
    database().Execute("DELETE FROM " + std::string(kind().index_table) + " WHERE nIndex = ?", id);
    for (const LinkColumn& link : link_columns_of(kind(), info())) {
      database().Execute("DELETE FROM " + link.table + " WHERE " + link.condition(), id);
    }
    file_->remove(index_, same);
    database().memory<Deletions>().note(kind().default_word, index_);
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

void StoredEntity::Reset(std::optional<bool> bResetAll) {
  index_ = 0;
  if (bResetAll.value_or(false)) store_name(std::string_view("\0", 1));
}

void StoredEntity::set_changed() {
  for (const ChangedFlag& flag : kind().flags) flag.of(*this) = true;
}

void StoredEntity::renew() {
  file_->renew();
  links_.reset();
  set_changed();
}

void StoredEntity::copy_content(const StoredEntity& from) {
  file_->copy(*from.file_, true);  // makes room for the rest
  scatter(gathered(from.file_->inputs()), file_->inputs());
  if (from.links_)
    links_ = std::make_unique<LinkKeeper>(*from.links_);
  else
    links_.reset();
  copy_rest(from, true);
}

void StoredEntity::become_twin(const StoredEntity& of) {
  copy_content(of);
  index_ = of.Index();
}

void StoredEntity::fill_clone(StoredEntity& clone, std::optional<int16_t> index) {
  clone.database_ = database_;
  clone.m_bCloning = true;
  clone.file_->copy(*file_, false);
  clone.copy_rest(*this, false);
  if (index)
    clone.Load(*index);
  else
    clone.copy_content(*this);
  clone.m_bCloning = false;
  std::string name = stored_name();
  if (name.empty()) name = clone.stored_name();
  if (!name.empty()) clone.store_name(host().copy_name(name));
}

}  // namespace tarn
