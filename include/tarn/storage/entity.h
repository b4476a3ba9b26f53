// The life of a stored entity: its bytes in a file and one summary row in its index table, both written by a save in
// one transaction. Property setters change memory only. Index 0 is a new entity; record or file 0 is the kind's
// default. What a call needs travels with the call (`SaveContext`, `LoadContext`); what a kind declares is data
// (`Kind`).
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tarn/base/object.h"
#include "tarn/base/wire.h"
#include "tarn/storage/record_file.h"

namespace tarn {

class Database;
class IndexRow;
class LinkKeeper;
class Recordset;
struct ClearedReference;
struct Edit;
struct Kind;

class StoredEntity : public Object {
 public:
  ~StoredEntity() override;

  /// 0 for a new one.
  int16_t Index() const { return index_; }
  bool m_bCloning = false;            // while being filled as a clone: `Load` forgets the index
  Event<bool&> OnUpdateDependencies;  // OverrideDefault: true keeps the layer from marking dependants

  Ptr<Database> GetDBHandle() const { return database_; }
  void SetDBHandle(Ptr<Database> DB) { database_ = std::move(DB); }

  /// Reads the summary row, and the record or the sections that the object selects. A missing row is logged, and the
  /// record at the object's own index read, unless the kind needs the row. References whose link row is gone, as what
  /// they refer to was deleted elsewhere, are cleared and logged. A failure leaves the object as it was, and nothing
  /// here makes a file: errors `FileNotFound`, `InputPastEnd` and `UnknownFormat` name the file and what it lacks.
  void Load(int16_t nRecNum);
  /// Writes row and bytes and marks what rests on the entity; a new entity gets the lowest free index and, without a
  /// name, its default name. A failure leaves rows, file and object as they were, and so does a later rollback, but for
  /// what a client has changed since.
  void Save();
  /// Stores a new entity as it is given, under an index of its own or, for 0, the lowest free one; error where another
  /// has the index.
  void SaveAs(int16_t index, Naming naming);
  /// Writes the object's inputs as the kind's default.
  void SaveDefault();
  /// Becomes the kind's default: that of the project or, where it has none, the product's own.
  void CreateDefault();
  /// Removes the summary row and every link row that names the entity, after marking, and a file of its own; a record's
  /// bytes stay.
  void Delete(std::optional<int16_t> nRecNum = {});
  /// The lowest positive index not in use. Error `Overflow` past 32767.
  int16_t GetFreeIndex() const;
  /// No other entity of the kind has the name as it would be stored (its own, where none is given).
  bool IsNameUnique(const std::optional<std::string>& sName = {}) const;
  void Reset(std::optional<bool> bResetAll = {});

  virtual const Kind& kind() const = 0;
  const EntityFile& file() const { return *file_; }
  EntityFile& file() { return *file_; }
  std::string stored_name() const;  // trimmed
  /// Wherever the kind has its name; cut to the field's width.
  void store_name(std::string_view name);
  /// Before the object takes another entity's fields one by one: nothing of the last one stays.
  void renew();
  /// It has no results yet, for a kind that says so.
  void set_changed();

  // ---- check and repair
  /// Becomes what the files have under an index, whatever row and link rows say of it. Errors as `Load`.
  void read_stored(int16_t index);
  /// Brings the summary row in line with the object. A row that was not there is made, with its changed flags set.
  void write_row();
  /// Its own name where no other entity of the kind has it, else one that is free.
  void take_valid_name();

  /// Fills an entity as the product's own default; false where the product has none for it. Set by what knows all
  /// kinds.
  static inline bool (*product_default)(StoredEntity&) = nullptr;

 protected:
  void set_index(int16_t index) { index_ = index; }

  /// How the bytes came that the object was filled with.
  enum class ReadFrom : uint8_t { Stored, Default, Product };

  explicit StoredEntity(EntityFile& file);

  // ---- what a kind may do of its own
  /// Runs inside the transaction of a save, before anything is written, and may change what is saved. An error ends the
  /// save.
  virtual void before_save(SaveContext& /*save*/) {}
  /// After references were cleared, and after each load or default: lists close up.
  virtual void close_up(const std::vector<ClearedReference>& /*cleared*/, Sections /*sections*/) {}
  virtual void after_read(ReadFrom /*from*/) {}
  /// What a copy takes besides what its file has; with `content`, and of the file what its bytes do not tell.
  virtual void copy_rest(const StoredEntity& /*from*/, bool /*content*/) {}
  /// Puts back, after a failure, what the object holds besides what its file has: lists, too, that were made to fit.
  virtual std::function<void()> keep_rest() { return {}; }

