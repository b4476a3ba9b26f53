// The life of a stored entity: one record in the kind's record file and one summary row in its index table, both
// written by `Save` in one transaction. Property setters change memory only. Index 0 is a new entity; record 0 is the
// kind's default.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>

#include "base/object.h"
#include "storage/kind.h"
#include "storage/links.h"

namespace tarn {

/// Whether a save gives a nameless entity its default name.
enum class Naming : uint8_t { Valid, AsItIs };

class StoredEntity : public Object {
 public:
  std::string FileName;  // full path of the kind's record file
  int16_t Index = 0;
  bool m_bCloning = false;            // while being filled as a clone: `Load` forgets the index
  Event<bool&> OnUpdateDependencies;  // OverrideDefault: true keeps the layer from marking dependants

  Ptr<Database> GetDBHandle() const { return database_; }
  void SetDBHandle(Ptr<Database> DB) { database_ = std::move(DB); }

  /// Reads the summary row and the record. A missing row is logged, and the record at the object's own index read.
  /// References whose link row is gone, as what they refer to was deleted elsewhere, are cleared and logged.
  virtual void Load(int16_t nRecNum);
  /// As `Load`, for a client of 32-bit numbers: one that is no index is that of a missing row.
  void load_number(int32_t number);
  /// Writes row and record and marks what rests on the entity; a new entity gets the lowest free index and, without a
  /// name, its default name. A failure leaves rows, file and index as they were.
  void Save();
  /// Stores a new entity as it is given, under an index of its own or, for 0, the lowest free one; error where another
  /// has the index.
  void SaveAs(int16_t index, Naming naming);
  /// Writes the object as the kind's default record.
  virtual void SaveDefault();
  virtual void CreateDefault();
  /// Removes the summary row and every link row that names the entity, after marking; the record's bytes stay.
  void Delete(std::optional<int16_t> nRecNum = {});
  /// The lowest positive index not in use. Error `Overflow` past 32767.
  int16_t GetFreeIndex() const;
  /// No other entity of the kind has the name (its own, where none is given). False, and logged, for an apostrophe.
  bool IsNameUnique(const std::optional<std::string>& sName = {}) const;
  void Reset(std::optional<bool> bResetAll = {});

  virtual const Kind& kind() const = 0;
  /// The memory of what the file has, in its order: the records of the entity and its parts.
  virtual std::vector<std::span<std::byte>> layout() { return blocks_; }
  /// The file that holds the kind's default record.
  virtual std::string default_file() const { return FileName; }
  /// Everything that the entity keeps is loaded and saved from now on, for a kind that can do with less.
  virtual void select_all() {}
  /// Before the object takes another entity's fields one by one: nothing of the last one stays.
  virtual void renew() {}
  /// It has no results yet, for a kind that says so.
  virtual void set_changed() {}

 protected:
  /// Bytes of the object that the record has next; the record is all of them in a row.
  void add_block(std::span<std::byte> bytes) { blocks_.push_back(bytes); }
  /// Runs inside the transaction of a save, before anything is written. An error ends the save.
  virtual void before_save() {}
  /// The same for an entity that is stored as it is given.
  virtual void before_restore() {}
  /// What a copy takes besides the record, and of the record what its bytes do not tell.
  virtual void copy_memory(const StoredEntity& /*from*/, bool /*record_too*/) {}
  /// Puts back, after a failure, what the object holds besides the record.
  virtual std::function<void()> keep_rest() { return {}; }
  virtual std::string stored_name() const = 0;  // trimmed
  virtual void store_name(std::string_view name) = 0;