  // ---- what it is given
  /// The name, at the beginning of the record.
  template <size_t N>
  void named_by(Text<N>& name) {
    name_ = name.chars;
  }
  /// In characters.
  size_t name_width() const { return name_.size(); }
  /// As the name of something that is stored as it is given, and may not be there twice.
  void take_free_name();

  /// As `Load`, of sections; also for a client of 32-bit numbers: one that is no index is that of a missing row.
  void load(int32_t number, Sections sections);
  void save(SaveContext save);
  void fill_clone(StoredEntity& clone, std::optional<int16_t> index);
  void become_twin(const StoredEntity& of);
  Database& database() const;
  /// All rows of the index table, by nIndex.
  Recordset index_rows() const;
  IndexRow row_of(int16_t index) const;
  IndexRow row_to_load(int16_t index) const;
  bool name_is_free(const std::string& name) const;
  /// Only a calculation takes a changed flag away: those of the index row stay, where the object has lost them.
  void keep_flags_of_row();

 private:
  struct Before;
  template <typename F>
  void or_as_before(F operation);
  void load_stored(int32_t number, Sections sections, std::optional<Before>& kept);
  Before before(bool with_results);
  void put_back(const Before& before);
  struct Linked;
  std::unique_ptr<Linked> linked(Sections sections, int16_t index);

  Edit this_edit() const;
  void mark_dependants();
  void fill_row(Recordset& rows) const;
  void store(Recordset& rows, SaveContext& save);
  void copy_content(const StoredEntity& from);
  std::string title() const;
  void make_name_valid();
  /// The kinds whose references are in the sections.
  std::vector<std::string_view> known_kinds(Sections sections) const;

  /// Runs when what is being done is rolled back, now or by a transaction around it, if the object is still there.
  void on_rollback(std::function<void()> undo);
  /// A rollback of what is being done takes the object's index, memory of its links and sections back as well.
  void follow_rollback();
  /// So it does with what the save itself has changed in the record, unless a client has changed it since.
  void take_back_changes(const Kept& before);

  friend class SectionFile;  // for what a rollback takes back

  int16_t index_ = 0;
  EntityFile* file_;  // a member of the class that is one
  Ptr<Database> database_;
  std::span<char> name_;
  std::unique_ptr<LinkKeeper> links_;
  std::shared_ptr<StoredEntity*> self_;  // ends with the object
};

/// One with a record in the record file of its kind.
class RecordEntity : public StoredEntity {
 public:
  std::string FileName;  // full path of the record file

 protected:
  RecordEntity() : StoredEntity(records_), records_(*this, FileName) {}
  /// Bytes of the object that the record has next; the record is all of them in a row.
  void add_block(std::span<std::byte> bytes) { records_.add(bytes); }
  void need_whole_records(std::string_view message) { records_.need_whole_records(message); }
  size_t record_size() const { return records_.record_size(); }
  void set_record(std::span<const std::byte> bytes) { scatter(bytes, records_.blocks()); }

 private:
  RecordFile records_;
};

/// Copies of an entity's own type.
template <typename C, typename Base = RecordEntity>
class CopiedEntity : public Base {
 public:
  using Base::Base;

  /// An unsaved copy, of this object or of the stored entity of an index, under a copy's name.
  Ptr<C> Clone(std::optional<int16_t> nIndex = {}) {
    auto clone = std::make_shared<C>();
    this->fill_clone(*clone, nIndex);
    return clone;
  }
  /// An exact twin, index and name included.
  Ptr<C> CopyInstance() {
    auto twin = Clone();
    static_cast<CopiedEntity&>(*twin).become_twin(*this);
    return twin;
  }
};

/// A kind's class that begins with a plain record `R`, with the name first; most kinds have nothing after it.
template <typename C, typename R>
class Entity : public CopiedEntity<C>, public R {
 public:
  using Record = R;

  Entity() {
    this->add_block(record_bytes(static_cast<R&>(*this)));
    this->named_by(R::Name);
    this->Reset(true);
  }
};

}  // namespace tarn