  void fill_clone(StoredEntity& clone, std::optional<int16_t> index);
  void copy_record(const StoredEntity& from);
  size_t record_size() const;
  /// Where the record lies: in the kind's record file, unless a kind has files of its own.
  virtual std::vector<std::byte> record() const;
  virtual void set_record(std::span<const std::byte> bytes);
  virtual void write_record(int16_t index);
  virtual void read_default() { read_record(0); }
  /// Before a record is read. Error for a file that cannot be one of the kind; `operation` is its source.
  virtual void check_file(std::string_view /*operation*/) const {}
  /// Whether the object knows which entities of a kind it refers to, so that a save may rewrite those link rows.
  virtual bool knows_links(std::string_view /*kind*/) const { return true; }
  /// Runs when what is being done is rolled back, now or by a transaction around it, if the object is still there.
  void on_rollback(std::function<void()> undo);
  /// Removes what a deleted entity keeps outside record file and tables.
  virtual void remove_files(int16_t /*index*/) {}
  Database& database() const;
  /// All rows of the index table, by nIndex.
  Recordset index_rows() const;
  /// The references of these kinds as they are now are those of the database.
  void remember_links(std::span<const std::string_view> kinds, const std::vector<Use>& uses);
  /// References whose link row is gone.
  void clear_unlinked();
  /// Sets the references to 0 that are lost, with what means nothing without them, and logs each under the title.
  virtual void clear_references(const std::string& title, const std::function<bool(const Use&)>& lost);
  /// Runs when references were cleared, before those that are left are remembered.
  virtual void after_clearing() {}
  template <typename F>
  void or_as_before(F operation);

 private:
  const std::string& file_name() const;
  void read_record(int16_t index);
  void mark_dependants();
  enum class Saving : uint8_t { Edited, AsGiven };
  void store(Recordset& rows, Naming naming, Saving saving);
  std::string title() const;
  void make_name_valid();

  /// Of those that the entity may refer to, the kinds whose references the object knows.
  std::vector<std::string_view> known_kinds() const;
  void clear_lost_links(LinkRows& links);
  /// A rollback of what is being done takes the object's index, memory of its links and what it keeps besides the
  /// record back as well.
  void follow_rollback();
  /// So it does with what the save itself has changed in the record, unless a client has changed it since.
  void take_back_changes(std::vector<std::byte> before);

  Ptr<Database> database_;
  std::vector<std::span<std::byte>> blocks_;
  /// The references of a kind after the last `Load` or `Save` of them to what was there then, with what tells deletions
  /// since: the entity's index then, the program's deletions, other programs' commits.
  struct Linked {
    std::vector<Use> uses;
    int16_t index = 0;
    size_t deletions = 0;
    int64_t foreign_version = 0;
  };
  std::map<std::string_view, Linked> linked_;
  std::shared_ptr<StoredEntity*> self_ = std::make_shared<StoredEntity*>(this);  // ends with the object
};

/// Runs an operation that fills or names the object; a failure leaves index and record as they were.
template <typename F>
void StoredEntity::or_as_before(F operation) {
  const int16_t index_before = Index;
  const std::vector<std::byte> record_before = record();
  const std::function<void()> put_rest_back = keep_rest();
  try {
    operation();
  } catch (...) {
    Index = index_before;
    set_record(record_before);
    if (put_rest_back) put_rest_back();
    throw;
  }
}

/// Copies of an entity's own type.
template <typename C, typename Base = StoredEntity>
class CopiedEntity : public Base {
 public:
  /// An unsaved copy, of this object or of the stored entity of an index, under a copy's name.
  Ptr<C> Clone(std::optional<int16_t> nIndex = {}) {
    auto clone = std::make_shared<C>();
    this->fill_clone(*clone, nIndex);
    return clone;
  }
  /// An exact twin, index and name included.
  Ptr<C> CopyInstance() {
    auto twin = Clone();
    twin->copy_record(*this);
    static_cast<Base&>(*twin).Index = this->Index;
    return twin;
  }
};

/// A part of an entity, with its piece of the record: `R`.
template <typename R>
class Part : public Object, public R {
 public:
  using Record = R;
  std::span<std::byte> bytes() { return std::as_writable_bytes(std::span<R, 1>(static_cast<R*>(this), 1)); }
  std::span<std::byte> part_record() final { return bytes(); }
};

/// A kind's class that begins with a plain record `R`, with the name first; most kinds have nothing behind it.
template <typename C, typename R>
class Entity : public CopiedEntity<C>, public R {
 public:
  using Record = R;

  Entity() {
    this->add_block(std::as_writable_bytes(std::span<R, 1>(static_cast<R*>(this), 1)));
    this->Reset(true);
  }

 protected:
  std::string stored_name() const override { return this->Name.trimmed(); }
  void store_name(std::string_view name) override { this->Name = name; }
};

}  // namespace tarn
